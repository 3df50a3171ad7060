#pragma once
// The bit mirrors: a word shown as 24 one-digit boxes, index k holding bit k.

#include <array>
#include <cstdint>

namespace qz {

using BitDigits = std::array<char, 24>;  // '0' or '1'; index k is bit k

// The words a mirror accepts: 0 up to its limit. A word outside leaves the row alone.
struct MirrorRow {
    const char* row;   // the bit row it writes
    int32_t limit;
};

inline constexpr MirrorRow kDecToBin{"txtDAC", 0x20000000};
inline constexpr MirrorRow kDecToBinSYS{"txtSYS", 0x20000000};
inline constexpr MirrorRow kDecToBinPMU{"txtPMU", 0x20000000};
inline constexpr MirrorRow kDecToBinDPS2{"txtDPS2", 0x1000000};
inline constexpr MirrorRow kDecToBinRSYS{"txtRSYS", 0x1000000};
inline constexpr MirrorRow kDecToBinRPMU{"txtRPMU", 0x1000000};
inline constexpr MirrorRow kDecToBinRDPS2{"txtRDPS2", 0x1000000};
inline constexpr MirrorRow kDecToBinALM{"txtALM", 0x1000000};
inline constexpr MirrorRow kDecToBinRDAC{"txtRDAC", 0x1000000};
inline constexpr MirrorRow kDecToBinComp1{"txtCP1", 9000000};
inline constexpr MirrorRow kDecToBinComp2{"txtCP2", 0x20000000};
inline constexpr MirrorRow kDecToBinDIAG{"txtCP1", 0x20000000};
inline constexpr MirrorRow kDecToBinRDIAG{"txtRD1", 0x20000000};

// When 0 <= word <= limit: writes the low 24 bits into digits and halves word in place
// 24 times, so a 24-bit word stands at 0 afterwards (callers that own a shadow word hand
// over a copy). Returns false, touching nothing, for a word outside the range.
bool DecToBin(int32_t& word, int32_t limit, BitDigits& digits);

} // namespace qz
