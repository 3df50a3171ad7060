#include "levels/Numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>

using qz::parseDecimal;
using qz::parseHex;
using qz::parseSingle;
using qz::parseWhole;
using qz::roundHalfEven;

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

TEST(ReadDacCode, SixteenBitCodesAndTheLowBitsOfANegativeText) {
    EXPECT_EQ(qz::readDacCode("8000"), 0x8000);
    EXPECT_EQ(qz::readDacCode("ffff"), 0xFFFF);
    EXPECT_EQ(qz::readDacCode("0"), 0);
    EXPECT_EQ(qz::readDacCode("FFFF0123"), 0x0123);
    EXPECT_EQ(qz::readDacCode("80000000"), 0);
    EXPECT_EQ(qz::readDacCode("10000"), 0x10000) << "a number is taken as it is";
    EXPECT_EQ(qz::readDacCode("7FFFFFFF"), 0x7FFFFFFF);
    EXPECT_FALSE(qz::readDacCode(""));
    EXPECT_FALSE(qz::readDacCode("80 0"));
}

TEST(ParseDecimal, WhatABenchEngineerTypes) {
    EXPECT_EQ(parseDecimal("5"), 5.0);
    EXPECT_EQ(parseDecimal("-5"), -5.0);
    EXPECT_EQ(parseDecimal("+2.5"), 2.5);
    EXPECT_EQ(parseDecimal(".5"), 0.5);
    EXPECT_EQ(parseDecimal("5."), 5.0);
    EXPECT_EQ(parseDecimal("-.25"), -0.25);
    EXPECT_EQ(parseDecimal("007"), 7.0);
    EXPECT_EQ(parseDecimal("1e3"), 1000.0);
    EXPECT_EQ(parseDecimal("2.5E-3"), 0.0025);
    EXPECT_EQ(parseDecimal("1e+2"), 100.0);
    EXPECT_EQ(parseDecimal("  12.75\t"), 12.75) << "spaces and tabs around the number";
    EXPECT_EQ(parseDecimal("-5.000191"), -5.000191);
}

TEST(ParseDecimal, RefusesEverythingElse) {
    for (const char* bad : {"",
                            " ",
                            "\t",
                            ".",
                            "-",
                            "+",
                            "+-1",
                            "--1",
                            "- 1",
                            "1 000",
                            "1,5",
                            "1.2.3",
                            "1e",
                            "1e+",
                            "e5",
                            ".e1",
                            "5V",
                            "abc",
                            "inf",
                            "-inf",
                            "infinity",
                            "nan",
                            "NaN",
                            "&h10",
                            "0x10",
                            "1e5.0",
                            "1_000",
                            "\xC2\xB1"
                            "1",
                            "1\n"})
        EXPECT_FALSE(parseDecimal(bad).has_value()) << '"' << bad << '"';
}

TEST(ParseDecimal, NumbersBeyondTheRangeAreRefusedTinyOnesBecomeZero) {
    EXPECT_FALSE(parseDecimal("1e309"));
    EXPECT_FALSE(parseDecimal("-1e309"));
    EXPECT_FALSE(parseDecimal("1e99999999999999999999"));
    EXPECT_FALSE(parseDecimal(std::string(400, '9')));
    EXPECT_EQ(parseDecimal("1e-400"), 0.0);
    EXPECT_EQ(parseDecimal("0.000e99999999"), 0.0) << "zero stays zero at any exponent";
    const auto negTiny = parseDecimal("-1e-99999999999");
    ASSERT_TRUE(negTiny);
    EXPECT_EQ(*negTiny, 0.0);
    EXPECT_TRUE(std::signbit(*negTiny));
    EXPECT_EQ(parseDecimal("0." + std::string(500, '0') + "1e500"), 0.1)
        << "a long text is read whole";
}

TEST(ParseSingle, RoundsOnceToSinglePrecision) {
    EXPECT_EQ(parseSingle("0.4"), 0.4f);
    EXPECT_EQ(parseSingle("12.812109"), 12.812109f);
    EXPECT_EQ(parseSingle("256000"), 256000.0f);
    EXPECT_EQ(parseSingle("3.4028235e38"), FLT_MAX);
    EXPECT_FALSE(parseSingle("3.5e38")) << "beyond single precision though a double holds it";
    EXPECT_FALSE(parseSingle("-1e39"));
    EXPECT_EQ(parseSingle("1e-50"), 0.0f);
    EXPECT_GT(*parseSingle("1e-40"), 0.0f) << "a subnormal single is still a number";
    EXPECT_FALSE(parseSingle("nan"));
    EXPECT_FALSE(parseSingle("1,5"));
}

TEST(ParseWhole, RoundsHalfToEvenAndMustFitThirtyTwoBits) {
    EXPECT_EQ(parseWhole("5.4"), 5);
    EXPECT_EQ(parseWhole("1.4"), 1);
    EXPECT_EQ(parseWhole("2.5"), 2);
    EXPECT_EQ(parseWhole("3.5"), 4);
    EXPECT_EQ(parseWhole("-2.5"), -2);
    EXPECT_EQ(parseWhole("-0.5"), 0);
    EXPECT_EQ(parseWhole("1000"), 1000);
    EXPECT_EQ(parseWhole("1e3"), 1000);
    EXPECT_EQ(parseWhole("2147483647.4"), 2147483647);
    EXPECT_FALSE(parseWhole("2147483647.5")) << "rounds to 2^31";
    EXPECT_EQ(parseWhole("-2147483648.5"), INT32_MIN) << "the tie goes to the even -2^31";
    EXPECT_FALSE(parseWhole("-2147483649"));
    EXPECT_FALSE(parseWhole("x"));
    EXPECT_FALSE(parseWhole(""));
}

TEST(RoundHalfEven, TiesGoToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfEven(0.5), 0.0);
    EXPECT_EQ(roundHalfEven(1.5), 2.0);
    EXPECT_EQ(roundHalfEven(2.5), 2.0);
    EXPECT_EQ(roundHalfEven(32767.5), 32768.0);
    EXPECT_EQ(roundHalfEven(35325.5), 35326.0);
    EXPECT_EQ(roundHalfEven(-0.5), 0.0);
    EXPECT_EQ(roundHalfEven(-1.5), -2.0);
    EXPECT_EQ(roundHalfEven(-2.5), -2.0);
    EXPECT_EQ(roundHalfEven(2.5000000001), 3.0);
    EXPECT_EQ(roundHalfEven(2.4999999999), 2.0);
    EXPECT_EQ(roundHalfEven(-7.7), -8.0);
    EXPECT_EQ(roundHalfEven(4503599627370497.0), 4503599627370497.0) << "2^52 + 1 is whole";
    EXPECT_TRUE(std::isnan(roundHalfEven(NAN)));
}
