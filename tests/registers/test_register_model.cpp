#include "registers/FieldOps.h"
#include "registers/General.h"

#include <gtest/gtest.h>

#include <string>

using qz::applyField;
using qz::findControl;

namespace {
int32_t apply(int32_t word, const std::string& control, int item) {
    const qz::ControlOps* c = findControl(control);
    EXPECT_NE(c, nullptr) << control;
    return c ? applyField(word, *c, item) : word;
}
} // namespace

TEST(FieldOps, FieldsWhoseMasksDoMoreThanTheirBits) {
    EXPECT_EQ(apply(0x0122FF, "MEASOUTG", 1), 0x010200) << "checked clears the gain bit";
    EXPECT_EQ(apply(0x010200, "MEASOUTG", 0), 0x012200);
    EXPECT_EQ(apply(0x01F2FF, "tempset", 0), 0x013200) << "item 0 also clears bits 8..0";
    EXPECT_EQ(apply(0x01F200, "tempset", 2), 0x01B200);
    EXPECT_EQ(apply(0x030080, "cboSlew", 7), 0x037000) << "bit 7 goes with any other control";
    EXPECT_EQ(apply(0x030080, "Check2", 0), 0x030000);
    EXPECT_EQ(apply(0x029950, "cboCurrent", 7), 0x029950) << "no item, no change";
}

TEST(FieldOps, DPS1FieldsClearTheUnusedBitsAndNoOtherField) {
    const std::pair<const char*, int32_t> fields[] = {
        {"chkENABLECH", 0x8000}, {"cboCurrent", 0x3800}, {"cboCompare", 0x0600},
        {"cboMEASURE", 0x00E0},  {"chkMEASOUT", 0x0100}, {"chkCLAMPEN", 0x0010}};
    for (const auto& [name, field] : fields) {
        const qz::ControlOps* c = findControl(name);
        ASSERT_NE(c, nullptr) << name;
        for (int item = 0; item < c->items; ++item) {
            const int32_t after = applyField(0x03FFFF, *c, item);
            EXPECT_EQ(after & ~field, 0x020000 | (0xFFFF & ~0x400F & ~field))
                << name << " " << item << ": bits 16, 14 and 3..0 cleared, the rest kept";
        }
    }
}

TEST(FieldOps, AlarmBoxesRebuildTheirOwnBit) {
    for (int n = 1; n <= 10; ++n) {
        const std::string name = "chk" + std::to_string(n);
        EXPECT_EQ(apply(0x06003F, name, 1), 0x060000 | 1 << (16 - n)) << name;
        EXPECT_EQ(apply(0x06FFFF, name, 0), 0x06FFC0 & ~(1 << (16 - n))) << name;
    }
}
