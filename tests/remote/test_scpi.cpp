// The line protocol without a socket or a panel: headers in their forms, the splitting
// of parameters, the numbers, and the error queue.

#include "remote/Scpi.h"

#include <gtest/gtest.h>

using namespace qz::remote;

TEST(ScpiHeaders, ShortLongAndAnyCaseMatchButNothingInBetween) {
    for (const char* text : {"SOUR:VOLT 1", "source:voltage 1", ":SOURce:VOLT 1", "sOuR:vOlTaGe 1"}) {
        const Parsed p = parseLine(text);
        ASSERT_TRUE(p.line) << text;
        EXPECT_TRUE(headerMatches("SOURce:VOLTage", p.line->nodes)) << text;
        EXPECT_FALSE(p.line->query);
        EXPECT_EQ(p.line->params, std::vector<std::string>{"1"});
    }
    for (const char* text : {"SOU:VOLT", "SOURC:VOLT", "SOUR:VOLT:X", "SOUR", "VOLT:SOUR"})
        EXPECT_FALSE(headerMatches("SOURce:VOLTage", parseLine(text).line->nodes)) << text;
    const Parsed q = parseLine("*idn?\t");
    ASSERT_TRUE(q.line);
    EXPECT_TRUE(q.line->query);
    EXPECT_TRUE(headerMatches("*IDN", q.line->nodes));
    EXPECT_FALSE(headerMatches("*RST", q.line->nodes));
}

TEST(ScpiLines, ParametersSplitOutsideQuotesAndBadLinesAreNamed) {
    const Parsed p = parseLine("SOUR:CURR:RANG  \"a, b\" , 'it''s',#H1F ");
    ASSERT_TRUE(p.line);
    EXPECT_EQ(p.line->params, (std::vector<std::string>{"\"a, b\"", "'it''s'", "#H1F"}));
    EXPECT_EQ(parseQuoted(p.line->params[1]), "it's");
    EXPECT_FALSE(parseLine("   ").line);
    EXPECT_EQ(parseLine("   ").error.code, 0) << "an empty line is no error";

    const std::pair<const char*, int> bad[] = {
        {"SOUR::VOLT", -102}, {"SOUR:VOLT:", -102}, {"*IDN:X?", -102}, {"1SOUR", -102},
        {"SOUR 1,", -102},    {"SOUR \"open", -102}, {"SOUR:VOLT\x01 1", -101},
        {"REG:READ? \xC3\xA9", -101}, {"A\x7F", -101}};
    for (const auto& [text, code] : bad) {
        const Parsed r = parseLine(text);
        EXPECT_FALSE(r.line) << text;
        EXPECT_EQ(r.error.code, code) << text;
    }
    EXPECT_TRUE(parseLine("REG:READ? \x01").query) << "a refused query still answers";
}

TEST(ScpiNumbers, DecimalAndHexadecimalOnly) {
    EXPECT_EQ(parseNumber("2.5"), 2.5);
    EXPECT_EQ(parseNumber("-1"), -1.0);
    EXPECT_EQ(parseNumber("+1e-3"), 0.001);
    EXPECT_EQ(parseNumber(".5"), 0.5);
    EXPECT_EQ(parseNumber("#H1F"), 31.0);
    EXPECT_EQ(parseNumber("#hff"), 255.0);
    for (const char* t : {"", "1,5", "inf", "nan", "0x10", "#H", "#HG", "++1", "1-2", "1e999", "--1", "#H-1"})
        EXPECT_FALSE(parseNumber(t)) << t;
    EXPECT_EQ(parseWhole("#H0889FE"), 0x0889FE);
    EXPECT_EQ(parseWhole("12"), 12);
    EXPECT_FALSE(parseWhole("1.5"));
    EXPECT_EQ(parseBoolean("on"), true);
    EXPECT_EQ(parseBoolean("0"), false);
    EXPECT_FALSE(parseBoolean("2"));
    EXPECT_EQ(numberText(2.4998779296875), "2.499878");
    EXPECT_EQ(numberText(-5.0), "-5");
}

TEST(ScpiQueue, OldestFirstQuotesDoubledAndOverflowLast) {
    ErrorQueue q;
    EXPECT_EQ(q.pop(), "0,\"No error\"");
    q.push(-222, "say \"no\"");
    q.push(standardError(-113));
    EXPECT_EQ(q.pop(), "-222,\"say \"\"no\"\"\"");
    EXPECT_EQ(q.pop(), "-113,\"Undefined header\"");
    for (int i = 0; i < 25; ++i) q.push(-100 - i, "e");
    EXPECT_EQ(q.size(), ErrorQueue::kDepth);
    for (size_t i = 0; i + 1 < ErrorQueue::kDepth; ++i) EXPECT_EQ(q.pop(), "-" + std::to_string(100 + i) + ",\"e\"");
    EXPECT_EQ(q.pop(), "-350,\"Queue overflow\"");
    EXPECT_EQ(q.pop(), "0,\"No error\"");
}
