// Typed text to numbers, reals to integers, and numbers back to the panels' texts.

#include "levels/NumberText.h"
#include "levels/Numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>

using qz::formatNumber;
using qz::parseDecimal;
using qz::parseHex;

TEST(ParseHex, DigitsOfEitherCaseUpToThirtyTwoBitsTopBitNegative) {
    EXPECT_EQ(parseHex("ff"), 0xFF);
    EXPECT_EQ(parseHex("FfFf"), 0xFFFF);
    EXPECT_EQ(parseHex("812345"), 0x812345);
    EXPECT_EQ(parseHex("7FFFFFFF"), 0x7FFFFFFF);
    EXPECT_EQ(parseHex("FFFF8000"), -32768);
    EXPECT_EQ(parseHex("FFFFFFFF"), -1);
    EXPECT_EQ(parseHex("000000012"), 0x12) << "leading zeros do not count against the width";
    for (const char* bad : {"", " 12", "12 ", "&h12", "0x12", "-1", "+1", "1.0", "g", "100000000",
                            "FFFFFFFFF", "\xC2\xB1"})
        EXPECT_FALSE(parseHex(bad).has_value()) << '"' << bad << '"';
}

TEST(ReadDacCode, ANegativeTextStandsForItsLowSixteenBits) {
    EXPECT_EQ(qz::readDacCode("FFFF0123"), 0x0123);
    EXPECT_EQ(qz::readDacCode("80000000"), 0);
    EXPECT_EQ(qz::readDacCode("10000"), 0x10000) << "a number is taken as it is";
    EXPECT_FALSE(qz::readDacCode("80 0"));
}

TEST(ParseDecimal, WhatABenchEngineerTypesAndNothingElse) {
    const std::pair<const char*, double> good[] = {
        {"-5", -5.0},    {"+2.5", 2.5},          {".5", 0.5},        {"5.", 5.0},
        {"-.25", -0.25}, {"1e3", 1000.0},        {"2.5E-3", 0.0025}, {"  12.75\t", 12.75},
        {"1e-400", 0.0}, {"0.000e99999999", 0.0}};
    for (const auto& [text, value] : good)
        EXPECT_EQ(parseDecimal(text), value) << '"' << text << '"';
    for (const char* bad : {"", " ", ".", "-", "+-1", "- 1", "1 000", "1,5", "1.2.3", "1e", "e5",
                            "5V", "inf", "nan", "&h10", "0x10", "1\n", "1e309", "-1e309"})
        EXPECT_FALSE(parseDecimal(bad).has_value()) << '"' << bad << '"';
    EXPECT_FALSE(parseDecimal(std::string(400, '9')));
    EXPECT_TRUE(std::signbit(*parseDecimal("-1e-99999999999"))) << "a tiny negative is -0";
}

TEST(ParseSingle, RoundsOnceAndRefusesWhatASingleCannotHold) {
    EXPECT_EQ(qz::parseSingle("0.4"), 0.4f);
    EXPECT_EQ(qz::parseSingle("12.812109"), 12.812109f);
    EXPECT_EQ(qz::parseSingle("3.4028235e38"), FLT_MAX);
    EXPECT_FALSE(qz::parseSingle("3.5e38")) << "a double would hold it";
    EXPECT_EQ(qz::parseSingle("1e-50"), 0.0f);
}

TEST(RoundHalfEven, TiesGoToTheEvenNeighbourEverywhere) {
    const std::pair<double, double> cases[] = {{0.5, 0.0},
                                               {1.5, 2.0},
                                               {2.5, 2.0},
                                               {32767.5, 32768.0},
                                               {-0.5, -0.0},
                                               {-1.5, -2.0},
                                               {-2.5, -2.0},
                                               {2.5000000001, 3.0},
                                               {-7.7, -8.0},
                                               {2.4999999999, 2.0},
                                               {4503599627370497.0, 4503599627370497.0}};
    for (const auto& [x, r] : cases)
        EXPECT_EQ(qz::roundHalfEven(x), r) << x;
    EXPECT_TRUE(std::isnan(qz::roundHalfEven(NAN)));
    // Through parseWhole, which must also fit 32 bits.
    EXPECT_EQ(qz::parseWhole("3.5"), 4);
    EXPECT_EQ(qz::parseWhole("-2147483648.5"), INT32_MIN);
    EXPECT_FALSE(qz::parseWhole("2147483647.5")) << "rounds to 2^31";
}

TEST(DefaultText, FifteenDigitsForADoubleSevenForASingle) {
    EXPECT_EQ(qz::defaultText(-5.000191), "-5.000191");
    EXPECT_EQ(qz::defaultText(0.1 + 0.2), "0.3");
    EXPECT_EQ(qz::defaultText(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(qz::defaultText(1234567890123456.0), "1.23456789012346E+15");
    EXPECT_EQ(qz::defaultText(0.00001), "1E-05");
    EXPECT_EQ(qz::defaultText(-0.0), "0");
    EXPECT_EQ(qz::defaultText(12.812109f), "12.81211");
    EXPECT_EQ(qz::defaultText(0.1f), "0.1");
    EXPECT_EQ(qz::defaultText(16777216.0f), "1.677722E+07");
}

TEST(FormatNumber, TheFormatsOfThePanels) {
    const std::tuple<double, const char*, const char*> cases[] = {
        {-5.000191, "00.000", "-05.000"},
        {1.000195, "00.000", "01.000"},
        {123.4, "00.000", "123.400"},
        {3.14159, "0.00", "3.14"},
        {7.0, "00.00", "07.00"},
        {0.000123456789, "0.000000000", "0.000123457"},
        {2.5, "0.0000", "2.5000"},
        {-1.23456, "00.0000", "-01.2346"},
        {65535.4, "0", "65535"},
        // Ties away from zero on the exact binary value, carries into a new digit.
        {12.8125, "00.000", "12.813"},
        {-12.8125, "00.000", "-12.813"},
        {2.675, "0.00", "2.67"},
        {99.9999, "00.000", "100.000"},
        // Every negative value keeps its minus; negative zero has none.
        {-0.000391, "00.000", "-00.000"},
        {-0.0, "00.000", "00.000"},
        {1.5, "#.##", "1.5"},
    };
    for (const auto& [value, format, text] : cases)
        EXPECT_EQ(formatNumber(value, format), text) << value << " in " << format;
    EXPECT_EQ(formatNumber(0.145f, "0.00"), "0.14") << "a single is its exact binary value";
}
