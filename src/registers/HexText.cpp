#include "registers/HexText.h"

#include <array>
#include <charconv>

namespace qz {

std::string upperCase(std::string_view text) {
    std::string s(text);
    // Latin letters only: a byte of a multi-byte character is never changed.
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return s;
}

std::string NumberToHex(int32_t number, int length) {
    if (number < 0) return {};
    std::array<char, 8> buf{};
    const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), number, 16);
    std::string s =
        upperCase(std::string_view(buf.data(), static_cast<size_t>(r.ptr - buf.data())));
    if (static_cast<int>(s.size()) < length)
        s.insert(0, static_cast<size_t>(length) - s.size(), '0');
    return s;
}

std::string PadHex4(std::string& text) {
    if (text.size() == 8) text = text.substr(4);
    text = upperCase(text);
    if (!text.empty() && text.size() < 4) text.insert(0, 4 - text.size(), '0');
    return text;
}

std::string ListTextBlock(const std::vector<std::string>& lines) {
    std::string block;
    for (const std::string& line : lines) {
        block += line;
        block += "\r\n";
    }
    return block;
}

} // namespace qz
