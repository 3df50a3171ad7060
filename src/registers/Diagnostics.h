#pragma once
// The diagnostic register, 0x07: the node brought to DIAG A or DIAG B, the force amplifier
// stage under test and the thermal array point routed to GPO; and the MEASOUT path that
// brings DIAG A or B to the pin through DPS1.

#include <array>
#include <cstdint>

namespace qz::diag {

// What each selection keeps of the word before it ORs in its value.
inline constexpr int32_t kNodeMask = 0x70FE0;   // clears bits 15..12 and 4..0
inline constexpr int32_t kStageMask = 0x7FF80;  // clears bits 6..0
inline constexpr int32_t kPointMask = 0x7F070;  // clears bits 11..7 and 3..0
inline constexpr int32_t kMeasoutMask = 0x2FF10; // DPS1: clears bits 7..5 and 3..0

// The DIAG SELECT rows, by option index; "DISABLED" is index 11 and stands at the top.
struct Node {
    const char* diagA;
    const char* diagB;
    int32_t code; // bits 15..12
};
inline constexpr int kNodes = 12;
inline constexpr std::array<Node, kNodes> kNodeRows{{
    {"EXTFORCE1A", "EXTFORCE2A", 5},
    {"FINP", "FINM", 6},
    {"OUT 2.5mA", "OUT 25mA", 7},
    {"VPTAT Lo", "VPTAT hi", 8},
    {"VTSD Lo", "VTSD Hi", 9},
    {"MEAS I", "VMidCode", 10},
    {"MEAS V", "VMinCode", 11},
    {"FORCE DAC", "VOS DAC", 12},
    {"CLL DAC", "CLH DAC", 13},
    {"CPL DAC", "CPH DAC", 14},
    {"OSD DAC", "DGS DAC", 15},
    {"DISABLED", "DISABLED", 0},
}};
// The order in which the rows stand on the panel.
inline constexpr std::array<int, kNodes> kNodeOrder{11, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};

// The TEST FORCE AMP options; there is no index 5.
struct Stage {
    int index;
    const char* caption;
    int32_t code; // FA1, FA0: bits 6..5
};
inline constexpr std::array<Stage, 7> kStages{{
    {0, "ALL STAGES", 0},
    {1, "EXTFORCE 1C", 1},
    {2, "EXTFORCE 1B", 2},
    {3, "EXTFORCE 1A", 3},
    {4, "ALL STAGES", 0},
    {6, "EXTFORCE 2A", 2},
    {7, "EXTFORCE 2B", 3},
}};

// The thermal array points: index 0 disables, 1..24 route the point of code index + 7.
// The first block's eight points have no captions of their own.
inline constexpr int kPoints = 25;
struct PointBlock {
    const char* caption;
    int first; // option index of its first point
};
inline constexpr std::array<PointBlock, 3> kPointBlocks{{
    {"COOL BLOCK", 1}, {"FORCE AMP PNPS", 9}, {"FORCE AMP NPNS", 17}}};
inline constexpr std::array<const char*, 8> kPointCaptions{"1A-1", "IA-2", "2A",   "1B-1",
                                                           "1B-2", "2B",   "1C-1", "1C-2"};

// The MEASOUT source that each path option puts in DPS1 bits 7..5: DIAG A, DIAG B.
inline constexpr std::array<int32_t, 2> kMeasoutPath{0xC0, 0xE0};

// The bits each selection ORs into the diagnostic word; -1 for an index it lacks.
constexpr int32_t nodeBits(int index) {
    return index >= 0 && index < kNodes ? kNodeRows[static_cast<size_t>(index)].code << 12 : -1;
}
constexpr int32_t stageBits(int index) {
    for (const Stage& s : kStages)
        if (s.index == index) return s.code << 5;
    return -1;
}
constexpr int32_t pointBits(int index) {
    if (index == 0) return 0;
    return index > 0 && index < kPoints ? (index + 7) << 7 : -1;
}

} // namespace qz::diag
