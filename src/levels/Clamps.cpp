#include "levels/Clamps.h"

#include "levels/EntryField.h"
#include "levels/Numbers.h"
#include "levels/Ranges.h"
#include "levels/TransferLaw.h"
#include "registers/HexText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qz {

namespace {

// The two clamps test the same way with their bounds swapped: the current must be at or
// below `upper`, then at or above `lower`.
struct ClampRule {
    HexFieldId x1Box;  // the console's box of the register written
    bool limitIsUpper; // High: L is the upper bound and 0 the lower; Low: 0 and -L
    const char* aboveUpper;
    const char* belowLower;
    double lowestCode;
    double highestCode;
};

constexpr ClampRule kClampRules[] = {
    {HexFieldId::txtCLHx1, true, kClampHighAboveLimit, kClampHighNegative, 32768.0, 65535.0},
    {HexFieldId::txtCLLx1, false, kClampLowPositive, kClampLowBelowLimit, 0.0, 32768.0},
};

ClampResult refuse(const char* message, ClampBlame blame) {
    ClampResult r;
    r.message = message;
    r.blame = blame;
    return r;
}

} // namespace

float clampLimit(float R, float VREF) {
    return static_cast<float>((VREF == 2.5f ? 0.32 : 0.64) / static_cast<double>(R));
}

ClampResult computeClamp(ClampSide side, std::string_view entry, int IRangeIndex,
                         std::string_view txtEXT1rsense, std::string_view txtEXT2Rsense,
                         float imeasGain, float VREF) {
    const auto typed = parseSingle(entry);
    const CurrentRange* found = currentRange(IRangeIndex);
    if (!typed || !found) return refuse(kNotValidNumber, ClampBlame::Entry);

    const CurrentRange& range = *found;
    float R = range.rsense;
    if (const DecimalField* box = rsenseField(range.rsenseBox)) {
        // The box is checked against its bounds only on its own Enter key, so it may hold
        // anything here. Any positive resistance is taken as it stands; a box without one
        // (no number, zero, negative) stops the clamp and is named by its own text.
        const bool ext1 = range.rsenseBox == RsenseBox::EXT1;
        const auto boxR = parseSingle(ext1 ? txtEXT1rsense : txtEXT2Rsense);
        if (!boxR || !(*boxR > 0.0f) || !std::isfinite(*boxR))
            return refuse(box->outside,
                          ext1 ? ClampBlame::txtEXT1rsense : ClampBlame::txtEXT2Rsense);
        R = *boxR;
    }
    if (!referenceUsable(VREF) || !std::isfinite(imeasGain))
        return refuse(kNotValidNumber, ClampBlame::Reference);

    const ClampRule& rule = kClampRules[side == ClampSide::High ? 0 : 1];
    ClampResult r;
    r.R = R;
    r.current = static_cast<float>(static_cast<double>(*typed) * range.toAmperes);
    r.L = clampLimit(R, VREF);
    // A limit typed as the range table gives it ("3.2" in the 2.5mA range) can land one
    // single-precision step above L once scaled to amperes; it is still the limit.
    const float edge = std::nextafter(r.L, std::numeric_limits<float>::infinity());
    const float upper = rule.limitIsUpper ? edge : 0.0f;
    const float lower = rule.limitIsUpper ? 0.0f : -edge;
    if (!(r.current <= upper)) return refuse(rule.aboveUpper, ClampBlame::Entry);
    if (!(r.current >= lower)) return refuse(rule.belowLower, ClampBlame::Entry);

    const float level = r.current * R * imeasGain; // single precision
    const double code =
        roundHalfEven(65536.0 * static_cast<double>(level) / spanOf(VREF) + 32768.0);
    r.code = static_cast<int32_t>(std::clamp(code, rule.lowestCode, rule.highestCode));
    r.ok = true;
    r.DAClast = hexField(rule.x1Box).addressWord | r.code;
    r.txtWrite = NumberToHex(r.DAClast, 6);
    return r;
}

double clampAmpsNow(const ClampLevel& set, float R, float imeasGain, float VREF) {
    if (R == set.R && imeasGain == set.imeasGain && VREF == set.VREF) return set.amps;
    const double then = static_cast<double>(set.R) * set.imeasGain / set.VREF;
    const double now = static_cast<double>(R) * imeasGain / VREF;
    return set.amps * then / now;
}

} // namespace qz
