#include "registers/BitLabels.h"
#include "registers/BitMirror.h"
#include "registers/ReadDecoders.h"

#include <gtest/gtest.h>

namespace {
std::string row(const qz::BitDigits& d) {  // bit 23 first
    std::string s;
    for (int k = 23; k >= 0; --k) s += d[static_cast<size_t>(k)];
    return s;
}
} // namespace

TEST(Mirror, SystemWordSetsItsBitsAndHalvesTheWordToZero) {
    qz::BitDigits d{};
    int32_t w = 0x012200;
    ASSERT_TRUE(qz::DecToBin(w, qz::kDecToBinSYS.limit, d));
    EXPECT_EQ(row(d), "000000010010001000000000");
    for (int k = 0; k < 24; ++k)
        EXPECT_EQ(d[static_cast<size_t>(k)], (k == 9 || k == 13 || k == 16) ? '1' : '0') << k;
    EXPECT_EQ(w, 0) << "the mirror works on the word it is given";
}

TEST(Mirror, WordsOutsideTheRangeLeaveTheRowAlone) {
    qz::BitDigits d{};
    d.fill('x');
    int32_t w = 0x1000001;
    EXPECT_FALSE(qz::DecToBin(w, qz::kDecToBinRSYS.limit, d));
    EXPECT_EQ(w, 0x1000001);
    EXPECT_EQ(d[0], 'x');
    w = -1;
    EXPECT_FALSE(qz::DecToBin(w, qz::kDecToBinSYS.limit, d));
    w = 0x1000000;  // the limit itself is taken; bit 24 does not show
    EXPECT_TRUE(qz::DecToBin(w, qz::kDecToBinRSYS.limit, d));
    EXPECT_EQ(row(d), std::string(24, '0'));
    EXPECT_EQ(w, 1);
    w = 0x20000000;
    EXPECT_TRUE(qz::DecToBin(w, qz::kDecToBinPMU.limit, d));
    w = 9000001;
    EXPECT_FALSE(qz::DecToBin(w, qz::kDecToBinComp1.limit, d));
}

TEST(BitLabels, RowCaptionsRunFromRWToBitZero) {
    const qz::RowCaptions c = qz::rowCaptions(qz::kSystemControlLabels);
    EXPECT_EQ(c[23], "R/W");
    EXPECT_EQ(c[22], "B22");
    EXPECT_EQ(c[16], "B16");
    EXPECT_EQ(c[15], "TMP1");
    EXPECT_EQ(c[13], "GAIN1");
    EXPECT_EQ(c[9], "PD");
    EXPECT_EQ(c[0], "B0");
}

TEST(SystemControlDecoder, DefaultWordAndEmptyReply) {
    qz::SystemControlReadback d = qz::decodeSystemControl(0x012200);
    EXPECT_EQ(d.temp, "130degC");
    EXPECT_EQ(d.gain1, "MEASOUT GAIN = 0.2");
    EXPECT_EQ(d.gain0, "ISENSE GAIN = 20");
    EXPECT_EQ(d.fin, "Force Amp i/p = FINDAC");
    EXPECT_EQ(d.cpo, "Comparator info on CPOL & CPOH");
    EXPECT_EQ(d.pd, "DPS powered up");

    d = qz::decodeSystemControl(0);
    EXPECT_EQ(d.temp, "130degC");
    EXPECT_EQ(d.gain1, "MEASOUT GAIN = 1");
    EXPECT_EQ(d.pd, "DPS powered down");

    d = qz::decodeSystemControl(0x019E00);
    EXPECT_EQ(d.temp, "110degC");
    EXPECT_EQ(d.gain0, "ISENSE GAIN = 10");
    EXPECT_EQ(d.fin, "Force Amp i/p = GND");
    EXPECT_EQ(d.cpo, "Window Comparator - Output on CPOH only");
    EXPECT_EQ(qz::decodeSystemControl(0x014000).temp, "120degC");
    EXPECT_EQ(qz::decodeSystemControl(0x01C000).temp, "100degC");
}

TEST(SystemControlDecoder, AddressBit20KeepsTheTemperatureCaption) {
    EXPECT_FALSE(qz::decodeSystemControl(0x100000).temp.has_value());
    EXPECT_FALSE(qz::decodeSystemControl(0x11C000).temp.has_value());
}
