#pragma once
// How typed text becomes a number.

#include <cstdint>
#include <optional>
#include <string_view>

namespace qz {

// The text read as hexadecimal, as if "&h" stood in front of it: hexadecimal digits
// only, a value of at most 32 bits, read as a signed 32-bit integer, so that an
// eight-digit text with its top bit set is negative. Empty text fails.
std::optional<int32_t> parseHex(std::string_view text);

} // namespace qz
