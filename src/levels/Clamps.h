#pragma once
// The clamp levels of frmMain: a current typed in the unit of the range becomes the code
// of the CLH or CLL x1 register. Single precision until the code.

#include <cstdint>
#include <string>
#include <string_view>

namespace qz {

inline constexpr const char* kClampHighAboveLimit =
    "Requested clamp level outside of Irange. Please reenter current suited to the Irange.";
inline constexpr const char* kClampHighNegative =
    "Requested clamp level outside of Irange. Please reenter reenter current suited to the "
    "Irange. CLL can only clamp positive current";
inline constexpr const char* kClampLowPositive =
    "Requested clamp level outside of Irange. Please reenter current suited to the Irange. "
    "Ensure to add minus sign for negative clamp";
inline constexpr const char* kClampLowBelowLimit =
    "Requested clamp level outside of Irange. Please reenter reenter current suited to the "
    "Irange. Ensure to add minus sign for negative clamp, CLL can only clamp negative current";

enum class ClampSide {
    High, // txtclamph: CLH x1, codes 0x8000..0xFFFF
    Low,  // txtClampl: CLL x1, codes 0..0x8000
};

// The field the panel empties and gives the focus after a refusal.
enum class ClampBlame {
    None,          // accepted
    Entry,         // the clamp box itself
    txtEXT1rsense, // the resistor box of range 6
    txtEXT2Rsense, // the resistor box of range 5
    Reference,     // VREF (or the MI gain) unusable; the panel chooses the field
};

struct ClampResult {
    bool ok = false;
    std::string message; // when refused
    ClampBlame blame = ClampBlame::None;
    float current = 0.0f; // the entry in amperes
    float R = 0.0f;       // the sense resistor, ohms
    float L = 0.0f;       // the limit, amperes (the high clamp's; the low one is -L)
    int32_t code = 0;     // after the code limits
    int32_t DAClast = 0;  // 0x100000 or 0x0D0000 OR code: the word to send
    std::string txtWrite; // DAClast, NumberToHex width 6, written before the send
};

// The limit of a range with sense resistor R: 0.32 / R when VREF is exactly 2.5, else
// 0.64 / R, as single precision. The MI gain plays no part in it.
float clampLimit(float R, float VREF);

// The clamp computation of txtclamph or txtClampl for the entry text in range
// IRangeIndex (0..6). Ranges 5 and 6 take the entry in amperes and the resistor from the
// text of txtEXT2Rsense or txtEXT1rsense at this moment: a text that box would refuse on
// its own Enter (not a number, 0, or outside 0.4..256000) refuses the clamp with that
// box's own words, and the box is blamed. An unreadable entry, or an index outside
// 0..6, gives kNotValidNumber on the entry; a VREF of zero gives it on Reference.
// Then the current is tested against the range (see the messages above), and the code,
// round(2^16 x (current x R x imeasGain) / span + 32768), held to the side's half.
ClampResult computeClamp(ClampSide side, std::string_view entry, int IRangeIndex,
                         std::string_view txtEXT1rsense, std::string_view txtEXT2Rsense,
                         float imeasGain, float VREF);

// A clamp as it was set: the current, and the sense resistor, gain and VREF its code was
// worked out with.
struct ClampLevel {
    double amps = 0.0;
    float R = 1.0f;
    float imeasGain = 20.0f;
    float VREF = 5.0f;
};
// The current that clamp's code stands for under the present settings: the chip keeps the
// code, whose distance from 0x8000 goes with current x R x gain / VREF. The same settings
// give the current as it was set.
double clampAmpsNow(const ClampLevel& set, float R, float imeasGain, float VREF);

} // namespace qz
