#include "registers/HexText.h"

#include <gtest/gtest.h>

using qz::ListTextBlock;
using qz::NumberToHex;
using qz::PadHex4;

TEST(NumberToHex, PadsToTheWidthInUpperCase) {
    EXPECT_EQ(NumberToHex(0x12200, 6), "012200");
    EXPECT_EQ(NumberToHex(0xAB, 4), "00AB");
    EXPECT_EQ(NumberToHex(0, 6), "000000");
    EXPECT_EQ(NumberToHex(0xC40000, 6), "C40000");
    EXPECT_EQ(NumberToHex(0xfedcba, 2), "FEDCBA") << "a longer number keeps all its digits";
    EXPECT_EQ(NumberToHex(0x7FFFFFFF, 6), "7FFFFFFF");
    EXPECT_EQ(NumberToHex(5, 0), "5");
}

TEST(NumberToHex, NegativeNumberGivesEmptyText) {
    EXPECT_EQ(NumberToHex(-1, 6), "");
    EXPECT_EQ(NumberToHex(0x029950 - 0x0B0000, 6), "");
    EXPECT_EQ(NumberToHex(INT32_MIN, 4), "");
}

TEST(PadHex4, TidiesAsTheFieldsNeed) {
    std::string s = "ffff8000";
    EXPECT_EQ(PadHex4(s), "8000");
    EXPECT_EQ(s, "8000") << "the argument is updated as well";
    s = "a";
    EXPECT_EQ(PadHex4(s), "000A");
    s = "ff";
    EXPECT_EQ(PadHex4(s), "00FF");
    s = "abc";
    EXPECT_EQ(PadHex4(s), "0ABC");
    s = "12345";
    EXPECT_EQ(PadHex4(s), "12345");
    s = "1234";
    EXPECT_EQ(PadHex4(s), "1234");
    s = "";
    EXPECT_EQ(PadHex4(s), "");
    s = "ffff0123";
    EXPECT_EQ(PadHex4(s), "0123");
    s = "abcdefabcd";
    EXPECT_EQ(PadHex4(s), "ABCDEFABCD");
}

TEST(ListTextBlock, EveryLineEndsWithCrLf) {
    EXPECT_EQ(ListTextBlock({}), "");
    EXPECT_EQ(ListTextBlock({"a"}), "a\r\n");
    EXPECT_EQ(ListTextBlock({"1\t2", "", "x"}), "1\t2\r\n\r\nx\r\n");
}
