#include "levels/EntryField.h"
#include "levels/Numbers.h"

#include <gtest/gtest.h>

using qz::parseHex;

TEST(ParseHex, DigitsOfEitherCaseUpToThirtyTwoBits) {
    EXPECT_EQ(parseHex("0"), 0);
    EXPECT_EQ(parseHex("ff"), 0xFF);
    EXPECT_EQ(parseHex("FfFf"), 0xFFFF);
    EXPECT_EQ(parseHex("812345"), 0x812345);
    EXPECT_EQ(parseHex("7FFFFFFF"), 0x7FFFFFFF);
    EXPECT_EQ(parseHex("FFFF8000"), -32768) << "eight digits with the top bit set are negative";
    EXPECT_EQ(parseHex("FFFFFFFF"), -1);
    EXPECT_EQ(parseHex("000000012"), 0x12) << "leading zeros do not count against the width";
}

TEST(ParseHex, EmptyForeignOrTooWideTextFails) {
    for (const char* bad : {"", " ", "zz", "12 ", " 12", "&h12", "0x12", "-1", "1.0", "1e-3",
                            "100000000", "FFFFFFFFF", "g", "\xC2\xB1"})
        EXPECT_FALSE(parseHex(bad).has_value()) << bad;
}

TEST(WordEntry, TakesAnyTwentyFourBitWord) {
    qz::FieldCheck c = qz::checkWordEntry("812345");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x812345);
    EXPECT_EQ(c.text, "812345");
    c = qz::checkWordEntry("ff");
    EXPECT_EQ(c.value, 0xFF);
    EXPECT_EQ(c.text, "00FF");
    c = qz::checkWordEntry("ffffff");
    EXPECT_EQ(c.value, 0xFFFFFF);
    EXPECT_EQ(c.text, "FFFFFF");
}

TEST(WordEntry, RefusalsCarryTheirTexts) {
    qz::FieldCheck c = qz::checkWordEntry("1000000");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Number too large. Please reenter code between 0 and xFFFFFF.");
    c = qz::checkWordEntry("zz");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Not a valid number. Please reenter it.");
    EXPECT_EQ(qz::checkWordEntry("").message, "Not a valid number. Please reenter it.");
    EXPECT_EQ(qz::checkWordEntry("7FFFFFFF").message, qz::kWordTooLarge);
}

TEST(WordEntry, NegativeEightDigitWordIsCutToTwentyFourBits) {
    const qz::FieldCheck c = qz::checkWordEntry("FF812345");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x812345);
}

TEST(WordEntry, LeavingChecksTheNumberOnly) {
    EXPECT_TRUE(qz::checkWordOnLeave("1000000").ok);
    EXPECT_EQ(qz::checkWordOnLeave("abc").text, "ABC");
    EXPECT_EQ(qz::checkWordOnLeave("x").message, qz::kNotValidNumber);
}
