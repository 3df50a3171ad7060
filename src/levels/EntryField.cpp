#include "levels/EntryField.h"

#include "levels/Numbers.h"
#include "registers/HexText.h"

#include <algorithm>
#include <cctype>

namespace qz {

namespace {
std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return s;
}

FieldCheck refuse(const char* message) {
    FieldCheck r;
    r.message = message;
    return r;
}
} // namespace

FieldCheck checkWordEntry(const std::string& text) {
    const auto v = parseHex(text);
    if (!v) return refuse(kNotValidNumber);
    if (*v > 0xFFFFFF) return refuse(kWordTooLarge);
    FieldCheck r;
    r.ok = true;
    // An eight-digit text with its top bit set reads as a negative number; only its low
    // 24 bits can go out, so that is the word taken.
    r.value = *v & 0xFFFFFF;
    r.text = upper(text);
    PadHex4(r.text);
    return r;
}

FieldCheck checkWordOnLeave(const std::string& text) {
    if (!parseHex(text)) return refuse(kNotValidNumber);
    FieldCheck r;
    r.ok = true;
    r.value = *parseHex(text);
    r.text = upper(text);
    return r;
}

} // namespace qz
