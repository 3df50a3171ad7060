#pragma once
// The captions over the boxes of a bit row: "R/W", "B22" .. "B16", then the labels of
// the register's data bits, bit 15 first.

#include <array>
#include <string>

namespace qz {

using DataLabels = std::array<const char*, 16>;   // bit 15 first
using RowCaptions = std::array<std::string, 24>;  // index k is bit k

RowCaptions rowCaptions(const DataLabels& data);

// A caption over the bits high..low of a row, naming the field they make up.
struct BitGroup {
    const char* caption;
    int high, low;
};

inline constexpr DataLabels kSystemControlLabels{
    "TMP1", "TMP0", "GAIN1", "GAIN0", "FINGND", "CPO", "PD", "B8",
    "B7",   "B6",   "B5",    "B4",    "B3",     "B2",  "B1", "B0"};

} // namespace qz
