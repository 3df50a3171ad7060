#pragma once
// The law between volts and the 16-bit codes of the FIN DAC, and the routines of the
// panels that apply it, as plain arithmetic: each takes VREF, the OFFSET, m and c codes
// and a request or a code, and gives every number and the text of every field it writes.
//
// Every step is in double precision unless its comment says single; span is
// VREF x 5.125, worked out afresh at each use. The OFFSET, m and c codes are the values
// of their boxes' texts (see readDacCode): codes 0 to 0xFFFF, though a box that holds a
// larger number unconfirmed gives that number, and the arithmetic takes it as it is.
//
// A VREF of zero (or one that is not finite) gives no level at all: the routines refuse
// it with kNotValidNumber and the Reference refusal, and the panel chooses the field to
// blame (the "Other" reference box, or the field of the entry).

#include <cstdint>
#include <optional>
#include <string>

namespace qz {

inline constexpr const char* kVoltageOutsideLimits =
    "Number too large. Please reenter voltage between Z/S and F/S.";

// VREF x 5.125, in double precision.
double spanOf(float VREF);
// False for a VREF of zero or not finite, from which no code can be worked out.
bool referenceUsable(float VREF);

// The law. Forward: x2 = x1 / 2^16 x (m + 1) + c - 2^15, then
// V = x2 / 2^16 x span - OFFSET / 2^16 x span. Inverse, which knows nothing of m and c:
// x1 = (V + OFFSET / 2^16 x span) x 2^16 / span. Neither rounds nor clamps; the inverse
// is also the measurement panels' "voltage to x1".
double lawX2(double x1, int32_t m, int32_t c);
double lawVolts(double x2, float VREF, int32_t OFFSET);
double lawX1(double V, float VREF, int32_t OFFSET);

// The inverse law rounded to a code (ties to even); nothing for an unusable VREF or a
// code beyond 32 bits. Range checks of the code are the caller's.
std::optional<int32_t> codeForVolts(double V, float VREF, int32_t OFFSET);

enum class LawRefusal {
    None,
    Reference,     // VREF unusable: kNotValidNumber
    OutsideLimits, // request above VoutMax or below VoutMin: kVoltageOutsideLimits
};

// UpdateOutputLimits. x2max is rounded, x2min is not; both are held to 0..65536 (0x10000,
// one past the last code, so that a clamped VoutMax is span - OFFSET / 2^16 x span).
struct OutputLimits {
    bool ok = false; // false: VREF unusable, nothing to show or store
    int32_t FinZeroCode = 0;
    int32_t x2max = 0;
    double x2min = 0.0;
    float VoutMax = 0.0f; // single precision
    float VoutMin = 0.0f;
    std::string txtFINx1;    // FinZeroCode, NumberToHex width 4: the console's txtFINx1
    std::string txtOutputVh; // VoutMax in "00.000"
    std::string txtOutputVl; // VoutMin in "00.000"
};
OutputLimits UpdateOutputLimits(float VREF, int32_t OFFSET, int32_t m, int32_t c);

// ForceVoltage of the request V, which comes from the text of txtV in double precision
// (not cut to single). It runs UpdateOutputLimits first and tests V against its limits
// (at the limits is accepted). An x1 above 0xFFFF, which a request at VoutMax gives when
// c is above 0x8000, is held at 0xFFFF (and a negative one at 0), and the output shown is
// the forward law of the code actually written.
struct ForceResult {
    LawRefusal refusal = LawRefusal::None;
    std::string message; // empty when accepted
    OutputLimits limits; // shown even when the request is refused, as the panel ran it
    int32_t x1 = 0;
    int32_t x2 = 0;         // rounded, held to 0..65536
    float output = 0.0f;    // single precision
    std::string txtDaccode; // x1, NumberToHex width 4; also the console's txtFINx1
    std::string txtOutputV; // output in "00.000"
    int32_t DAClast = 0;    // txtFINx1's address word OR x1: the word to send
    std::string txtWrite;   // DAClast, NumberToHex width 6, written after the send
};
ForceResult ForceVoltage(double V, float VREF, int32_t OFFSET, int32_t m, int32_t c);

// The arithmetic of ForceVoltage after its limit test: the code, the output and the word
// of the request, with the same hold of x1 to 0..0xFFFF. It tests nothing but VREF and
// leaves `limits` empty: it shows what a request gives where the limits refuse it.
ForceResult forceCode(double V, float VREF, int32_t OFFSET, int32_t m, int32_t c);

// The console's outputV for the code x1 of its txtFINx1. Unlike ForceVoltage, x2 is a
// single-precision number that is not rounded: x2 = (m + 1) x x1 / 2^16 + (c - 2^15),
// held to 0..65536. Nothing is sent.
struct OutputVResult {
    bool ok = false; // false: VREF unusable (kNotValidNumber)
    std::string message;
    float x2 = 0.0f;
    float V = 0.0f;         // single precision
    std::string txtOutputV; // V in "00.000"
};
OutputVResult outputV(float VREF, int32_t OFFSET, int32_t m, int32_t c, int32_t x1);

// Measurement panels: the code step of a voltage step in millivolts,
// round(2^16 x (step x 0.001) / span), with no OFFSET term. Nothing for an unusable VREF
// or a step beyond 32 bits.
std::optional<int32_t> stepCode(float stepMillivolts, float VREF);

// Measurement panels: the highest and lowest voltage an entry may ask for,
// (1 - OFFSET / 65535) x span and (-OFFSET / 65535) x span (65535 here, not 65536), and
// their "0.00" texts, whose values are the bounds an entry is tested against.
struct EntryVoltageRange {
    double highest = 0.0;
    double lowest = 0.0;
    std::string highestText; // "0.00"
    std::string lowestText;
    double highestShown = 0.0; // the value of highestText
    double lowestShown = 0.0;
};
EntryVoltageRange entryVoltageRange(float VREF, int32_t OFFSET);

} // namespace qz
