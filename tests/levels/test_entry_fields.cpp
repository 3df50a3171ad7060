#include "levels/EntryField.h"

#include <gtest/gtest.h>

#include <string>

using qz::checkHexField;
using qz::FieldCheck;
using qz::FurtherStep;
using qz::hexField;
using qz::HexFieldId;

namespace {

FieldCheck enter(HexFieldId id, const char* text, int index = 0) {
    return checkHexField(hexField(id, index), text);
}

// The word a good entry of a DAC field sends.
int32_t wordOf(HexFieldId id, const char* text, int index = 0) {
    const FieldCheck c = enter(id, text, index);
    EXPECT_TRUE(c.ok) << text << ": " << c.message;
    return qz::composeDACLOAD(c.value, hexField(id, index).addressWord).word;
}

constexpr const char* kTooLarge = "Number too large. Please reenter code between 0 and xFFFF.";

} // namespace

TEST(HexField, TidiesTheTextOfAGoodEntry) {
    FieldCheck c = enter(HexFieldId::txtFINM, "ff");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0xFF);
    EXPECT_EQ(c.text, "00FF");
    c = enter(HexFieldId::txtDGS, "abcd");
    EXPECT_EQ(c.text, "ABCD");
    c = enter(HexFieldId::OFFSETx1, "00001");
    EXPECT_EQ(c.value, 1);
    EXPECT_EQ(c.text, "00001") << "five characters are left as typed";
}

TEST(HexField, RefusesUnreadableTextAndValuesAboveItsBound) {
    for (const char* bad : {"", " 12", "12h", "&h12", "-1", "1.5", "100000000"}) {
        const FieldCheck c = enter(HexFieldId::txtFINC, bad);
        EXPECT_FALSE(c.ok) << bad;
        EXPECT_EQ(c.message, "Not a valid number. Please reenter it.") << bad;
    }
    FieldCheck c = enter(HexFieldId::txtRAMP, "abcde");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, kTooLarge);
    EXPECT_EQ(enter(HexFieldId::txtRAMP, "10000").message, kTooLarge);
    EXPECT_TRUE(enter(HexFieldId::txtRAMP, "FFFF").ok);
}

TEST(HexField, NegativeEightDigitTextIsCutToTheFourDigitsShown) {
    FieldCheck c = enter(HexFieldId::txtFINM, "FFFF0123");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x0123);
    EXPECT_EQ(c.text, "0123");
    EXPECT_EQ(wordOf(HexFieldId::txtCPHC, "ffff8000", 2), 0x308000);
    EXPECT_EQ(wordOf(HexFieldId::txtRampStep, "FFFF0012"), 0x3F0012);
    // A negative number is below every upper bound, and no field but txtCLHx1 has a
    // lower one: it passes even where its cut code lies past the bound.
    c = enter(HexFieldId::txtRampStep, "FFFFFF80");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.text, "FF80");
    EXPECT_EQ(wordOf(HexFieldId::txtRampStep, "FFFFFF80"), 0x3FFF80);
    EXPECT_EQ(wordOf(HexFieldId::txtCLLx1, "FFFF8000"), 0x0D8000);
    // Nine digits with a leading zero are still a negative 32-bit number.
    c = enter(HexFieldId::txtFINC, "0F187108C");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x108C);
    EXPECT_EQ(c.text, "108C");
}

TEST(HexField, ClampBoxesTakeTheirHalfOfTheCodes) {
    EXPECT_EQ(wordOf(HexFieldId::txtCLLx1, "7FFF"), 0x0D7FFF);
    FieldCheck c = enter(HexFieldId::txtCLLx1, "8000");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Number too large. Please reenter code between 0 and 7FFF.");

    EXPECT_EQ(wordOf(HexFieldId::txtCLHx1, "8000"), 0x108000);
    c = enter(HexFieldId::txtCLHx1, "7FFF");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Number too small. Please reenter code between 0x8000 and 0xFFFF.");
    EXPECT_EQ(enter(HexFieldId::txtCLHx1, "10000").message,
              "Number too large. Please reenter code between 0 and 0xFFFF.");
    EXPECT_EQ(enter(HexFieldId::txtCLHx1, "FFFF8000").message,
              "Number too small. Please reenter code between 0x8000 and 0xFFFF.")
        << "the bounds see the negative number before any cut";
}

TEST(HexField, RampFieldsTakeSevenAndEightBits) {
    EXPECT_TRUE(enter(HexFieldId::txtRampStep, "7F").ok);
    EXPECT_EQ(enter(HexFieldId::txtRampStep, "80").message,
              "Number too large. Please reenter code between 0 and x7F.");
    EXPECT_TRUE(enter(HexFieldId::txtRCLKDiv, "FF").ok);
    EXPECT_EQ(enter(HexFieldId::txtRCLKDiv, "100").message,
              "Number too large. Please reenter code between 0 and x7F.");
    for (HexFieldId id : {HexFieldId::txtRAMP, HexFieldId::txtRampStep, HexFieldId::txtRCLKDiv})
        EXPECT_EQ(hexField(id).step, FurtherStep::RampWrite);
    const qz::DacWrite w =
        qz::composeRampWrite(0x7F, hexField(HexFieldId::txtRampStep).addressWord);
    EXPECT_EQ(w.word, 0x3F007F);
    EXPECT_EQ(w.text, "3F007F");
    EXPECT_EQ(qz::composeRampWrite(0xFF, hexField(HexFieldId::txtRCLKDiv).addressWord).word,
              0x4000FF);
}

TEST(HexField, AddressWordsOfTheDacFields) {
    const std::pair<HexFieldId, int32_t> words[] = {
        {HexFieldId::OFFSETx1, 0x0B0000},   {HexFieldId::txtFINx1, 0x080000},
        {HexFieldId::txtFINM, 0x090000},    {HexFieldId::txtFINC, 0x0A0000},
        {HexFieldId::txtDGS, 0x3D0000},     {HexFieldId::txtstart, 0x080000},
        {HexFieldId::txtCLLx1, 0x0D0000},   {HexFieldId::txtCLLM, 0x0E0000},
        {HexFieldId::txtCLLC, 0x0F0000},    {HexFieldId::txtCLHx1, 0x100000},
        {HexFieldId::txtCLHM, 0x110000},    {HexFieldId::txtCLHC, 0x120000},
        {HexFieldId::txtRAMP, 0x3E0000},    {HexFieldId::txtRampStep, 0x3F0000},
        {HexFieldId::txtRCLKDiv, 0x400000}, {HexFieldId::frmMain_OFFSETx1, 0x0B0000},
    };
    for (const auto& [id, word] : words)
        EXPECT_EQ(hexField(id).addressWord, word) << hexField(id).name;
}

TEST(HexField, ComparatorBoxesChooseTheirRegisterByIndex) {
    EXPECT_EQ(wordOf(HexFieldId::txtCPHx1, "8000", 3), 0x318000);
    EXPECT_EQ(hexField(HexFieldId::txtCPLx1, 0).addressWord, 0x130000);
    EXPECT_EQ(hexField(HexFieldId::txtCPLM, 1).addressWord, 0x170000);
    EXPECT_EQ(hexField(HexFieldId::txtCPLC, 6).addressWord, 0x270000);
    EXPECT_EQ(hexField(HexFieldId::txtCPHx1, 0).addressWord, 0x280000);
    EXPECT_EQ(hexField(HexFieldId::txtCPHC, 6).addressWord, 0x3C0000);
    // The voltage range stands apart from the step rule.
    EXPECT_EQ(hexField(HexFieldId::txtCPLx1, 7).addressWord, 0x450000);
    EXPECT_EQ(hexField(HexFieldId::txtCPLM, 7).addressWord, 0x460000);
    EXPECT_EQ(hexField(HexFieldId::txtCPLC, 7).addressWord, 0x470000);
    EXPECT_EQ(hexField(HexFieldId::txtCPHx1, 7).addressWord, 0x480000);
    EXPECT_EQ(hexField(HexFieldId::txtCPHM, 7).addressWord, 0x490000);
    EXPECT_EQ(hexField(HexFieldId::txtCPHC, 7).addressWord, 0x4A0000);
}

TEST(HexField, StartTexts) {
    const std::pair<HexFieldId, const char*> starts[] = {
        {HexFieldId::OFFSETx1, "8000"}, {HexFieldId::txtFINx1, "8000"},
        {HexFieldId::txtFINM, "FFFF"},  {HexFieldId::txtFINC, "8000"},
        {HexFieldId::txtDGS, "8000"},   {HexFieldId::txtstart, "8000"},
        {HexFieldId::txtCLLx1, "0000"}, {HexFieldId::txtCLLM, "FFFF"},
        {HexFieldId::txtCLLC, "8000"},  {HexFieldId::txtCLHx1, "FFFF"},
        {HexFieldId::txtCLHM, "FFFF"},  {HexFieldId::txtCLHC, "8000"},
        {HexFieldId::txtCPLx1, "0000"}, {HexFieldId::txtCPLM, "FFFF"},
        {HexFieldId::txtCPLC, "8000"},  {HexFieldId::txtCPHx1, "FFFF"},
        {HexFieldId::txtCPHM, "FFFF"},  {HexFieldId::txtCPHC, "8000"},
        {HexFieldId::txtRAMP, "FFFF"},  {HexFieldId::txtRampStep, "7F"},
        {HexFieldId::txtRCLKDiv, "7F"}, {HexFieldId::frmMain_OFFSETx1, "8000"},
    };
    for (const auto& [id, text] : starts) {
        EXPECT_EQ(std::string(hexField(id).startText), text) << hexField(id).name;
        EXPECT_TRUE(checkHexField(hexField(id), hexField(id).startText).ok)
            << hexField(id).name << ": a field takes its own start text";
    }
}

TEST(HexField, MAndCOfTheClampsReloadTheirX1) {
    EXPECT_EQ(wordOf(HexFieldId::txtCLLM, "1234"), 0x0E1234);
    const qz::HexField m = hexField(HexFieldId::txtCLLM);
    ASSERT_EQ(m.step, FurtherStep::ReloadX1);
    ASSERT_EQ(m.reload, HexFieldId::txtCLLx1);
    EXPECT_EQ(wordOf(m.reload, "0123"), 0x0D0123) << "the second word";
    EXPECT_EQ(hexField(HexFieldId::txtCLLC).reload, HexFieldId::txtCLLx1);
    EXPECT_EQ(hexField(HexFieldId::txtCLHM).reload, HexFieldId::txtCLHx1);
    EXPECT_EQ(hexField(HexFieldId::txtCLHC).reload, HexFieldId::txtCLHx1);
    // The x1 box is reloaded through its own check: an unconfirmed bad text is refused.
    EXPECT_FALSE(enter(m.reload, "8000").ok);
    for (HexFieldId id :
         {HexFieldId::txtFINM, HexFieldId::txtFINC, HexFieldId::txtCPLM, HexFieldId::txtCPHC})
        EXPECT_EQ(hexField(id).step, FurtherStep::None) << "the operator reloads these";
}

TEST(HexField, FinX1AndTheRampStartWriteTheSameRegister) {
    EXPECT_EQ(wordOf(HexFieldId::txtstart, "1234"), wordOf(HexFieldId::txtFINx1, "1234"));
    EXPECT_EQ(hexField(HexFieldId::txtFINx1).step, FurtherStep::OutputVFirst);
    EXPECT_EQ(hexField(HexFieldId::txtstart).step, FurtherStep::None);
    EXPECT_EQ(hexField(HexFieldId::OFFSETx1).step, FurtherStep::OutputV);
    EXPECT_EQ(hexField(HexFieldId::frmMain_OFFSETx1).step, FurtherStep::FrontOffset);
}

TEST(HexField, FinX1AlsoNeedsACodeInTheOffsetBox) {
    FieldCheck c = qz::checkFINx1Entry("89fe", "8000");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x89FE);
    EXPECT_EQ(c.text, "89FE");
    EXPECT_TRUE(qz::checkFINx1Entry("89FE", "10000").ok) << "a number, though past the register";
    for (const char* offset : {"", "zz", "1 0"}) {
        c = qz::checkFINx1Entry("89FE", offset);
        EXPECT_FALSE(c.ok) << offset;
        EXPECT_EQ(c.message, qz::kNotValidNumber) << offset;
    }
    EXPECT_EQ(qz::checkFINx1Entry("q", "8000").message, qz::kNotValidNumber);
    EXPECT_EQ(qz::checkFINx1Entry("10000", "8000").message, kTooLarge);
}

TEST(DacLoad, WordIsTheAddressWordOrTheCode) {
    qz::DacWrite w = qz::composeDACLOAD(0x89FE, 0x080000);
    EXPECT_EQ(w.word, 0x0889FE);
    EXPECT_EQ(w.text, "0889FE");
    w = qz::composeDACLOAD(0, 0x450000);
    EXPECT_EQ(w.text, "450000");
    EXPECT_EQ(qz::composeDACLOAD(-1, 0x0D0000).word, 0x0DFFFF) << "only 16 bits of a code";
}

TEST(WordEntry, TakesAnyTwentyFourBitWord) {
    FieldCheck c = qz::checkWordEntry("812345");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x812345);
    EXPECT_EQ(c.text, "812345");
    c = qz::checkWordEntry("ff");
    EXPECT_EQ(c.value, 0xFF);
    EXPECT_EQ(c.text, "00FF");
    c = qz::checkWordEntry("ffffff");
    EXPECT_EQ(c.value, 0xFFFFFF);
    EXPECT_EQ(c.text, "FFFFFF");
    EXPECT_EQ(hexField(HexFieldId::Text1).step, FurtherStep::SendWord);
}

TEST(WordEntry, RefusalsCarryTheirTexts) {
    FieldCheck c = qz::checkWordEntry("1000000");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Number too large. Please reenter code between 0 and xFFFFFF.");
    c = qz::checkWordEntry("zz");
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Not a valid number. Please reenter it.");
    EXPECT_EQ(qz::checkWordEntry("").message, "Not a valid number. Please reenter it.");
    EXPECT_EQ(qz::checkWordEntry("7FFFFFFF").message, qz::kWordTooLarge);
}

TEST(WordEntry, NegativeEightDigitWordIsCutToTwentyFourBits) {
    FieldCheck c = qz::checkWordEntry("FF812345");
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 0x812345);
    EXPECT_EQ(c.text, "812345") << "not the last four digits";
    c = qz::checkWordEntry("00812345");
    EXPECT_EQ(c.value, 0x812345);
    EXPECT_EQ(c.text, "812345");
}

TEST(WordEntry, LeavingChecksTheNumberOnly) {
    EXPECT_TRUE(qz::checkWordOnLeave("1000000").ok);
    EXPECT_EQ(qz::checkWordOnLeave("abc").text, "ABC");
    EXPECT_EQ(qz::checkWordOnLeave("x").message, qz::kNotValidNumber);
}

TEST(DecimalField, ResistorBoxesTakePointFourTo256k) {
    for (const qz::DecimalField* f : {&qz::ktxtEXT1rsense, &qz::ktxtEXT2Rsense}) {
        for (const char* good : {"0.4", "1", " 47.5 ", "256000", "2.56e5", "256000.001"}) {
            const qz::DecimalCheck c = qz::checkDecimalField(*f, good);
            EXPECT_TRUE(c.ok) << f->name << " " << good;
            EXPECT_EQ(c.text, good) << "the text stays as typed";
        }
        for (const char* out : {"0.3999", "0", "-1", "256000.1", "1e6"})
            EXPECT_EQ(qz::checkDecimalField(*f, out).message, f->outside) << f->name << " " << out;
        EXPECT_EQ(qz::checkDecimalField(*f, "1k").message, qz::kNotValidNumber);
        EXPECT_TRUE(qz::checkDecimalField(*f, f->startText).ok);
    }
    EXPECT_EQ(std::string(qz::ktxtEXT1rsense.outside),
              "Number outside range. Please reenter Rsense between 1 and 256k.");
    EXPECT_EQ(std::string(qz::ktxtEXT2Rsense.outside),
              "Number outside range. Please reenter Rsense between 0.4 and 256k.");
    EXPECT_EQ(qz::checkDecimalField(qz::ktxtEXT1rsense, "0.4").value, 0.4f);
}

TEST(DecimalField, VoltageRequestWithinTheLimits) {
    qz::DecimalCheck c = qz::checkVoltageEntry("1e0", -12.8125f, 12.812109f);
    ASSERT_TRUE(c.ok);
    EXPECT_EQ(c.value, 1.0f);
    EXPECT_EQ(c.text, "1E0") << "upper-cased";
    EXPECT_TRUE(qz::checkVoltageEntry("-12.8125", -12.8125f, 12.812109f).ok);
    EXPECT_TRUE(qz::checkVoltageEntry("12.812109", -12.8125f, 12.812109f).ok)
        << "as a single it is VoutMax";
    c = qz::checkVoltageEntry("12.9", -12.8125f, 12.812109f);
    EXPECT_FALSE(c.ok);
    EXPECT_EQ(c.message, "Number too large. Please reenter voltage between Z/S and F/S.");
    EXPECT_EQ(qz::checkVoltageEntry("-13", -12.8125f, 12.812109f).message,
              "Number too large. Please reenter voltage between Z/S and F/S.");
    EXPECT_EQ(qz::checkVoltageEntry("1 V", -12.8125f, 12.812109f).message, qz::kNotValidNumber);
}
