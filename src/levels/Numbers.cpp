#include "levels/Numbers.h"

namespace qz {

std::optional<int32_t> parseHex(std::string_view text) {
    if (text.empty()) return std::nullopt;
    uint64_t v = 0;
    for (char c : text) {
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else return std::nullopt;
        v = v * 16 + static_cast<uint64_t>(d);
        if (v > 0xFFFFFFFFull) return std::nullopt;
    }
    return static_cast<int32_t>(static_cast<uint32_t>(v));
}

} // namespace qz
