#include "levels/TransferLaw.h"

#include "levels/FieldTable.h"
#include "levels/Messages.h"
#include "levels/NumberText.h"
#include "levels/Numbers.h"
#include "registers/HexText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qz {

namespace {

constexpr double k2p16 = 65536.0;
constexpr double k2p15 = 32768.0;
constexpr const char* kVoltFormat = "00.000";

double holdX2(double x2) {
    return std::clamp(x2, 0.0, k2p16);
}

// A rounded code that fits in 32 bits, or nothing.
std::optional<int32_t> toInt32(double rounded) {
    if (!(rounded >= static_cast<double>(std::numeric_limits<int32_t>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<int32_t>::max())))
        return std::nullopt;
    return static_cast<int32_t>(rounded);
}

} // namespace

double spanOf(float VREF) {
    return static_cast<double>(VREF) * 5.125;
}

bool referenceUsable(float VREF) {
    return std::isfinite(VREF) && VREF != 0.0f;
}

double lawX2(double x1, int32_t m, int32_t c) {
    return x1 / k2p16 * (static_cast<double>(m) + 1.0) + (static_cast<double>(c) - k2p15);
}

double lawVolts(double x2, float VREF, int32_t OFFSET) {
    const double span = spanOf(VREF);
    return x2 / k2p16 * span - OFFSET / k2p16 * span;
}

double lawX1(double V, float VREF, int32_t OFFSET) {
    const double span = spanOf(VREF);
    return (V + OFFSET / k2p16 * span) * k2p16 / span;
}

std::optional<int32_t> codeForVolts(double V, float VREF, int32_t OFFSET) {
    if (!referenceUsable(VREF)) return std::nullopt;
    return toInt32(roundHalfEven(lawX1(V, VREF, OFFSET)));
}

OutputLimits UpdateOutputLimits(float VREF, int32_t OFFSET, int32_t m, int32_t c) {
    OutputLimits r;
    if (!referenceUsable(VREF)) return r;
    r.ok = true;
    // The code of 0 V: OFFSET itself, up to the rounding of the law.
    const double zero = roundHalfEven(lawX1(0.0, VREF, OFFSET));
    r.FinZeroCode = static_cast<int32_t>(std::clamp(zero, -2147483648.0, 2147483647.0));
    const double x2max = roundHalfEven(65535.0 / k2p16 * (static_cast<double>(m) + 1.0) +
                                       (static_cast<double>(c) - k2p15));
    r.x2min =
        holdX2(0.0 / k2p16 * (static_cast<double>(m) + 1.0) + (static_cast<double>(c) - k2p15));
    r.x2max = static_cast<int32_t>(holdX2(x2max));
    r.VoutMax = static_cast<float>(lawVolts(r.x2max, VREF, OFFSET));
    r.VoutMin = static_cast<float>(lawVolts(r.x2min, VREF, OFFSET));
    r.txtFINx1 = NumberToHex(r.FinZeroCode, 4);
    r.txtOutputVh = formatNumber(r.VoutMax, kVoltFormat);
    r.txtOutputVl = formatNumber(r.VoutMin, kVoltFormat);
    return r;
}

ForceResult forceCode(double V, float VREF, int32_t OFFSET, int32_t m, int32_t c) {
    ForceResult r;
    if (!referenceUsable(VREF)) {
        r.refusal = LawRefusal::Reference;
        r.message = kNotValidNumber;
        return r;
    }
    // The register holds 16 bits: a request at a limit that the law puts past the last
    // code gets the last code.
    r.x1 = static_cast<int32_t>(std::clamp(roundHalfEven(lawX1(V, VREF, OFFSET)), 0.0, 65535.0));
    r.x2 = static_cast<int32_t>(holdX2(roundHalfEven(lawX2(r.x1, m, c))));
    r.output = static_cast<float>(lawVolts(r.x2, VREF, OFFSET));
    r.txtDaccode = NumberToHex(r.x1, 4);
    r.txtOutputV = formatNumber(r.output, kVoltFormat);
    r.DAClast = r.x1 | hexField(HexFieldId::txtFINx1).addressWord;
    r.txtWrite = NumberToHex(r.DAClast, 6);
    return r;
}

ForceResult ForceVoltage(double V, float VREF, int32_t OFFSET, int32_t m, int32_t c) {
    const OutputLimits limits = UpdateOutputLimits(VREF, OFFSET, m, c);
    ForceResult r;
    if (!limits.ok) {
        r.refusal = LawRefusal::Reference;
        r.message = kNotValidNumber;
    } else if (!(V <= limits.VoutMax && V >= limits.VoutMin)) {
        r.refusal = LawRefusal::OutsideLimits;
        r.message = kVoltageOutsideLimits;
    } else {
        r = forceCode(V, VREF, OFFSET, m, c);
    }
    r.limits = limits;
    return r;
}

OutputVResult outputV(float VREF, int32_t OFFSET, int32_t m, int32_t c, int32_t x1) {
    OutputVResult r;
    if (!referenceUsable(VREF)) {
        r.message = kNotValidNumber;
        return r;
    }
    r.ok = true;
    // Multiply first, then divide: not the order of lawX2, and the last bits can differ.
    float x2 = static_cast<float>((static_cast<double>(m) + 1.0) * x1 / k2p16 +
                                  (static_cast<double>(c) - k2p15));
    if (x2 > 65536.0f)
        x2 = 65536.0f;
    else if (x2 < 0.0f)
        x2 = 0.0f;
    r.x2 = x2;
    r.V = static_cast<float>(lawVolts(x2, VREF, OFFSET));
    r.txtOutputV = formatNumber(r.V, kVoltFormat);
    return r;
}

std::optional<int32_t> stepCode(float stepMillivolts, float VREF) {
    if (!referenceUsable(VREF)) return std::nullopt;
    return toInt32(roundHalfEven(k2p16 * (stepMillivolts * 0.001) / spanOf(VREF)));
}

EntryVoltageRange entryVoltageRange(float VREF, int32_t OFFSET) {
    EntryVoltageRange r;
    const double span = spanOf(VREF);
    r.highest = span * (1.0 - OFFSET / 65535.0);
    r.lowest = span * (static_cast<double>(-static_cast<int64_t>(OFFSET)) / 65535.0);
    r.highestText = formatNumber(r.highest, "0.00");
    r.lowestText = formatNumber(r.lowest, "0.00");
    r.highestShown = parseDecimal(r.highestText).value_or(r.highest);
    r.lowestShown = parseDecimal(r.lowestText).value_or(r.lowest);
    return r;
}

} // namespace qz
