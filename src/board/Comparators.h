#pragma once
// Where the comparator DACs stand in the chip's register map: the board's model and the
// program's register map both read this one table.

#include <array>
#include <cstdint>

namespace qz {

// The comparator DACs, one row per current range and one for voltage: the x1 addresses of
// CPL and CPH, with m and c at +1 and +2. Rows 0..4 are "5uA".."25mA", row 5 "Ext1", row 6
// "Ext2", row 7 the voltage range, which stands apart from the others' addresses.
struct ComparatorDacs {
    uint8_t cpl;
    uint8_t cph;
};
inline constexpr std::array<ComparatorDacs, 8> kComparatorDacs{{{0x13, 0x28},
                                                               {0x16, 0x2B},
                                                               {0x19, 0x2E},
                                                               {0x1C, 0x31},
                                                               {0x1F, 0x34},
                                                               {0x22, 0x37},
                                                               {0x25, 0x3A},
                                                               {0x45, 0x48}}};

} // namespace qz
