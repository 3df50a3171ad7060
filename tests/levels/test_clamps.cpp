// The clamp levels of the front panel: a current in the unit of the range becomes the
// code of CLH or CLL x1; and the names the range list takes after VREF and the MI gain.

#include "levels/Clamps.h"
#include "levels/Messages.h"
#include "levels/Ranges.h"

#include <gtest/gtest.h>

#include <string>

using qz::ClampBlame;
using qz::ClampResult;
using qz::ClampSide;

namespace {

constexpr const char* kExt1Out = "Number outside range. Please reenter Rsense between 1 and 256k.";
constexpr const char* kExt2Out =
    "Number outside range. Please reenter Rsense between 0.4 and 256k.";

// A clamp entry with the resistor boxes at their start texts.
ClampResult clamp(ClampSide side, const char* entry, int range, float VREF = 5.0f,
                  float gain = 20.0f, const char* ext1 = "0.4", const char* ext2 = "1") {
    return qz::computeClamp(side, entry, range, ext1, ext2, gain, VREF);
}

constexpr ClampSide kHigh = ClampSide::High, kLow = ClampSide::Low;

} // namespace

TEST(Clamp, WorkedValuesAndTheMiddleCode) {
    ClampResult r = clamp(kHigh, "2.5", 3);
    EXPECT_EQ(r.code, 58343);
    EXPECT_EQ(r.txtWrite, "10E3E7");
    r = clamp(kHigh, "2", 3);
    EXPECT_EQ(r.code, 53228);
    EXPECT_EQ(r.DAClast, 0x10CFEC);
    EXPECT_EQ(clamp(kHigh, "0", 3).DAClast, 0x108000);
    EXPECT_EQ(clamp(kLow, "0", 3).DAClast, 0x0D8000);
    EXPECT_EQ(clamp(kLow, "-0.5", 3).DAClast, 0x0D8000 - (58343 - 0x8000) / 5);
    EXPECT_EQ(clamp(kHigh, "-0", 0).code, 0x8000) << "minus zero is not negative";
}

TEST(Clamp, TheLimitOfEachRangeIsTakenAndNothingPastIt) {
    struct Row {
        float VREF;
        int range;
        const char *limit, *past;
    };
    // L = 0.64 / R, or 0.32 / R with VREF 2.5; the MI gain plays no part.
    const Row rows[] = {
        {5.0f, 0, "6.4", "6.41"},   {5.0f, 1, "32", "32.1"},  {5.0f, 2, "320", "321"},
        {5.0f, 3, "3.2", "3.2001"}, {5.0f, 4, "32", "32.1"},  {2.5f, 0, "3.2", "3.21"},
        {2.5f, 1, "16", "16.1"},    {2.5f, 2, "160", "161"},  {2.5f, 3, "1.6", "1.6001"},
        {2.5f, 4, "16", "16.1"},    {2.0f, 3, "3.2", "3.21"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << row.VREF << " range " << row.range);
        for (float gain : {20.0f, 10.0f}) {
            EXPECT_TRUE(clamp(kHigh, row.limit, row.range, row.VREF, gain).ok);
            EXPECT_TRUE(
                clamp(kLow, ("-" + std::string(row.limit)).c_str(), row.range, row.VREF, gain).ok);
            EXPECT_EQ(clamp(kHigh, row.past, row.range, row.VREF, gain).message,
                      qz::kClampHighAboveLimit);
            EXPECT_EQ(clamp(kLow, ("-" + std::string(row.past)).c_str(), row.range, row.VREF, gain)
                          .message,
                      qz::kClampLowBelowLimit);
        }
    }
    // At the limit the code is all but the end of its half.
    EXPECT_EQ(clamp(kHigh, "3.2", 3).code, 65504);
    EXPECT_EQ(clamp(kLow, "-3.2", 3).code, 32);
}

TEST(Clamp, RefusalsBySideInTheirOrder) {
    const std::tuple<ClampSide, const char*, const char*> cases[] = {
        {kHigh, "3.3",
         "Requested clamp level outside of Irange. Please reenter current suited to "
         "the Irange."},
        {kHigh, "-0.1",
         "Requested clamp level outside of Irange. Please reenter reenter current "
         "suited to the Irange. CLL can only clamp positive current"},
        {kLow, "0.1",
         "Requested clamp level outside of Irange. Please reenter current suited to "
         "the Irange. Ensure to add minus sign for negative clamp"},
        {kLow, "-3.3",
         "Requested clamp level outside of Irange. Please reenter reenter current "
         "suited to the Irange. Ensure to add minus sign for negative clamp, CLL can "
         "only clamp negative current"},
        {kHigh, "", "Not a valid number. Please reenter it."},
        {kLow, "2.5mA", "Not a valid number. Please reenter it."},
    };
    for (const auto& [side, entry, message] : cases) {
        const ClampResult r = clamp(side, entry, 3);
        EXPECT_EQ(r.message, message) << entry;
        EXPECT_EQ(r.blame, ClampBlame::Entry) << entry;
        EXPECT_EQ(r.txtWrite, "") << "nothing to send";
    }
}

TEST(Clamp, HalfTheGainHalvesTheDistanceFromTheMiddle) {
    EXPECT_EQ(clamp(kHigh, "2.5", 3, 5.0f, 10.0f).code, 45556);
    EXPECT_EQ(clamp(kHigh, "2", 3, 5.0f, 10.0f).code, 0x8000 + (53228 - 0x8000) / 2);
}

TEST(Clamp, ExternalRangesTakeAmperesAndTheResistorBox) {
    EXPECT_EQ(clamp(kHigh, "1", 6).code, 53228) << "EXT1, 0.4 ohm: 1 A is 2 mA on 200 ohm";
    EXPECT_EQ(clamp(kHigh, "0.5", 5).code, 58343) << "EXT2, 1 ohm";
    EXPECT_EQ(clamp(kLow, "-0.001", 6, 5.0f, 20.0f, "100").code, 32768 - 5115);
    EXPECT_EQ(clamp(kHigh, "1", 6, 5.0f, 20.0f, "0.2").code, 32768 + (53228 - 32768) / 2)
        << "a resistance outside the box's own bounds is taken as it stands";
    for (const char* bad : {"abc", "", "0", "-1", "1e39"}) {
        ClampResult r = clamp(kHigh, "0.1", 6, 5.0f, 20.0f, bad, "1");
        EXPECT_EQ(r.message, kExt1Out) << bad;
        EXPECT_EQ(r.blame, ClampBlame::txtEXT1rsense) << bad;
        r = clamp(kHigh, "0.1", 5, 5.0f, 20.0f, "0.4", bad);
        EXPECT_EQ(r.message, kExt2Out) << bad;
        EXPECT_EQ(r.blame, ClampBlame::txtEXT2Rsense) << bad;
    }
    EXPECT_TRUE(clamp(kHigh, "1", 3, 5.0f, 20.0f, "junk", "junk").ok)
        << "a fixed range reads no box";
}

TEST(Clamp, ReferenceOfZeroAndCodesHeldInTheirHalf) {
    const ClampResult r = clamp(kHigh, "0", 3, 0.0f);
    EXPECT_EQ(r.message, qz::kNotValidNumber);
    EXPECT_EQ(r.blame, ClampBlame::Reference);
    EXPECT_EQ(clamp(kHigh, "3", 3, 1.0f).code, 0xFFFF);
    EXPECT_EQ(clamp(kLow, "-3", 3, 1.0f).code, 0);
    EXPECT_EQ(clamp(kHigh, "3", 3, -5.0f).code, 0x8000);
}

TEST(RangeNames, FollowTheReferenceAndTheGain) {
    using qz::RangeNaming;
    using qz::UpdateRangeNames;
    const auto name = [](float VREF, float gain, int i) {
        const qz::RangeNamesUpdate u = UpdateRangeNames(VREF, gain);
        return u.what == RangeNaming::Names ? std::string((*u.names)[static_cast<size_t>(i)]) : "";
    };
    EXPECT_EQ(name(5.0f, 20.0f, 0), "±5uA Current Range");
    EXPECT_EQ(name(2.5f, 10.0f, 3), "±2.5mA Current Range");
    EXPECT_EQ(name(2.5f, 20.0f, 0), "±2.5uA Current Range");
    EXPECT_EQ(name(2.5f, 20.0f, 4), "±12.5mA Current Range");
    EXPECT_EQ(name(2.5f, 20.0f, 6), "±EXT1 Current Range");
    const qz::RangeNamesUpdate warn = UpdateRangeNames(5.0f, 10.0f);
    EXPECT_EQ(warn.what, RangeNaming::Warning);
    EXPECT_STREQ(warn.title, "Entry Error");
    EXPECT_STREQ(warn.text,
                 "This combination of VREF = 5 and MI Gain = 10 isn't intended to "
                 "double the Irange. The QZ7740 can only deliver up to the rated Iranges");
    for (float VREF : {2.0f, 4.999f, 2.5000002f})
        EXPECT_EQ(UpdateRangeNames(VREF, 20.0f).what, RangeNaming::Nothing) << VREF;
}

TEST(RangeFullScale, TheRatedNamesInAmperesAndTheSmallestRangeThatCovers) {
    const double rated[] = {5e-6, 25e-6, 250e-6, 2.5e-3, 25e-3};
    std::vector<double> at5, halved, doubledGain;
    for (int i = 0; i < 5; ++i) {
        const double R = qz::currentRange(i)->rsense;
        at5.push_back(qz::rangeFullScale(R, 5.0, 20.0));
        halved.push_back(qz::rangeFullScale(R, 2.5, 20.0));
        doubledGain.push_back(qz::rangeFullScale(R, 5.0, 10.0));
        EXPECT_DOUBLE_EQ(at5[static_cast<size_t>(i)], rated[i]) << i;
        EXPECT_DOUBLE_EQ(halved[static_cast<size_t>(i)], rated[i] / 2) << i;
        EXPECT_DOUBLE_EQ(qz::rangeFullScale(R, 2.5, 10.0), rated[i]) << i;
        EXPECT_DOUBLE_EQ(doubledGain[static_cast<size_t>(i)], rated[i]) << "gain 10 at VREF 5 gives no more";
    }
    EXPECT_EQ(qz::smallestRangeCovering(at5, 0.002), 3);
    EXPECT_EQ(qz::smallestRangeCovering(at5, -0.002), 3) << "the ranges are both ways";
    EXPECT_EQ(qz::smallestRangeCovering(at5, 2.5e-3), 3) << "the full scale itself";
    EXPECT_EQ(qz::smallestRangeCovering(at5, 2.5001e-3), 4);
    EXPECT_EQ(qz::smallestRangeCovering(at5, 0.0), 0);
    EXPECT_EQ(qz::smallestRangeCovering(halved, 2e-3), 4);
    EXPECT_FALSE(qz::smallestRangeCovering(at5, 0.026));
    EXPECT_EQ(qz::rangeFullScale(0.0, 5.0, 20.0), 0.0) << "a range without a resistor covers nothing";
}

TEST(Clamp, ACodeKeptThroughARangeChangeStandsForItsNewCurrent) {
    const ClampResult set = clamp(kHigh, "2", 3);
    const qz::ClampLevel level{set.current, set.R, 20.0f, 5.0f};
    EXPECT_EQ(qz::clampAmpsNow(level, 200.0f, 20.0f, 5.0f), static_cast<double>(set.current)) << "unchanged";
    // The same code in the 25mA range is the clamp of 20 mA there.
    const double now = qz::clampAmpsNow(level, 20.0f, 20.0f, 5.0f);
    EXPECT_NEAR(now, 0.02, 1e-9);
    EXPECT_EQ(clamp(kHigh, "20", 4).code, set.code);
    const ClampResult one = clamp(kHigh, "1", 3);
    const qz::ClampLevel oneLevel{one.current, one.R, 20.0f, 5.0f};
    EXPECT_NEAR(qz::clampAmpsNow(oneLevel, 200.0f, 10.0f, 5.0f), 0.002, 1e-9) << "half the gain, twice the current";
    EXPECT_EQ(clamp(kHigh, "2", 3, 5.0f, 10.0f).code, one.code);
    EXPECT_NEAR(qz::clampAmpsNow(oneLevel, 200.0f, 20.0f, 2.5f), 0.0005, 1e-9) << "half VREF, half the current";
}
