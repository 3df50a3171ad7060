#include "registers/ReadDecoders.h"

namespace qz {

SystemControlReadback decodeSystemControl(int32_t r) {
    SystemControlReadback d;
    // Address bit 20 is 0 in this reply, so it takes part in the test.
    switch (r & 0x10C000) {
    case 0x0000: d.temp = "130degC"; break;
    case 0x4000: d.temp = "120degC"; break;
    case 0x8000: d.temp = "110degC"; break;
    case 0xC000: d.temp = "100degC"; break;
    default: break;
    }
    d.gain1 = (r & 0x2000) ? "MEASOUT GAIN = 0.2" : "MEASOUT GAIN = 1";
    d.gain0 = (r & 0x1000) ? "ISENSE GAIN = 10" : "ISENSE GAIN = 20";
    d.fin = (r & 0x0800) ? "Force Amp i/p = GND" : "Force Amp i/p = FINDAC";
    d.cpo = (r & 0x0400) ? "Window Comparator - Output on CPOH only"
                         : "Comparator info on CPOL & CPOH";
    d.pd = (r & 0x0200) ? "DPS powered up" : "DPS powered down";
    return d;
}

DPS1Readback decodeDPS1(int32_t r) {
    static const char* const kRanges[] = {
        "Current Range = 5uA",  "Current Range = 25uA", "Current Range = 250uA",
        "Current Range = 2.5mA", "Current Range = 25mA", "Current Range = Ext Range 2",
        "Current Range = Ext Range 1"};
    static const char* const kSources[] = {
        "MEASOUT = Hi-Z",    "MEASOUT = I SENSE",      "MEASOUT = V SENSE", "MEASOUT = K SENSE",
        "MEASOUT = T SENSE", "MEASOUT = DUTGND SENSE", "MEASOUT = DIAG A",  "MEASOUT = DIAG B"};
    DPS1Readback d;
    d.channel = (r & 0x8000) ? "Force Amplifier enabled" : "Force Amplfier Disabled";
    const int range = (r & 0x3800) >> 11;
    if (range < 7) d.range = kRanges[range];  // 0x3800 has no text
    switch (r & 0x600) {
    case 0x600: d.compare = "COMPARE VOLTAGE"; break;
    case 0x400: d.compare = "COMPARE CURRENT"; break;
    default: d.compare = "COMPARATOR o/p Hi-Z"; break;
    }
    d.measoutHiZ = (r & 0x100) == 0;
    d.source = kSources[(r & 0xE0) >> 5];
    d.clamps = (r & 0x10) ? "CLAMPS ENABLED" : "CLAMPS DISABLED";
    return d;
}

AlarmLamp temperatureLamp(int32_t reply, int bit) {
    if (reply & (1 << bit)) return {0x008000, "OK"};
    return {0x0000FF, "HOT"};
}

} // namespace qz
