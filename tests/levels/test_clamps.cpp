#include "levels/Clamps.h"
#include "levels/Messages.h"

#include <gtest/gtest.h>

#include <cstdlib>

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

} // namespace

TEST(Clamp, WorkedValues) {
    ClampResult r = clamp(ClampSide::High, "2.5", 3);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.code, 58343);
    EXPECT_EQ(r.DAClast, 0x10E3E7);
    EXPECT_EQ(r.txtWrite, "10E3E7");
    r = clamp(ClampSide::High, "2", 3);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.code, 53228);
    EXPECT_EQ(r.DAClast, 0x10CFEC);
}

TEST(Clamp, ZeroIsTheMiddleCodeOnBothSides) {
    const ClampResult high = clamp(ClampSide::High, "0", 3);
    const ClampResult low = clamp(ClampSide::Low, "0", 3);
    ASSERT_TRUE(high.ok);
    ASSERT_TRUE(low.ok);
    EXPECT_EQ(high.DAClast, 0x108000);
    EXPECT_EQ(low.DAClast, 0x0D8000);
    EXPECT_EQ(clamp(ClampSide::High, "-0", 0).code, 0x8000) << "minus zero is not negative";
}

TEST(Clamp, EntriesExactlyAtTheLimitAreTaken) {
    // Range 3 stands apart below: there the typed limit does not scale to L exactly.
    struct Row {
        float VREF;
        int range;
        const char* limit;
        const char* negated;
    };
    const Row rows[] = {
        {5.0f, 0, "6.4", "-6.4"}, {5.0f, 1, "32", "-32"},   {5.0f, 2, "320", "-320"},
        {5.0f, 4, "32", "-32"},   {2.5f, 0, "3.2", "-3.2"}, {2.5f, 1, "16", "-16"},
        {2.5f, 2, "160", "-160"}, {2.5f, 4, "16", "-16"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "VREF " << row.VREF << " range " << row.range);
        const ClampResult high = clamp(ClampSide::High, row.limit, row.range, row.VREF);
        const ClampResult low = clamp(ClampSide::Low, row.negated, row.range, row.VREF);
        ASSERT_TRUE(high.ok) << high.message;
        ASSERT_TRUE(low.ok) << low.message;
        EXPECT_EQ(high.current, high.L);
        // 0.64 V (or 0.32 V) times the gain of 20 is all but the full half range.
        EXPECT_EQ(high.code, 65504);
        EXPECT_EQ(low.code, 32);
    }
}

TEST(Clamp, TypedLimitOfTheMilliampRangeIsTakenThoughItLandsOneStepAbove) {
    // 3.2 mA scaled to amperes and stored as a single is the single just above
    // 0.64 / 200 stored as a single: it is still the limit the operator reads.
    ClampResult r = clamp(ClampSide::High, "3.2", 3);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_GT(r.current, r.L);
    EXPECT_EQ(r.code, 65504);
    r = clamp(ClampSide::Low, "-3.2", 3);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.code, 32);
    EXPECT_TRUE(clamp(ClampSide::High, "1.6", 3, 2.5f).ok);
    EXPECT_TRUE(clamp(ClampSide::High, "3.1999998", 3).ok);
    // Anything beyond that one step is outside the range.
    EXPECT_EQ(clamp(ClampSide::High, "3.2001", 3).message, qz::kClampHighAboveLimit);
    EXPECT_EQ(clamp(ClampSide::Low, "-3.2001", 3).message, qz::kClampLowBelowLimit);
    EXPECT_EQ(clamp(ClampSide::High, "1.6001", 3, 2.5f).message, qz::kClampHighAboveLimit);
}

TEST(Clamp, RefusalsBySideInTheirOrder) {
    ClampResult r = clamp(ClampSide::High, "3.3", 3);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "Requested clamp level outside of Irange. Please reenter current "
                         "suited to the Irange.");
    EXPECT_EQ(r.blame, ClampBlame::Entry);
    r = clamp(ClampSide::High, "-0.1", 3);
    EXPECT_EQ(r.message, "Requested clamp level outside of Irange. Please reenter reenter "
                         "current suited to the Irange. CLL can only clamp positive current");
    r = clamp(ClampSide::Low, "0.1", 3);
    EXPECT_EQ(r.message, "Requested clamp level outside of Irange. Please reenter current "
                         "suited to the Irange. Ensure to add minus sign for negative clamp");
    r = clamp(ClampSide::Low, "-3.3", 3);
    EXPECT_EQ(r.message,
              "Requested clamp level outside of Irange. Please reenter reenter current suited "
              "to the Irange. Ensure to add minus sign for negative clamp, CLL can only clamp "
              "negative current");
    EXPECT_EQ(r.txtWrite, "") << "nothing to send";
    // The limit halves with VREF 2.5: 2 mA passes at 5 V and not at 2.5 V.
    EXPECT_TRUE(clamp(ClampSide::High, "2", 3, 5.0f).ok);
    EXPECT_EQ(clamp(ClampSide::High, "2", 3, 2.5f).message, qz::kClampHighAboveLimit);
}

TEST(Clamp, UnreadableEntryIsNotAValidNumber) {
    for (const char* bad : {"", "abc", "1,5", "2.5mA", "nan"}) {
        const ClampResult r = clamp(ClampSide::High, bad, 3);
        EXPECT_FALSE(r.ok) << bad;
        EXPECT_EQ(r.message, "Not a valid number. Please reenter it.") << bad;
        EXPECT_EQ(r.blame, ClampBlame::Entry) << bad;
    }
    EXPECT_EQ(clamp(ClampSide::High, "1", 7).message, qz::kNotValidNumber);
}

TEST(Clamp, HalfTheGainHalvesTheDistanceFromTheMiddle) {
    for (const char* entry : {"2.5", "1", "3"}) {
        const int far = clamp(ClampSide::High, entry, 3, 5.0f, 20.0f).code - 0x8000;
        const int near = clamp(ClampSide::High, entry, 3, 5.0f, 10.0f).code - 0x8000;
        EXPECT_LE(std::abs(2 * near - far), 1) << entry;
        EXPECT_TRUE(clamp(ClampSide::High, entry, 3, 5.0f, 10.0f).ok)
            << "the limit does not follow the gain";
    }
    EXPECT_EQ(clamp(ClampSide::High, "2.5", 3, 5.0f, 10.0f).code, 45556);
}

TEST(Clamp, ExternalRangesTakeAmperesAndTheResistorBox) {
    // Range 6, EXT1, 0.4 ohm: 1 A gives 8 V of sense times 20.
    ClampResult r = clamp(ClampSide::High, "1", 6);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.R, 0.4f);
    EXPECT_EQ(r.current, 1.0f);
    EXPECT_EQ(r.code, 53228);
    // Range 5, EXT2, 1 ohm: 0.5 A.
    r = clamp(ClampSide::High, "0.5", 5);
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.code, 58343);
    // The entry stays in amperes whatever resistor the box holds.
    r = clamp(ClampSide::Low, "-0.001", 6, 5.0f, 20.0f, "100");
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.current, -0.001f);
    EXPECT_EQ(r.code, 32768 - 5115);
    EXPECT_EQ(r.DAClast, 0x0D0000 | (32768 - 5115));
}

TEST(Clamp, ResistorBoxWithoutAUsableNumberIsBlamed) {
    for (const char* bad : {"abc", "", "0", "-0", "-1", "1e39"}) {
        ClampResult r = clamp(ClampSide::High, "0.1", 6, 5.0f, 20.0f, bad, "1");
        EXPECT_FALSE(r.ok) << bad;
        EXPECT_EQ(r.message, kExt1Out) << bad;
        EXPECT_EQ(r.blame, ClampBlame::txtEXT1rsense) << bad;
        r = clamp(ClampSide::High, "0.1", 5, 5.0f, 20.0f, "0.4", bad);
        EXPECT_EQ(r.message, kExt2Out) << bad;
        EXPECT_EQ(r.blame, ClampBlame::txtEXT2Rsense) << bad;
    }
    EXPECT_TRUE(clamp(ClampSide::High, "0.1", 6, 5.0f, 20.0f, "0.4", "junk").ok)
        << "the other range's box is not read";
    EXPECT_TRUE(clamp(ClampSide::High, "0.000002", 6, 5.0f, 20.0f, "256000").ok);
    // Outside the box's own bounds but a resistance: its Enter key was never pressed, so
    // the clamp takes it as it stands. 0.2 ohm makes the limit 3.2 A; 1 A is 8 V times 20
    // over half the resistor of the 0.4 ohm case, so half as far from mid-scale.
    ClampResult r = clamp(ClampSide::High, "1", 6, 5.0f, 20.0f, "0.2");
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.R, 0.2f);
    EXPECT_EQ(r.L, 3.2f);
    EXPECT_EQ(r.code, 32768 + (53228 - 32768) / 2);
    r = clamp(ClampSide::High, "0.000001", 5, 5.0f, 20.0f, "0.4", "300000");
    ASSERT_TRUE(r.ok) << r.message;
    EXPECT_EQ(r.R, 300000.0f);
    EXPECT_TRUE(clamp(ClampSide::High, "1", 3, 5.0f, 20.0f, "junk", "junk").ok)
        << "a fixed range reads neither box";
}

TEST(Clamp, ReferenceOfZeroIsRefused) {
    const ClampResult r = clamp(ClampSide::High, "0", 3, 0.0f);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, qz::kNotValidNumber);
    EXPECT_EQ(r.blame, ClampBlame::Reference);
}

TEST(Clamp, CodesStayInTheirHalf) {
    // A small reference makes the code overshoot; it is held to the side's half.
    ClampResult r = clamp(ClampSide::High, "3", 3, 1.0f);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.code, 0xFFFF);
    r = clamp(ClampSide::Low, "-3", 3, 1.0f);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.code, 0);
    // A negative reference turns the law over; the codes still stay in their half.
    r = clamp(ClampSide::High, "3", 3, -5.0f);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.code, 0x8000);
}
