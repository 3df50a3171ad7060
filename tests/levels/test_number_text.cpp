#include "levels/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>

using qz::defaultText;
using qz::formatNumber;

TEST(DefaultText, DoubleTakesTheShortestFormUpToFifteenDigits) {
    EXPECT_EQ(defaultText(0.5), "0.5");
    EXPECT_EQ(defaultText(-5.000191), "-5.000191");
    EXPECT_EQ(defaultText(12.0), "12");
    EXPECT_EQ(defaultText(0.1 + 0.2), "0.3") << "the 17th digit is not shown";
    EXPECT_EQ(defaultText(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(defaultText(35326.0), "35326");
    EXPECT_EQ(defaultText(524288.0 + 35326.0), "559614");
    EXPECT_EQ(defaultText(123456789012345.0), "123456789012345");
    EXPECT_EQ(defaultText(1234567890123456.0), "1.23456789012346E+15");
    EXPECT_EQ(defaultText(1e20), "1E+20");
    EXPECT_EQ(defaultText(0.0001), "0.0001");
    EXPECT_EQ(defaultText(0.00001), "1E-05");
    EXPECT_EQ(defaultText(-0.0), "0") << "zero carries no sign";
    EXPECT_EQ(defaultText(INFINITY), "inf");
}

TEST(DefaultText, SingleTakesSevenDigits) {
    EXPECT_EQ(defaultText(12.812109f), "12.81211");
    EXPECT_EQ(defaultText(-5.000191f), "-5.000191");
    EXPECT_EQ(defaultText(0.1f), "0.1") << "not the double 0.100000001490116";
    EXPECT_EQ(defaultText(0.2f + 0.1f), "0.3");
    EXPECT_EQ(defaultText(0.0001f), "0.0001");
    EXPECT_EQ(defaultText(16777216.0f), "1.677722E+07");
    EXPECT_EQ(defaultText(1234567.0f), "1234567");
}

TEST(FormatNumber, IntegerDigitsAreAMinimumDecimalsExact) {
    EXPECT_EQ(formatNumber(-5.000191, "00.000"), "-05.000");
    EXPECT_EQ(formatNumber(12.812109, "00.000"), "12.812");
    EXPECT_EQ(formatNumber(0.0, "00.000"), "00.000");
    EXPECT_EQ(formatNumber(1.000195, "00.000"), "01.000");
    EXPECT_EQ(formatNumber(123.4, "00.000"), "123.400") << "more integer digits are kept";
    EXPECT_EQ(formatNumber(-12.712402, "00.000"), "-12.712");
    EXPECT_EQ(formatNumber(3.14159, "0.00"), "3.14");
    EXPECT_EQ(formatNumber(-0.5, "0.00"), "-0.50");
    EXPECT_EQ(formatNumber(7.0, "00.00"), "07.00");
    EXPECT_EQ(formatNumber(0.000123456789, "0.000000000"), "0.000123457");
    EXPECT_EQ(formatNumber(2.5, "0.0000"), "2.5000");
    EXPECT_EQ(formatNumber(-1.23456, "00.0000"), "-01.2346");
    EXPECT_EQ(formatNumber(65535.4, "0"), "65535");
    EXPECT_EQ(formatNumber(-3.0, "0"), "-3");
    EXPECT_EQ(formatNumber(1e20, "0"), "100000000000000000000");
}

TEST(FormatNumber, RoundsTheExactValueWithTiesAwayFromZero) {
    EXPECT_EQ(formatNumber(12.8125, "00.000"), "12.813");
    EXPECT_EQ(formatNumber(-12.8125, "00.000"), "-12.813");
    EXPECT_EQ(formatNumber(25.625, "0.00"), "25.63");
    EXPECT_EQ(formatNumber(2.5, "0"), "3");
    EXPECT_EQ(formatNumber(-2.5, "0"), "-3");
    EXPECT_EQ(formatNumber(0.125, "0.00"), "0.13");
    // 2.675 and 1.005 lie below their decimal texts as doubles: no tie, they round down.
    EXPECT_EQ(formatNumber(2.675, "0.00"), "2.67");
    EXPECT_EQ(formatNumber(1.005, "0.00"), "1.00");
    EXPECT_EQ(formatNumber(0.145f, "0.00"), "0.14") << "a single is its exact binary value";
    EXPECT_EQ(formatNumber(9.99951, "0.000"), "10.000") << "the carry runs into a new digit";
    EXPECT_EQ(formatNumber(99.9999, "00.000"), "100.000");
    EXPECT_EQ(formatNumber(9.9995, "0.000"), "9.999") << "9.9995 is 9.99949999... as a double";
    EXPECT_EQ(formatNumber(-0.9996, "0.000"), "-1.000");
}

TEST(FormatNumber, EveryNegativeValueKeepsItsMinus) {
    EXPECT_EQ(formatNumber(-0.0001, "0.00"), "-0.00");
    EXPECT_EQ(formatNumber(-0.000391, "00.000"), "-00.000") << "just below 0 V";
    EXPECT_EQ(formatNumber(-0.005, "0.00"), "-0.01") << "-0.005 lies just past the tie";
    EXPECT_EQ(formatNumber(-0.4, "0"), "-0");
    EXPECT_EQ(formatNumber(-0.0, "00.000"), "00.000") << "negative zero is not negative";
}

TEST(FormatNumber, OddFormatsAndValuesFallBackToTheDefaultText) {
    EXPECT_EQ(formatNumber(1.5, "#.##"), "1.5");
    EXPECT_EQ(formatNumber(1.5, ""), "1.5");
    EXPECT_EQ(formatNumber(1.5, "0.0.0"), "1.5");
    EXPECT_EQ(formatNumber(NAN, "0.00"), "nan");
    EXPECT_EQ(formatNumber(-INFINITY, "0.00"), "-inf");
    EXPECT_EQ(formatNumber(5e-324, "0.00"), "0.00") << "the smallest double formats plainly";
    EXPECT_EQ(formatNumber(1.7976931348623157e308, "0").size(), 309u);
}
