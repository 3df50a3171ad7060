#pragma once
// Words and codes as text: hexadecimal, and the copy of a list.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qz {

// The text with its letters a..z upper-cased.
std::string upperCase(std::string_view text);

// Upper-case hexadecimal digits of number, with "0" in front up to length characters.
// A number with more digits keeps all of them; a negative number gives an empty text,
// so a field never shows a wrong code.
std::string NumberToHex(int32_t number, int length);

// Tidies the text of a 16-bit entry field and returns it: an 8-character text keeps its
// last four characters ("FFFF8000" is a 16-bit value with its top bit set), the text is
// upper-cased, and texts of one to three characters get leading zeros up to four.
std::string PadHex4(std::string& text);

// Every line followed by CR LF, the last one too.
std::string ListTextBlock(const std::vector<std::string>& lines);

} // namespace qz
