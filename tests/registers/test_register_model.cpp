#include "registers/FieldOps.h"
#include "registers/General.h"
#include "registers/ReadDecoders.h"
#include "registers/RegisterMap.h"

#include <gtest/gtest.h>

using qz::applyField;
using qz::findControl;

namespace {
int32_t apply(int32_t word, const char* control, int item) {
    const qz::ControlOps* c = findControl(control);
    EXPECT_NE(c, nullptr) << control;
    return c ? applyField(word, *c, item) : word;
}
} // namespace

TEST(FieldOps, TellingCasesOfTheConsole) {
    EXPECT_EQ(apply(0x029950, "cboCurrent", 5), 0x02A950);  // bits 13..11 = 101
    EXPECT_EQ(apply(0x012200, "chkPD", 0), 0x012000);
    EXPECT_EQ(apply(0x012000, "chkPD", 1), 0x012200);
    EXPECT_EQ(apply(0x012200, "MEASOUTG", 1), 0x010200);
    EXPECT_EQ(apply(0x010200, "MEASOUTG", 0), 0x012200);
    EXPECT_EQ(apply(0x0122FF, "IMEASG", 0), 0x012200);
    EXPECT_EQ(apply(0x012200, "IMEASG", 1), 0x013200);
    EXPECT_EQ(apply(0x01F2FF, "tempset", 0), 0x013200) << "item 0 also clears bits 8..0";
    EXPECT_EQ(apply(0x01F200, "tempset", 2), 0x01B200);
    EXPECT_EQ(apply(0x012A00, "chkFINGND", 0), 0x012200);
    EXPECT_EQ(apply(0x012600, "CPEN", 0), 0x012200);
    EXPECT_EQ(apply(0x030000, "cboSlave", 3), 0x030600);
    EXPECT_EQ(apply(0x030000, "cboSysforce", 1), 0x038000);
    EXPECT_EQ(apply(0x030080, "cboSlew", 7), 0x037000) << "bit 7 goes with any other control";
    EXPECT_EQ(apply(0x030000, "Check2", 1), 0x030080);
    EXPECT_EQ(apply(0x030080, "Check2", 0), 0x030000);
    EXPECT_EQ(apply(0x029950, "cboCompare", 1), 0x029B50);
    EXPECT_EQ(apply(0x029950, "cboMEASURE", 7), 0x0299F0);
    EXPECT_EQ(apply(0x029950, "chkENABLECH", 0), 0x021950);
    EXPECT_EQ(apply(0x029950, "chkCLAMPEN", 0), 0x029940);
    EXPECT_EQ(apply(0x029950, "chkMEASOUT", 0), 0x029850);
    EXPECT_EQ(apply(0x029950, "cboCurrent", -1), 0x029950) << "no item, no change";
    EXPECT_EQ(apply(0x029950, "cboCurrent", 7), 0x029950);
}

TEST(FieldOps, DPS1FieldsClearTheUnusedBitsAndNoOtherField) {
    const char* controls[] = {"chkENABLECH", "cboCurrent", "cboCompare", "cboMEASURE",
                              "chkMEASOUT", "chkCLAMPEN"};
    const int32_t fields[] = {0x8000, 0x3800, 0x0600, 0x00E0, 0x0100, 0x0010};
    for (int i = 0; i < 6; ++i) {
        const qz::ControlOps* c = findControl(controls[i]);
        ASSERT_NE(c, nullptr);
        for (int item = 0; item < c->items; ++item) {
            const int32_t after = applyField(0x02FFFF | 0x10000, *c, item);
            EXPECT_EQ(after & 0x1400F, 0) << controls[i] << " clears bits 16, 14 and 3..0";
            EXPECT_EQ(after & 0x20000, 0x20000) << "the address stays";
            EXPECT_EQ(after & ~fields[i] & 0xFFFF, 0xFFFF & ~0x400F & ~fields[i])
                << controls[i] << " touches no other field";
        }
    }
}

TEST(FieldOps, AlarmBoxesRebuildTheirOwnBit) {
    int32_t w = qz::kALMregStart | 0x3F;  // unused bits set, to see them cleared
    // chk1 and chk10 checked, every other box unchecked, in the order of the write button.
    for (int n = 1; n <= 10; ++n) {
        const std::string name = "chk" + std::to_string(n);
        w = apply(w, name.c_str(), (n == 1 || n == 10) ? 1 : 0);
    }
    EXPECT_EQ(w, 0x068040);
    for (int n = 1; n <= 10; ++n) {
        const std::string name = "chk" + std::to_string(n);
        EXPECT_EQ(apply(0x060000, name.c_str(), 1), 0x060000 | 1 << (16 - n)) << name;
        EXPECT_EQ(apply(0x06FFC0, name.c_str(), 0), 0x06FFC0 & ~(1 << (16 - n))) << name;
    }
}

TEST(FieldOps, TwinsAreTheFrontPanelsControls) {
    for (const char* twin : {"chkPD", "IMEASG", "MEASOUTG", "tempset", "chkENABLECH", "cboCurrent",
                             "cboCompare", "cboMEASURE", "chkCLAMPEN", "cboSysforce", "cboSlew",
                             "chkGPO", "cboSlave", "chk10k"})
        EXPECT_TRUE(findControl(twin)->twin) << twin;
    for (const char* single : {"chkFINGND", "CPEN", "chkMEASOUT", "Check2", "chk1", "chk10"})
        EXPECT_FALSE(findControl(single)->twin) << single;
    EXPECT_EQ(findControl("txtV"), nullptr);
}

TEST(RegisterMap, ComparatorRowsAndTheVoltageRowThatStandsApart) {
    using qz::Comparator;
    using qz::DacMember;
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 0, DacMember::X1), 0x13);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 1, DacMember::M), 0x17);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPH, 3, DacMember::X1), 0x31);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 6, DacMember::C), 0x27);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPH, 6, DacMember::C), 0x3C);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 7, DacMember::X1), 0x45);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPH, 7, DacMember::M), 0x49);
    EXPECT_EQ(qz::readCommandOf(qz::comparatorAddress(Comparator::CPH, 7, DacMember::X1)), 0xC80000);
    EXPECT_EQ(qz::readCommandOf(0x01), 0x810000);
    EXPECT_EQ(qz::writeWord(0x10, 0xE3E7), 0x10E3E7);
    EXPECT_STREQ(qz::findRegister(0x44)->name, "READ ALARM STATUS AND CLEAR");
    EXPECT_EQ(qz::findRegister(0x06)->readCommand, -1);
    EXPECT_EQ(qz::findRegister(0x53), nullptr);
}

TEST(DPS1Decoder, DefaultWordAndZeroReply) {
    qz::DPS1Readback d = qz::decodeDPS1(0x029950);
    EXPECT_EQ(d.channel, "Force Amplifier enabled");
    EXPECT_EQ(d.range, "Current Range = 2.5mA");
    EXPECT_EQ(d.compare, "COMPARATOR o/p Hi-Z");
    EXPECT_FALSE(d.measoutHiZ);
    EXPECT_EQ(d.source, "MEASOUT = V SENSE");
    EXPECT_EQ(d.clamps, "CLAMPS ENABLED");
    d = qz::decodeDPS1(0);
    EXPECT_EQ(d.channel, "Force Amplfier Disabled");
    EXPECT_EQ(d.range, "Current Range = 5uA");
    EXPECT_TRUE(d.measoutHiZ);
    EXPECT_EQ(d.source, "MEASOUT = Hi-Z");
    EXPECT_EQ(d.clamps, "CLAMPS DISABLED");
}

TEST(DPS1Decoder, EveryRangeComparatorAndSource) {
    EXPECT_EQ(qz::decodeDPS1(0x3000).range, "Current Range = Ext Range 1");
    EXPECT_EQ(qz::decodeDPS1(0x2800).range, "Current Range = Ext Range 2");
    EXPECT_EQ(qz::decodeDPS1(0x2000).range, "Current Range = 25mA");
    EXPECT_FALSE(qz::decodeDPS1(0x3800).range.has_value()) << "the caption stays";
    EXPECT_EQ(qz::decodeDPS1(0x600).compare, "COMPARE VOLTAGE");
    EXPECT_EQ(qz::decodeDPS1(0x400).compare, "COMPARE CURRENT");
    EXPECT_EQ(qz::decodeDPS1(0x200).compare, "COMPARATOR o/p Hi-Z");
    EXPECT_EQ(qz::decodeDPS1(0xE0).source, "MEASOUT = DIAG B");
    EXPECT_EQ(qz::decodeDPS1(0x80).source, "MEASOUT = T SENSE");
    EXPECT_EQ(qz::decodeDPS1(0xA0).source, "MEASOUT = DUTGND SENSE");
}

TEST(AlarmLamps, ActiveLowBitsShowOkOnGreen) {
    for (int bit : {15, 14}) {
        const qz::AlarmLamp on = qz::temperatureLamp(0x43C000, bit);
        EXPECT_EQ(on.colour, 32768);
        EXPECT_STREQ(on.caption, "OK");
        const qz::AlarmLamp off = qz::temperatureLamp(0, bit);
        EXPECT_EQ(off.colour, 255);
        EXPECT_STREQ(off.caption, "HOT");
    }
    EXPECT_STREQ(qz::temperatureLamp(0x8000, 14).caption, "HOT");
}
