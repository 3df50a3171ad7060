#include "registers/BitLabels.h"
#include "registers/BitMirror.h"
#include "registers/ReadDecoders.h"

#include <gtest/gtest.h>

namespace {
std::string row(const qz::BitDigits& d) { // bit 23 first
    std::string s;
    for (int k = 23; k >= 0; --k)
        s += d[static_cast<size_t>(k)];
    return s;
}
} // namespace

TEST(Mirror, BitsOfTheWordAndItsLimits) {
    qz::BitDigits d{};
    int32_t w = 0x012200;
    ASSERT_TRUE(qz::DecToBin(w, qz::kDecToBinSYS.limit, d));
    EXPECT_EQ(row(d), "000000010010001000000000") << "bits 16, 13 and 9";
    EXPECT_EQ(w, 0) << "the mirror works on the word it is given";
    d.fill('x');
    for (auto [word, limit] :
         {std::pair{0x1000001, qz::kDecToBinRSYS.limit}, std::pair{-1, qz::kDecToBinSYS.limit},
          std::pair{9000001, qz::kDecToBinComp1.limit},
          std::pair{0x20000001, qz::kDecToBinPMU.limit}}) {
        EXPECT_FALSE(qz::DecToBin(word, limit, d)) << std::hex << word;
        EXPECT_EQ(row(d), std::string(24, 'x')) << "the row is left alone";
    }
    w = 0x1000000; // the limit itself is taken; bit 24 does not show
    EXPECT_TRUE(qz::DecToBin(w, qz::kDecToBinRDAC.limit, d));
    EXPECT_EQ(row(d), std::string(24, '0'));
    w = 0x20000000;
    EXPECT_TRUE(qz::DecToBin(w, qz::kDecToBinDIAG.limit, d));
    w = 9000000;
    EXPECT_TRUE(qz::DecToBin(w, qz::kDecToBinComp1.limit, d));
}

TEST(BitLabels, RowCaptionsRunFromRWToBitZero) {
    const qz::RowCaptions c = qz::rowCaptions(qz::kSystemControlLabels);
    EXPECT_EQ(c[23], "R/W");
    EXPECT_EQ(c[16], "B16");
    EXPECT_EQ(c[15], "TMP1");
    EXPECT_EQ(c[9], "PD");
    EXPECT_EQ(c[0], "B0");
}

TEST(Decoders, WorkedReplies) {
    const qz::DPS1Readback p = qz::decodeDPS1(0x029950);
    EXPECT_EQ(p.channel, "Force Amplifier enabled");
    EXPECT_EQ(p.range, "Current Range = 2.5mA");
    EXPECT_EQ(p.compare, "COMPARATOR o/p Hi-Z");
    EXPECT_FALSE(p.measoutHiZ);
    EXPECT_EQ(p.source, "MEASOUT = V SENSE");
    EXPECT_EQ(p.clamps, "CLAMPS ENABLED");
    const qz::SystemControlReadback s = qz::decodeSystemControl(0x012200);
    EXPECT_EQ(s.temp, "130degC");
    EXPECT_EQ(s.gain1, "MEASOUT GAIN = 0.2");
    EXPECT_EQ(s.gain0, "ISENSE GAIN = 20");
    EXPECT_EQ(s.fin, "Force Amp i/p = FINDAC");
    EXPECT_EQ(s.cpo, "Comparator info on CPOL & CPOH");
    EXPECT_EQ(s.pd, "DPS powered up");
}

TEST(Decoders, TheOtherStatesOfEachField) {
    const qz::DPS1Readback zero = qz::decodeDPS1(0);
    EXPECT_EQ(zero.channel, "Force Amplfier Disabled");
    EXPECT_EQ(zero.range, "Current Range = 5uA");
    EXPECT_TRUE(zero.measoutHiZ);
    EXPECT_EQ(zero.source, "MEASOUT = Hi-Z");
    EXPECT_EQ(zero.clamps, "CLAMPS DISABLED");
    EXPECT_EQ(qz::decodeDPS1(0x3000).range, "Current Range = Ext Range 1");
    EXPECT_EQ(qz::decodeDPS1(0x2800).range, "Current Range = Ext Range 2");
    EXPECT_FALSE(qz::decodeDPS1(0x3800).range) << "no text: the caption stays";
    EXPECT_EQ(qz::decodeDPS1(0x600).compare, "COMPARE VOLTAGE");
    EXPECT_EQ(qz::decodeDPS1(0x400).compare, "COMPARE CURRENT");
    EXPECT_EQ(qz::decodeDPS1(0x200).compare, "COMPARATOR o/p Hi-Z");
    EXPECT_EQ(qz::decodeDPS1(0xE0).source, "MEASOUT = DIAG B");
    EXPECT_EQ(qz::decodeDPS1(0x20).source, "MEASOUT = I SENSE");
    EXPECT_EQ(qz::decodeDPS1(0xA0).source, "MEASOUT = DUTGND SENSE");

    // Neighbouring bits in opposite states, so that each text reads its own bit.
    qz::SystemControlReadback s = qz::decodeSystemControl(0x01D400);
    EXPECT_EQ(s.temp, "100degC");
    EXPECT_EQ(s.gain1, "MEASOUT GAIN = 1");
    EXPECT_EQ(s.gain0, "ISENSE GAIN = 10");
    EXPECT_EQ(s.fin, "Force Amp i/p = FINDAC");
    EXPECT_EQ(s.cpo, "Window Comparator - Output on CPOH only");
    EXPECT_EQ(s.pd, "DPS powered down");
    s = qz::decodeSystemControl(0x010800);
    EXPECT_EQ(s.fin, "Force Amp i/p = GND");
    EXPECT_EQ(s.gain0, "ISENSE GAIN = 20");
    EXPECT_EQ(s.cpo, "Comparator info on CPOL & CPOH");
    EXPECT_EQ(qz::decodeSystemControl(0x014000).temp, "120degC");
    EXPECT_EQ(qz::decodeSystemControl(0x018000).temp, "110degC");
    EXPECT_FALSE(qz::decodeSystemControl(0x11C000).temp) << "address bit 20 keeps the caption";
}
