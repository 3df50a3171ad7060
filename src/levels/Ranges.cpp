#include "levels/Ranges.h"

#include "levels/Messages.h"
#include "registers/ReadDecoders.h"

#include <algorithm>
#include <cmath>

namespace qz {

namespace {

static_assert(kRangeReadback.size() == kCurrentRangeCount, "one read-back text per range");

struct NamingRule {
    float VREF;
    float imeasGain;
    RangeNaming what;
    const RangeNames* names;
};

// Exact comparisons: the reference is 5 or 2.5 only when picked as such.
constexpr NamingRule kNamingRules[] = {
    {5.0f, 20.0f, RangeNaming::Names, &kRangeNamesRated},
    {2.5f, 10.0f, RangeNaming::Names, &kRangeNamesRated},
    {2.5f, 20.0f, RangeNaming::Names, &kRangeNamesHalved},
    {5.0f, 10.0f, RangeNaming::Warning, nullptr},
};

} // namespace

RangeNamesUpdate UpdateRangeNames(float VREF, float imeasGain) {
    RangeNamesUpdate r;
    for (const NamingRule& rule : kNamingRules) {
        if (rule.VREF != VREF || rule.imeasGain != imeasGain) continue;
        r.what = rule.what;
        r.names = rule.names;
        if (rule.what == RangeNaming::Warning) {
            r.title = kEntryErrorTitle;
            r.text = kGainDoublingWarning;
        }
        break;
    }
    return r;
}

double rangeFullScale(double rsense, double VREF, double imeasGain) {
    if (!(rsense > 0.0) || !(imeasGain > 0.0) || !(VREF > 0.0)) return 0.0;
    return std::min(0.5, 2.0 * VREF / imeasGain) / rsense;
}

std::optional<int> smallestRangeCovering(std::span<const double> fullScales, double amps) {
    const double need = std::fabs(amps);
    std::optional<int> best;
    for (size_t i = 0; i < fullScales.size(); ++i) {
        // A value typed as the full scale itself is covered, one rounding step over or not.
        if (!(fullScales[i] * (1.0 + 1e-9) >= need)) continue;
        if (!best || fullScales[i] < fullScales[static_cast<size_t>(*best)]) best = static_cast<int>(i);
    }
    return best;
}

} // namespace qz
