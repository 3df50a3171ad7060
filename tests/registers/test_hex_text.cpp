#include "registers/HexText.h"

#include <gtest/gtest.h>

using qz::NumberToHex;

TEST(NumberToHex, UpperCaseDigitsPaddedToTheWidth) {
    EXPECT_EQ(NumberToHex(0x12200, 6), "012200");
    EXPECT_EQ(NumberToHex(0xAB, 4), "00AB");
    EXPECT_EQ(NumberToHex(0, 6), "000000");
    EXPECT_EQ(NumberToHex(0xfedcba, 2), "FEDCBA") << "a longer number keeps all its digits";
    EXPECT_EQ(NumberToHex(0x7FFFFFFF, 6), "7FFFFFFF");
    EXPECT_EQ(NumberToHex(-1, 6), "") << "a field never shows a wrong code";
    EXPECT_EQ(NumberToHex(INT32_MIN, 4), "");
}

TEST(PadHex4, TidiesAsTheFieldsNeed) {
    const std::pair<const char*, const char*> cases[] = {
        {"ffff8000", "8000"}, {"a", "000A"}, {"ff", "00FF"},       {"abc", "0ABC"},
        {"12345", "12345"},   {"", ""},      {"ffff0123", "0123"}, {"abcdefabcd", "ABCDEFABCD"}};
    for (const auto& [in, out] : cases) {
        std::string s = in;
        EXPECT_EQ(qz::PadHex4(s), out) << in;
        EXPECT_EQ(s, out) << in << ": the argument is updated as well";
    }
}

TEST(ListTextBlock, EveryLineEndsWithCrLf) {
    EXPECT_EQ(qz::ListTextBlock({}), "");
    EXPECT_EQ(qz::ListTextBlock({"1\t2", "", "x"}), "1\t2\r\n\r\nx\r\n");
}
