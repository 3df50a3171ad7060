#include "levels/Ranges.h"

#include "levels/Messages.h"
#include "registers/ReadDecoders.h"

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

} // namespace qz
