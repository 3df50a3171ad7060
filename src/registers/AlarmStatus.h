#pragma once
// The alarm status word as the panels show it: one lamp per bit from 15 down to 4, the
// latched alarm in column 0 of its row and the live one in column 1. An alarm bit is
// active low: 1 is the healthy state, shown green, 0 the alarm, red. The comparator
// outputs are no alarms but take the same colours.

#include <cstdint>

namespace qz {

// Colour values with red in the lowest byte.
inline constexpr int32_t kGreen = 0x008000;
inline constexpr int32_t kRed = 0x0000FF;

struct AlarmLampRow {
    int bit;
    const char* lamp;    // the lamp array
    int member;          // 0 latched, 1 live
    const char* row;     // the row's caption
    const char* atOne;   // caption on green
    const char* atZero;  // caption on red
};

inline constexpr AlarmLampRow kAlarmLamps[] = {
    {15, "cmdTEMP", 0, "TEMP", "OK", "HOT"},      {14, "cmdTEMP", 1, "TEMP", "OK", "HOT"},
    {13, "cmdosalm", 0, "OPEN SENSE", "OK", "Open"}, {12, "cmdosalm", 1, "OPEN SENSE", "OK", "Open"},
    {11, "cmddut", 0, "DUTGND", "OK", "Open"},    {10, "cmddut", 1, "DUTGND", "OK", "Open"},
    {9, "cmdclamp", 0, "CLAMP", "OK", "CLAMP"},   {8, "cmdclamp", 1, "CLAMP", "OK", "CLAMP"},
    {7, "cmdguard", 0, "GUARD", "OK", "s/c"},     {6, "cmdguard", 1, "GUARD", "OK", "s/c"},
    {5, "cmdcpo", 0, "COMPARE", "L = 1", "L = 0"}, {4, "cmdcpo", 1, "COMPARE", "H = 1", "H = 0"},
};

struct LampState {
    int32_t colour;
    const char* caption;
};

// What a lamp shows for a reply; the address bits of the reply play no part.
constexpr LampState alarmLamp(int32_t reply, const AlarmLampRow& row) {
    return (reply >> row.bit) & 1 ? LampState{kGreen, row.atOne} : LampState{kRed, row.atZero};
}

} // namespace qz
