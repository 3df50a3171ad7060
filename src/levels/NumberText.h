#pragma once
// How a result is written as text: the default text of a number and the fixed formats
// of the panels. The decimal point is always ".", whatever the machine's locale.

#include <string>
#include <string_view>

namespace qz {

// The shortest general text of a double: at most 15 significant digits, trailing zeros
// dropped, no leading zeros beyond the one before the point ("0.5", "-5.000191", "12").
// Very large or small numbers take an exponent ("1E+20", "1E-05"). Zero is "0", without
// a sign. Infinities and NaN, which no level gives, show as "inf", "-inf" and "nan".
std::string defaultText(double value);

// The same for a single-precision number, with at most 7 significant digits.
std::string defaultText(float value);

// The value in a format of zeros: the zeros before the point are the least number of
// integer digits, the zeros after it the exact number of decimals ("00.000", "0.00",
// "0.000000000", "0"). A negative value has a leading minus: -5.000191 in "00.000" is
// "-05.000".
// The value is rounded at the last decimal from its exact binary value, a tie away
// from zero (12.8125 in "00.000" is "12.813"), as formatted numbers are conventionally
// rounded; only conversions to integers take ties to the even number.
// Every negative value keeps its minus, also one that rounds to zero (-0.0001 in "0.00"
// is "-0.00"), so an output just below 0 V reads as below it; negative zero has none.
// A format with other characters or without a zero, and a value that is not finite,
// give the default text.
std::string formatNumber(double value, std::string_view format);

} // namespace qz
