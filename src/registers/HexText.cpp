#include "registers/HexText.h"

namespace qz {

std::string NumberToHex(int32_t number, int length) {
    if (number < 0) return {};
    static const char digits[] = "0123456789ABCDEF";
    std::string s;
    auto v = static_cast<uint32_t>(number);
    do {
        s.insert(s.begin(), digits[v & 0xF]);
        v >>= 4;
    } while (v != 0);
    if (static_cast<int>(s.size()) < length) s.insert(0, static_cast<size_t>(length) - s.size(), '0');
    return s;
}

std::string PadHex4(std::string& text) {
    if (text.size() == 8) text = text.substr(4);
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (text.size() == 1) text = "000" + text;
    else if (text.size() == 2) text = "00" + text;
    else if (text.size() == 3) text = "0" + text;
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
