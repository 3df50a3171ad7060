#pragma once
// How typed text becomes a number, and how a real number becomes an integer.

#include <cstdint>
#include <optional>
#include <string_view>

namespace qz {

// The text read as hexadecimal, as if "&h" stood in front of it: hexadecimal digits
// only, a value of at most 32 bits, read as a signed 32-bit integer, so that an
// eight-digit text with its top bit set is negative. Empty text fails.
std::optional<int32_t> parseHex(std::string_view text);

// A 16-bit DAC code read from the text of its box (OFFSET, m, c, x1) by a routine that
// did not get there by the box's Enter key. A negative value from an eight-digit text,
// which the box's own Enter refuses, stands here for its low 16 bits, the four digits
// PadHex4 leaves of it; a larger number is taken as it is; a text that is not
// hexadecimal is no code at all.
std::optional<int32_t> readDacCode(std::string_view text);

// A decimal entry as a bench engineer types it. Accepted, and nothing else:
//   optional spaces or tabs around the number, an optional "+" or "-",
//   digits with at most one decimal point and at least one digit ("5", "-0.25", ".5", "5."),
//   an optional exponent: "e" or "E", an optional sign, one or more digits ("1e-3", "2E+2").
// Refused: empty text, letters, commas, inner spaces, "inf", "nan", hexadecimal, and a
// number beyond the range of the type. A number too small for the type becomes the
// nearest value it has, which may be zero (with its sign).
std::optional<double> parseDecimal(std::string_view text);

// The same text as a single-precision number, rounded once from the decimal text.
std::optional<float> parseSingle(std::string_view text);

// The same text as a 32-bit integer: the number is rounded to a whole number, a tie to
// the even one ("2.5" is 2, "5.4" is 5), and must then fit in 32 bits.
std::optional<int32_t> parseWhole(std::string_view text);

// Nearest whole number, a tie to the even one: the program's rule for every conversion
// of a real number to an integer. Infinities and NaN come back unchanged.
double roundHalfEven(double x);

} // namespace qz
