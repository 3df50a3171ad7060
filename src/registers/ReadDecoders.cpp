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

} // namespace qz
