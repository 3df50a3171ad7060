#pragma once
// The two compensation registers: the items of their lists with the field each item sets,
// and what every selection does to its shadow word. A selection ANDs the word with its
// mask, which clears more than the field (the unused data bits always, and for gm the three
// Cc switches as well), then ORs in the field of the item chosen.

#include "registers/General.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace qz {

struct CompItem {
    const char* text; // the list item, the option's caption or the switch's label
    int32_t bits;     // the field it sets in the word
};

// Register 1 (0x04): load capacitance, ESR, and the mode.
// ESR ranges in milliohm; the list's unit labels say so.
inline constexpr CompItem kEsrItems[16] = {
    {"0 to 1", 0x0000},         {"1 to 1.8", 0x0100},     {"1.8 to 3.4", 0x0200},
    {"3.4 to 6.3", 0x0300},     {"6.3 to 12", 0x0400},    {"12 to 21", 0x0500},
    {"21 to 40", 0x0600},       {"40 to 74", 0x0700},     {"74 to 140", 0x0800},
    {"140 to 250 ", 0x0900},    {"250 to 460 ", 0x0A00},  {"460 to 860", 0x0B00},
    {"860 to 1500", 0x0C00},    {"1500 to 2900", 0x0D00}, {"2900 to 5400", 0x0E00},
    {"64000 to 10000", 0x0F00},
};
inline constexpr CompItem kCdutItems[16] = {
    {"0 to 50nF", 0x0000},      {"50nF to 83nF", 0x1000},   {"83nF to 138nF", 0x2000},
    {"138nF to 229nF", 0x3000}, {"229nF to 380nF", 0x4000}, {"380nF to 630nF", 0x5000},
    {"630nF to 1.1uF", 0x6000}, {"1.1uF to 1.7uF", 0x7000}, {"1.7uF to 2.9uF", 0x8000},
    {"2.9uF to 4.8uF", 0x9000}, {"4.8uF to 7.9uF", 0xA000}, {"7.9uF to 13uF", 0xB000},
    {"13uF to 22uF", 0xC000},   {"22uF to 36uF", 0xD000},   {"36uF to 60uF", 0xE000},
    {"60uF to 100uF", 0xF000},
};
inline constexpr CompItem kModeItems[2] = {{"SAFE MODE", 0x00}, {"AUTO COMPENSATION MODE", 0x80}};

// Register 2 (0x05): manual enable, the network's Rz, Rp and gm, the CF switch and Cc1..Cc3.
inline constexpr CompItem kRpItems[8] = {
    {"Rp = 200, Fp = 100MHz", 0x0000},   {"Rp = 675, Fp = 29MHz", 0x0200},
    {"Rp = 2280, Fp = 8.7MHzk", 0x0400}, {"Rp = 7700, Fp = 2.6MHz", 0x0600},
    {"Rp = 26k, Fp = 760kHz", 0x0800},   {"Rp = 88k, Fp = 220kHz", 0x0A00},
    {"Rp = 296k, Fp = 67kHz", 0x0C00},   {"Rz = 1M, Fz = 20KHz", 0x0E00},
};
inline constexpr CompItem kRzItems[8] = {
    {"Rz = 500, Fz = 3.2M", 0x0000},  {"Rz = 1.6k, Fz = 1M", 0x1000},
    {"Rz = 5K, Fz = 320k", 0x2000},   {"Rz = 16k, Fz = 100k", 0x3000},
    {"Rz = 50k, Fz = 32k", 0x4000},   {"Rz = 160k, Fz = 10k", 0x5000},
    {"Rz = 500k, Fz = 3.2k", 0x6000}, {"Rz = 1.6M, Fz = 1K", 0x7000},
};
inline constexpr CompItem kGmItems[4] = {
    {"gm = 40uA/V, GBW = 64kHz", 0x0000},
    {"gm = 80uA/V, GBW = 130kHz", 0x0080},
    {"gm = 400uA/V, GBW = 640kHz", 0x0100},
    {"gm = 10000uA/V, GBW = 1.6MHz", 0x0180},
};
// One row of the network a switch: row k closes switch k; "NONE" closes none.
inline constexpr int kCfSwitches = 6;
inline constexpr CompItem kCfRows[7] = {{"CF0", 0x10}, {"CF1", 0x20}, {"CF2", 0x30}, {"CF3", 0x40},
                                        {"CF4", 0x50}, {"CF5", 0x60}, {"NONE", 0x00}};
// The switched capacitors beside the fixed one, and the manual enable: one bit each.
inline constexpr CompItem kCcSwitches[3] = {{"Cc1", 0x08}, {"Cc2", 0x04}, {"Cc3", 0x02}};
inline constexpr CompItem kManualItem{"ENABLE MANUAL COMPENSATION MODE", 0x8000};

enum class CompWord { COMP1, COMP2 };
enum class CompKind {
    List,    // item: the list's index, -1 while none is chosen
    Options, // item: the option's index in its array
    Check,   // item: 1 ticked, 0 unticked; ticking ORs the bit in without a mask
};

struct CompSelection {
    const char* control; // its name, the name of the array for options
    CompWord word;
    CompKind kind;
    int32_t mask; // ANDed first; for a check box on unticking only
    std::span<const CompItem> items;
    int mirrorBit;  // the bit row's box that follows the selection at once, or -1
    bool showsWord; // the word box shows the word afterwards
};

inline constexpr CompSelection kOption2{
    "Option2", CompWord::COMP1, CompKind::Options, 0x4FF00, kModeItems, 7, true};
inline constexpr CompSelection kcboRC{
    "cboRC", CompWord::COMP1, CompKind::List, 0x4F080, kEsrItems, -1, true};
inline constexpr CompSelection kcboCR{
    "cboCR", CompWord::COMP1, CompKind::List, 0x40F80, kCdutItems, -1, true};
inline constexpr CompSelection kcboRp{
    "cboRp", CompWord::COMP2, CompKind::List, 0x5F1FE, kRpItems, -1, true};
inline constexpr CompSelection kcboRZ{
    "cboRZ", CompWord::COMP2, CompKind::List, 0x58FFE, kRzItems, -1, true};
// gm clears the whole low nibble: a gm takes Cc1..Cc3 out of the word, boxes ticked or not.
inline constexpr CompSelection kcboGM{
    "cboGM", CompWord::COMP2, CompKind::List, 0x5FE70, kGmItems, -1, true};
inline constexpr CompSelection kOption1{
    "Option1", CompWord::COMP2, CompKind::Options, 0x5FF8E, kCfRows, -1, true};
// A check box's one item: the bit it ORs in when ticked.
constexpr std::span<const CompItem> bitOf(const CompItem& item) {
    return {&item, 1};
}
inline constexpr CompSelection kchkCc[3] = {
    {"chkCc1", CompWord::COMP2, CompKind::Check, 0x5FFF6, bitOf(kCcSwitches[0]), 3, true},
    {"chkCc2", CompWord::COMP2, CompKind::Check, 0x5FFFA, bitOf(kCcSwitches[1]), 2, true},
    {"chkCc3", CompWord::COMP2, CompKind::Check, 0x5FFFC, bitOf(kCcSwitches[2]), 1, true},
};
// The manual enable leaves the word box until the next selection or load.
inline constexpr CompSelection kchkManualMode{
    "chkManualMode", CompWord::COMP2, CompKind::Check, 0x57FFE, bitOf(kManualItem), 15, false};

// The word after the selection of item. A list or option outside its items leaves the
// field 0, since the mask has been applied.
constexpr int32_t applySelection(int32_t word, const CompSelection& s, int item) {
    if (s.kind == CompKind::Check) return item == 1 ? word | s.items[0].bits : word & s.mask;
    word &= s.mask;
    if (item >= 0 && static_cast<size_t>(item) < s.items.size())
        word |= s.items[static_cast<size_t>(item)].bits;
    return word;
}

// The shadow word a selection works on.
inline int32_t& compWord(General& general, CompWord word) {
    return word == CompWord::COMP1 ? general.COMP1reg : general.COMP2reg;
}

} // namespace qz
