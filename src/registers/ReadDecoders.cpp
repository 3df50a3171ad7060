#include "registers/ReadDecoders.h"

namespace qz {

namespace {

// A one-bit field and the texts of its two states.
template <typename Readback> struct BitCaption {
    int32_t bit;
    std::string Readback::*label;
    const char* set;
    const char* clear;
};

template <typename Readback, size_t N>
void caption(Readback& d, int32_t r, const BitCaption<Readback> (&bits)[N]) {
    for (const BitCaption<Readback>& b : bits)
        d.*b.label = (r & b.bit) ? b.set : b.clear;
}

using SC = SystemControlReadback;
constexpr BitCaption<SC> kSystemBits[] = {
    {0x2000, &SC::gain1, "MEASOUT GAIN = 0.2", "MEASOUT GAIN = 1"},
    {0x1000, &SC::gain0, "ISENSE GAIN = 10", "ISENSE GAIN = 20"},
    {0x0800, &SC::fin, "Force Amp i/p = GND", "Force Amp i/p = FINDAC"},
    {0x0400, &SC::cpo, "Window Comparator - Output on CPOH only", "Comparator info on CPOL & CPOH"},
    {0x0200, &SC::pd, "DPS powered up", "DPS powered down"},
};

// By bits 15..14 of the reply.
constexpr const char* kShutdownTemps[] = {"130degC", "120degC", "110degC", "100degC"};

using D1 = DPS1Readback;
constexpr BitCaption<D1> kDPS1Bits[] = {
    {0x8000, &D1::channel, "Force Amplifier enabled", "Force Amplfier Disabled"},
    {0x0010, &D1::clamps, "CLAMPS ENABLED", "CLAMPS DISABLED"},
};

// By bits 10..9 of the reply.
constexpr const char* kCompareTexts[] = {"COMPARATOR o/p Hi-Z", "COMPARATOR o/p Hi-Z",
                                         "COMPARE CURRENT", "COMPARE VOLTAGE"};

// By bits 7..5 of the reply.
constexpr const char* kSourceTexts[] = {
    "MEASOUT = Hi-Z",    "MEASOUT = I SENSE",      "MEASOUT = V SENSE", "MEASOUT = K SENSE",
    "MEASOUT = T SENSE", "MEASOUT = DUTGND SENSE", "MEASOUT = DIAG A",  "MEASOUT = DIAG B"};

} // namespace

SystemControlReadback decodeSystemControl(int32_t r) {
    SystemControlReadback d;
    // Address bit 20 is 0 in this reply, so it takes part in the test.
    if ((r & 0x100000) == 0) d.temp = kShutdownTemps[(r >> 14) & 3];
    caption(d, r, kSystemBits);
    return d;
}

DPS1Readback decodeDPS1(int32_t r) {
    DPS1Readback d;
    caption(d, r, kDPS1Bits);
    const auto range = static_cast<size_t>((r >> 11) & 7);
    if (range < kRangeReadback.size()) d.range = kRangeReadback[range];
    d.compare = kCompareTexts[(r >> 9) & 3];
    d.measoutHiZ = (r & 0x100) == 0;
    d.source = kSourceTexts[(r >> 5) & 7];
    return d;
}

} // namespace qz
