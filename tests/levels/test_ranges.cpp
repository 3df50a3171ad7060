#include "levels/Clamps.h"
#include "levels/Messages.h"
#include "levels/Ranges.h"
#include "registers/ReadDecoders.h"

#include <gtest/gtest.h>

#include <string>

using qz::kCurrentRanges;
using qz::RangeNaming;
using qz::UpdateRangeNames;

TEST(CurrentRanges, BitsAreThoseTheReadBackNames) {
    for (size_t i = 0; i < kCurrentRanges.size(); ++i) {
        const qz::DPS1Readback d = qz::decodeDPS1(0x020000 | kCurrentRanges[i].pmuBits);
        ASSERT_TRUE(d.range.has_value()) << i;
        EXPECT_EQ(*d.range, kCurrentRanges[i].status) << i;
    }
}

TEST(CurrentRanges, UnitsAndResistors) {
    EXPECT_EQ(kCurrentRanges[0].rsense, 100000.0f);
    EXPECT_EQ(kCurrentRanges[4].rsense, 20.0f);
    EXPECT_EQ(std::string(kCurrentRanges[2].lblmA), "uA");
    EXPECT_EQ(std::string(kCurrentRanges[3].lblmA), "mA");
    EXPECT_EQ(std::string(kCurrentRanges[6].lblmA), "A");
    EXPECT_EQ(kCurrentRanges[5].rsenseBox, qz::RsenseBox::EXT2);
    EXPECT_EQ(kCurrentRanges[6].rsenseBox, qz::RsenseBox::EXT1);
    // 0.64 V over the resistor is the rated current: 6.4 uA, 32 uA, ..., 32 mA.
    const float rated[] = {6.4e-6f, 32e-6f, 320e-6f, 3.2e-3f, 32e-3f};
    for (int i = 0; i < 5; ++i) {
        EXPECT_FLOAT_EQ(qz::clampLimit(kCurrentRanges[i].rsense, 5.0f), rated[i]) << i;
        EXPECT_FLOAT_EQ(qz::clampLimit(kCurrentRanges[i].rsense, 2.5f), rated[i] / 2) << i;
        EXPECT_FLOAT_EQ(qz::clampLimit(kCurrentRanges[i].rsense, 2.0f), rated[i])
            << "a VREF of Other keeps the full limit";
    }
}

TEST(RangeNames, FollowTheReferenceAndTheGain) {
    qz::RangeNamesUpdate u = UpdateRangeNames(5.0f, 20.0f);
    ASSERT_EQ(u.what, RangeNaming::Names);
    EXPECT_EQ(std::string((*u.names)[0]), "±5uA Current Range");
    EXPECT_EQ(std::string((*u.names)[3]), "±2.5mA Current Range");
    EXPECT_EQ(std::string((*u.names)[6]), "±EXT1 Current Range");

    u = UpdateRangeNames(2.5f, 10.0f);
    ASSERT_EQ(u.what, RangeNaming::Names);
    EXPECT_EQ(u.names, &qz::kRangeNamesRated);

    u = UpdateRangeNames(2.5f, 20.0f);
    ASSERT_EQ(u.what, RangeNaming::Names);
    const char* halved[] = {"±2.5uA Current Range",  "±12.5uA Current Range",
                            "±125uA Current Range",  "±1.25mA Current Range",
                            "±12.5mA Current Range", "±EXT2 Current Range",
                            "±EXT1 Current Range"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(std::string((*u.names)[i]), halved[i]);
}

TEST(RangeNames, DoubledRangesAreWarnedAboutNotRefused) {
    const qz::RangeNamesUpdate u = UpdateRangeNames(5.0f, 10.0f);
    EXPECT_EQ(u.what, RangeNaming::Warning);
    EXPECT_EQ(u.names, nullptr);
    EXPECT_EQ(std::string(u.title), "Entry Error");
    EXPECT_EQ(std::string(u.text),
              "This combination of VREF = 5 and MI Gain = 10 isn't intended to double the "
              "Irange. The QZ7740 can only deliver up to the rated Iranges");
}

TEST(RangeNames, AnyOtherReferenceLeavesTheList) {
    for (float VREF : {2.0f, 4.999f, 0.0f, 2.5000002f}) {
        EXPECT_EQ(UpdateRangeNames(VREF, 20.0f).what, RangeNaming::Nothing) << VREF;
        EXPECT_EQ(UpdateRangeNames(VREF, 10.0f).what, RangeNaming::Nothing) << VREF;
    }
    EXPECT_EQ(UpdateRangeNames(5.0f, 15.0f).what, RangeNaming::Nothing);
}

TEST(RangeNames, StartAndConsoleNames) {
    EXPECT_EQ(std::string(qz::kRangeStartNames[5]), "Ext Current Range 2");
    EXPECT_EQ(std::string(qz::kRangeStartNames[6]), "Ext Current Range1");
    EXPECT_EQ(std::string(qz::kConsoleRangeNames[0]), "±5uA");
    EXPECT_EQ(std::string(qz::kConsoleRangeNames[5]), "±Ext Range 2");
    EXPECT_EQ(std::string(qz::kConsoleRangeNames[6]), "±Ext Range1");
}
