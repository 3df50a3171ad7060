// The check of an entry field on Enter: the bounds of each field, taken at the bound and
// refused one past it in the field's own words, and the text the box then shows.

#include "levels/EntryField.h"

#include <gtest/gtest.h>

#include <string>

using qz::checkHexField;
using qz::FieldCheck;
using qz::hexField;
using qz::HexFieldId;

namespace {

FieldCheck enter(HexFieldId id, const std::string& text) {
    return checkHexField(hexField(id), text);
}

constexpr const char* kXFFFF = "Number too large. Please reenter code between 0 and xFFFF.";
constexpr const char* kX7F = "Number too large. Please reenter code between 0 and x7F.";
constexpr const char* kCLH = "Number too large. Please reenter code between 0 and 0xFFFF.";
constexpr const char* kWord = "Number too large. Please reenter code between 0 and xFFFFFF.";
constexpr const char* kSmall = "Number too small. Please reenter code between 0x8000 and 0xFFFF.";
constexpr const char* kInvalid = "Not a valid number. Please reenter it.";

struct Bound {
    HexFieldId id;
    const char* taken;   // the bound itself
    const char* refused; // one past it
    const char* message;
};

const Bound kBounds[] = {
    {HexFieldId::OFFSETx1, "FFFF", "10000", kXFFFF},
    {HexFieldId::frmMain_OFFSETx1, "FFFF", "10000", kXFFFF},
    {HexFieldId::txtRAMP, "FFFF", "abcde", kXFFFF},
    {HexFieldId::txtCPHC, "FFFF", "10000", kXFFFF},
    {HexFieldId::txtCLLx1, "7FFF", "8000",
     "Number too large. Please reenter code between 0 and 7FFF."},
    {HexFieldId::txtCLHx1, "FFFF", "10000", kCLH},
    {HexFieldId::txtCLHx1, "8000", "7FFF", kSmall},
    {HexFieldId::txtRampStep, "7F", "80", kX7F},
    {HexFieldId::txtRCLKDiv, "FF", "100", kX7F}, // eight bits, though the words say seven
    {HexFieldId::Text1, "FFFFFF", "1000000", kWord},
};

} // namespace

TEST(HexField, EachBoundIsTakenAndOnePastItRefusedInTheFieldsWords) {
    for (const Bound& b : kBounds) {
        SCOPED_TRACE(hexField(b.id).name);
        const FieldCheck taken = enter(b.id, b.taken);
        EXPECT_TRUE(taken.ok) << b.taken << ": " << taken.message;
        EXPECT_EQ(taken.value, std::stoi(b.taken, nullptr, 16));
        const FieldCheck refused = enter(b.id, b.refused);
        EXPECT_FALSE(refused.ok) << b.refused;
        EXPECT_EQ(refused.message, b.message) << b.refused;
        EXPECT_EQ(refused.text, "") << "nothing to show or send";
    }
}

TEST(HexField, NegativeEightDigitTextIsRefusedWithTheBoundText) {
    const std::tuple<HexFieldId, const char*, const char*> cases[] = {
        {HexFieldId::txtFINM, "FFFF0123", kXFFFF},
        {HexFieldId::txtCLLx1, "FFFF8000",
         "Number too large. Please reenter code between 0 and 7FFF."},
        {HexFieldId::txtCLHx1, "FFFF8000",
         "Number too small. Please reenter code between 0x8000 and 0xFFFF."},
        {HexFieldId::txtRampStep, "FFFFFF80", kX7F},
        {HexFieldId::Text1, "FF812345", kWord},
        {HexFieldId::Text1, "80000000", kWord},
    };
    for (const auto& [id, text, message] : cases)
        EXPECT_EQ(enter(id, text).message, message) << hexField(id).name << " " << text;
    // Every field alike: no negative code reaches a register.
    for (int id = 0; id < qz::kHexFieldCount; ++id) {
        const qz::HexField f = hexField(static_cast<HexFieldId>(id));
        const char* below = f.tooSmall ? f.tooSmall : f.tooLarge;
        EXPECT_EQ(checkHexField(f, "ffff8000").message, below) << f.name;
        EXPECT_EQ(checkHexField(f, "FFFFFFFF").message, below) << f.name;
    }
}

TEST(HexField, UnreadableTextIsNotAValidNumber) {
    for (const char* bad : {"", " 12", "12h", "&h12", "-1", "1.5", "100000000"}) {
        EXPECT_EQ(enter(HexFieldId::txtFINC, bad).message, kInvalid) << '"' << bad << '"';
        EXPECT_EQ(qz::checkWordEntry(bad).message, kInvalid) << '"' << bad << '"';
    }
}

TEST(HexField, TheBoxShowsTheTidiedCodeItSends) {
    const std::tuple<HexFieldId, const char*, int32_t, const char*> cases[] = {
        {HexFieldId::txtFINM, "ff", 0xFF, "00FF"},
        {HexFieldId::txtDGS, "abcd", 0xABCD, "ABCD"},
        {HexFieldId::txtRampStep, "a", 0xA, "000A"},
        {HexFieldId::OFFSETx1, "00001", 1, "00001"}, // five characters stay as typed
        {HexFieldId::txtFINC, "0000ffff", 0xFFFF, "FFFF"},
        {HexFieldId::Text1, "ff", 0xFF, "00FF"},
        {HexFieldId::Text1, "00812345", 0x812345, "812345"}, // not the last four digits
    };
    for (const auto& [id, text, value, shown] : cases) {
        const FieldCheck c = enter(id, text);
        EXPECT_EQ(c.value, value) << text;
        EXPECT_EQ(c.text, shown) << text;
    }
}

TEST(HexField, FinX1AlsoNeedsACodeInTheOffsetBox) {
    EXPECT_EQ(qz::checkFINx1Entry("89fe", "8000").text, "89FE");
    EXPECT_TRUE(qz::checkFINx1Entry("89FE", "10000").ok) << "a number, though past the register";
    for (const char* offset : {"", "zz"})
        EXPECT_EQ(qz::checkFINx1Entry("89FE", offset).message, kInvalid) << offset;
    EXPECT_EQ(qz::checkFINx1Entry("10000", "8000").message, kXFFFF);
}

TEST(HexField, WordsAreComposedWithAnOr) {
    qz::DacWrite w = qz::composeDACLOAD(0x89FE, 0x080000);
    EXPECT_EQ(w.word, 0x0889FE);
    EXPECT_EQ(w.text, "0889FE");
    EXPECT_EQ(qz::composeDACLOAD(0x1FFFF, 0x0D0000).word, 0x0DFFFF) << "the address stays";
    EXPECT_EQ(qz::composeRampWrite(0x7F, 0x3F0000).text, "3F007F");
    // Text1 on losing the focus checks the number only.
    EXPECT_TRUE(qz::checkWordOnLeave("1000000").ok);
    EXPECT_EQ(qz::checkWordOnLeave("abc").text, "ABC");
    EXPECT_EQ(qz::checkWordOnLeave("x").message, kInvalid);
}

TEST(DecimalField, ResistorBoxesTakePointFourTo256kInTheirOwnWords) {
    const std::pair<const qz::DecimalField*, const char*> boxes[] = {
        {&qz::ktxtEXT1rsense, "Number outside range. Please reenter Rsense between 1 and 256k."},
        {&qz::ktxtEXT2Rsense, "Number outside range. Please reenter Rsense between 0.4 and 256k."}};
    for (const auto& [f, outside] : boxes) {
        for (const char* good : {"0.4", " 47.5 ", "2.56e5"}) {
            const qz::DecimalCheck c = qz::checkDecimalField(*f, good);
            EXPECT_TRUE(c.ok) << f->name << " " << good;
            EXPECT_EQ(c.text, good) << "the text stays as typed";
        }
        for (const char* out : {"0.3999", "0", "-1", "256000.1"})
            EXPECT_EQ(qz::checkDecimalField(*f, out).message, outside) << f->name << " " << out;
        EXPECT_EQ(qz::checkDecimalField(*f, "1k").message, kInvalid);
    }
}

TEST(DecimalField, VoltageRequestWithinTheLimits) {
    const float lo = -12.8125f, hi = 12.812109f;
    EXPECT_EQ(qz::checkVoltageEntry("1e0", lo, hi).text, "1E0") << "upper-cased";
    EXPECT_TRUE(qz::checkVoltageEntry("-12.8125", lo, hi).ok);
    EXPECT_TRUE(qz::checkVoltageEntry("12.812109", lo, hi).ok) << "as a single it is VoutMax";
    for (const char* out : {"12.8122", "-13"})
        EXPECT_EQ(qz::checkVoltageEntry(out, lo, hi).message,
                  "Number too large. Please reenter voltage between Z/S and F/S.")
            << out;
    EXPECT_EQ(qz::checkVoltageEntry("1 V", lo, hi).message, kInvalid);
}
