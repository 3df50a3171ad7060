// The protocol without a socket or a panel: headers in their forms with optional nodes
// and suffixes, a line's units and their paths, numbers with their units and limits, the
// answers' numbers and data blocks, the error queue and the status registers.

#include "remote/Scpi.h"
#include "remote/Status.h"

#include <gtest/gtest.h>

using namespace qz::remote;

namespace {
std::vector<std::string> nodesOf(const char* text) { return parseUnit(text).unit->nodes; }
constexpr const char* kVolt = "[SOURce#:]VOLTage[:LEVel][:IMMediate][:AMPLitude]";
} // namespace

TEST(ScpiHeaders, LongShortOptionalNodesAndTheSuffixOne) {
    for (const char* text : {"VOLT 1", "source:voltage 1", ":SOURce:VOLT:LEV 1", "sOuR1:vOlTaGe:IMM:AMPL 1",
                             "VOLT:AMPL 1", "SOUR:VOLTAGE:LEVEL:IMMEDIATE:AMPLITUDE 1"})
        EXPECT_EQ(matchHeader(kVolt, nodesOf(text)), Match::Yes) << text;
    for (const char* text : {"SOU:VOLT", "SOURC:VOLT", "SOUR:VOLT:X", "SOUR", "VOLT:SOUR", "LEV", "VOLT:AMPL:IMM"})
        EXPECT_EQ(matchHeader(kVolt, nodesOf(text)), Match::No) << text;
    EXPECT_EQ(matchHeader(kVolt, nodesOf("SOUR2:VOLT")), Match::BadSuffix);
    EXPECT_EQ(matchHeader(kVolt, nodesOf("SOUR01:VOLT")), Match::Yes);
    EXPECT_EQ(matchHeader("OUTPut#[:STATe]", nodesOf("OUTP1")), Match::Yes);
    EXPECT_EQ(matchHeader("OUTPut#[:STATe]", nodesOf("OUTP0:STAT")), Match::BadSuffix);
    EXPECT_EQ(matchHeader("SYSTem:ERRor[:NEXT]", nodesOf("SYST1:ERR")), Match::No) << "no suffix where none is marked";
    EXPECT_EQ(shortForm(kVolt), "VOLT");
    EXPECT_EQ(shortForm("MEASure[:SCALar]:CURRent[:DC]"), "MEAS:CURR");
    EXPECT_TRUE(headerMatches("*IDN", nodesOf("*idn?")));
    EXPECT_FALSE(headerMatches("*RST", nodesOf("*idn?")));
}

TEST(ScpiMessages, UnitsSplitOutsideQuotesAndTakeThePathOfTheHeaderBefore) {
    const auto units = parseMessage("SOUR:CLAM:HIGH 1;LOW -1;*OPC;STAT 0;:MEAS:VOLT?;CURR?;GANG \"a;b\";");
    ASSERT_EQ(units.size(), 7u) << "the empty unit at the end is dropped";
    const std::vector<std::vector<std::string>> resolved = {
        {"SOUR", "CLAM", "HIGH"}, {"SOUR", "CLAM", "LOW"}, {"*OPC"},       {"SOUR", "CLAM", "STAT"},
        {"MEAS", "VOLT"},         {"MEAS", "CURR"},        {"MEAS", "GANG"}};
    for (size_t i = 0; i < units.size(); ++i) {
        ASSERT_TRUE(units[i].parsed.unit) << i;
        EXPECT_EQ(units[i].parsed.unit->nodes, resolved[i]) << i;
    }
    EXPECT_EQ(units[6].parsed.unit->params, std::vector<std::string>{"\"a;b\""});
    EXPECT_TRUE(units[5].parsed.query);

    const auto bad = parseMessage("*IDN?;SOUR::VOLT?;OUTP 1");
    ASSERT_EQ(bad.size(), 3u);
    EXPECT_FALSE(bad[1].parsed.unit);
    EXPECT_EQ(bad[1].parsed.error.code, -102);
    EXPECT_TRUE(bad[1].parsed.query) << "a refused query keeps its place among the answers";
    EXPECT_TRUE(bad[2].parsed.unit) << "the units after it are there to be skipped";
}

TEST(ScpiMessages, BadUnitsAreNamed) {
    const Parsed p = parseUnit("SOUR:CURR:RANG  \"a, b\" , 'it''s',#H1F ");
    ASSERT_TRUE(p.unit);
    EXPECT_EQ(p.unit->params, (std::vector<std::string>{"\"a, b\"", "'it''s'", "#H1F"}));
    EXPECT_EQ(parseQuoted(p.unit->params[1]), "it's");
    EXPECT_FALSE(parseUnit("   ").unit);
    EXPECT_EQ(parseUnit("   ").error.code, 0) << "an empty unit is no error";
    const std::pair<const char*, int> bad[] = {
        {"SOUR::VOLT", -102}, {"SOUR:VOLT:", -102},  {"*IDN:X?", -102},           {"1SOUR", -102},
        {"SOUR 1,", -102},    {"SOUR \"open", -102}, {":*IDN?", -102},            {"SOUR:VOLT\x01 1", -101},
        {"REG:READ? \xC3\xA9", -101}, {"A\x7F", -101}};
    for (const auto& [text, code] : bad) {
        const Parsed r = parseUnit(text);
        EXPECT_FALSE(r.unit) << text;
        EXPECT_EQ(r.error.code, code) << text;
    }
}

TEST(ScpiNumbers, SuffixesOfTheUnitLimitsAndTheWrongKindsOfData) {
    const std::tuple<const char*, SiUnit, double> good[] = {
        {"2mA", SiUnit::Ampere, 0.002},     {"2 MA", SiUnit::Ampere, 0.002}, {"25ua", SiUnit::Ampere, 25e-6},
        {"100NA", SiUnit::Ampere, 1e-7},    {"-1.5A", SiUnit::Ampere, -1.5}, {"250MV", SiUnit::Volt, 0.25},
        {"5 uv", SiUnit::Volt, 5e-6},       {"2.5", SiUnit::Volt, 2.5},      {"200ms", SiUnit::Second, 0.2},
        {"+1e-3", SiUnit::None, 0.001},     {"1E+3", SiUnit::None, 1000.0},  {".5", SiUnit::None, 0.5},
        {"#H1F", SiUnit::None, 31.0},       {"#q17", SiUnit::None, 15.0},    {"#B101", SiUnit::None, 5.0}};
    for (const auto& [text, unit, value] : good) {
        const NumericParse n = parseNumeric(text, unit, false);
        ASSERT_TRUE(n.numeric) << text << ": " << n.error.code;
        EXPECT_DOUBLE_EQ(n.numeric->value, value) << text;
    }
    const std::tuple<const char*, SiUnit, int> refused[] = {
        {"2 MV", SiUnit::Ampere, -131}, {"2V", SiUnit::Ampere, -131}, {"1 MA", SiUnit::None, -138},
        {"MAX", SiUnit::Volt, -104},    {"volts", SiUnit::None, -104}, {"1,5", SiUnit::None, -120},
        {"0x10", SiUnit::None, -120},   {"1e999", SiUnit::Volt, -120}, {"#H", SiUnit::None, -120},
        {"#H-1", SiUnit::None, -120},   {"--1", SiUnit::None, -120},  {"2E", SiUnit::Volt, -131}};
    for (const auto& [text, unit, code] : refused) {
        const NumericParse n = parseNumeric(text, unit, false);
        EXPECT_FALSE(n.numeric) << text;
        EXPECT_EQ(n.error.code, code) << text;
    }
    EXPECT_EQ(parseNumeric("minimum", SiUnit::Volt, true).numeric->kind, Numeric::Kind::Min);
    EXPECT_EQ(parseNumeric("MAX", SiUnit::Volt, true).numeric->kind, Numeric::Kind::Max);
    EXPECT_EQ(parseNumeric("Def", SiUnit::Ampere, true).numeric->kind, Numeric::Kind::Def);
    EXPECT_FALSE(parseNumeric("MAXI", SiUnit::Volt, true).numeric);

    EXPECT_EQ(parseWhole("#H0889FE"), 0x0889FE);
    EXPECT_FALSE(parseWhole("1.5"));
    EXPECT_EQ(parseBoolean("on"), true);
    EXPECT_EQ(parseBoolean("0"), false);
    EXPECT_FALSE(parseBoolean("2"));
}

TEST(ScpiAnswers, NumbersAndDefiniteLengthBlocks) {
    EXPECT_EQ(numberText(2.4998779296875), "2.499878");
    EXPECT_EQ(numberText(-5.0), "-5");
    EXPECT_EQ(numberText(1e-6), "1E-06");
    EXPECT_EQ(numberText(-0.0), "0");
    const double values[] = {1.0, -2.5};
    EXPECT_EQ(formatValues(values, {}), "1,-2.5");
    EXPECT_EQ(formatValues(values, {DataFormat::Real32, false}),
              std::string("#18\x3F\x80\x00\x00\xC0\x20\x00\x00", 11));
    EXPECT_EQ(formatValues(values, {DataFormat::Real32, true}),
              std::string("#18\x00\x00\x80\x3F\x00\x00\x20\xC0", 11));
    EXPECT_EQ(formatValues(std::span<const double>(values, 1), {DataFormat::Real64, false}),
              std::string("#18\x3F\xF0\x00\x00\x00\x00\x00\x00", 11));
    EXPECT_EQ(formatValues({}, {DataFormat::Real64, false}), "#10");
    const std::vector<double> many(300, 0.0);
    EXPECT_EQ(formatValues(many, {DataFormat::Real32, false}).substr(0, 6), "#41200");
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

TEST(StatusModel, ErrorsSetTheBitOfTheirClassAndTheByteSumsUp) {
    StatusModel s;
    const std::pair<int, uint8_t> classes[] = {{-113, 32}, {-102, 32}, {-222, 16}, {-230, 16},
                                               {-330, 8},  {-350, 8},  {7, 8},     {-430, 4}};
    for (const auto& [code, bit] : classes) {
        s.errorRaised(code);
        EXPECT_EQ(s.takeEsr(), bit) << code;
        EXPECT_EQ(s.takeEsr(), 0) << "read and cleared";
    }
    s.errorRaised(-113);
    s.operationComplete();
    EXPECT_EQ(s.statusByte(false, false), 0) << "no enable, no summary";
    s.ese = 1;
    EXPECT_EQ(s.statusByte(true, true), 4 | 16 | 32);
    s.sre = 32;
    EXPECT_EQ(s.statusByte(false, false), 32 | 64) << "the enabled summary requests service";
    s.clear();
    EXPECT_EQ(s.esr(), 0);
    EXPECT_EQ(s.ese, 1) << "*CLS keeps the enables";
}

TEST(StatusModel, ScpiRegistersLatchRisesAndSumUpThroughTheirEnables) {
    StatusModel s;
    s.operation.setCondition(kOperMeasuring);
    s.operation.setCondition(0);
    EXPECT_EQ(s.operation.condition, 0);
    EXPECT_EQ(s.operation.event, kOperMeasuring) << "a run that came and went is latched";
    EXPECT_EQ(s.statusByte(false, false), 0);
    s.operation.enable = kOperMeasuring;
    EXPECT_EQ(s.statusByte(false, false), 128);
    EXPECT_EQ(s.operation.takeEvent(), kOperMeasuring);
    s.operation.setCondition(0);
    EXPECT_EQ(s.operation.event, 0) << "a fall is no event";
    s.questionable.setCondition(2);
    s.questionable.enable = 2;
    EXPECT_EQ(s.statusByte(false, false), 8);
    s.questionable.setCondition(2);
    EXPECT_EQ(s.questionable.takeEvent(), 2);
    EXPECT_EQ(s.questionable.takeEvent(), 0) << "a condition that stays is latched once";
    s.preset();
    EXPECT_EQ(s.operation.enable | s.questionable.enable, 0);
}
