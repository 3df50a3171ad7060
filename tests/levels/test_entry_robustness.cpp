// Every field check against many random texts: nothing may crash, a value that is taken
// lies within the field's bounds, and a refusal speaks with one of the field's own texts.

#include "levels/Clamps.h"
#include "levels/EntryField.h"
#include "levels/Numbers.h"
#include "levels/TransferLaw.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr size_t kTexts = 100000;

std::vector<std::string> randomTexts() {
    static const char* const kPieces[] = {
        "0",   "1",   "5",   "7",      "8",        "9",    "a",      "F",    "f",    "e",
        "E",   "g",   "x",   "Z",      "+",        "-",    " ",      "\t",   ".",    ",",
        "&h",  "&H",  "e-",  "E+",     "1e38",     "1e39", "1e-50",  "FFFF", "8000", "7F",
        "inf", "nan", "0.4", "256000", "\xC2\xB1", "\n",   "12.8125"};
    static const char kHex[] = "0123456789abcdefABCDEF";
    std::mt19937 rng(20240611u);
    auto below = [&rng](size_t n) { return std::uniform_int_distribution<size_t>(0, n - 1)(rng); };

    std::vector<std::string> texts;
    texts.reserve(kTexts);
    for (size_t i = 0; i < kTexts; ++i) {
        std::string t;
        switch (below(8)) {
        case 0:
        case 1:
        case 2: // hexadecimal of one to nine digits, the most common entry
            for (size_t n = 1 + below(9); n > 0; --n)
                t += kHex[below(sizeof kHex - 1)];
            break;
        case 3: // a decimal number, signs and exponents included
            if (below(3) == 0) t += below(2) ? "-" : "+";
            for (size_t n = below(5); n > 0; --n)
                t += static_cast<char>('0' + below(10));
            if (below(2)) t += '.';
            for (size_t n = below(7); n > 0; --n)
                t += static_cast<char>('0' + below(10));
            if (below(4) == 0) t += "e" + std::to_string(static_cast<int>(below(90)) - 45);
            break;
        case 4: // a very long text
            for (size_t n = 200 + below(2000); n > 0; --n)
                t +=
                    below(4) ? kHex[below(sizeof kHex - 1)] : kPieces[below(std::size(kPieces))][0];
            break;
        default: // anything from the pieces
            for (size_t n = below(7); n > 0; --n)
                t += kPieces[below(std::size(kPieces))];
            break;
        }
        texts.push_back(std::move(t));
    }
    return texts;
}

const std::vector<std::string>& texts() {
    static const std::vector<std::string> t = randomTexts();
    return t;
}

bool oneOf(const std::string& message, std::initializer_list<const char*> own) {
    for (const char* o : own)
        if (o && message == o) return true;
    return false;
}

// How often a check took and refused: a check that never did both was not really tried.
struct Tally {
    size_t taken = 0, refused = 0;
    void expectBoth(const std::string& what) const {
        EXPECT_GT(taken, 0u) << what;
        EXPECT_GT(refused, 0u) << what;
    }
};

} // namespace

TEST(EntryRobustness, HexFieldsKeepTheirBoundsAndTheirWords) {
    for (int id = 0; id < qz::kHexFieldCount; ++id) {
        Tally tally;
        size_t k = 0;
        for (const std::string& t : texts()) {
            const qz::HexField f = qz::hexField(static_cast<qz::HexFieldId>(id), k++ % 8);
            const qz::FieldCheck c = qz::checkHexField(f, t);
            if (c.ok) {
                ++tally.taken;
                // Within the bounds, unless the text was a negative number: that one
                // passes them and is cut to the field's width.
                const int32_t parsed = *qz::parseHex(t);
                if (parsed >= 0) {
                    ASSERT_EQ(c.value, parsed) << f.name << " '" << t << "'";
                    ASSERT_GE(c.value, f.tooSmall ? f.lower : 0) << f.name << " '" << t << "'";
                    ASSERT_LE(c.value, f.upper) << f.name << " '" << t << "'";
                } else {
                    ASSERT_FALSE(f.tooSmall) << f.name << " has a lower bound: '" << t << "'";
                    ASSERT_EQ(c.value, parsed & f.cutMask) << f.name << " '" << t << "'";
                }
                ASSERT_EQ(qz::parseHex(c.text), c.value)
                    << f.name << " '" << t << "': the box shows the value sent";
                ASSERT_EQ(qz::composeDACLOAD(c.value, f.addressWord).word & 0xFFFF,
                          c.value & 0xFFFF);
            } else {
                ++tally.refused;
                ASSERT_TRUE(oneOf(c.message, {qz::kNotValidNumber, f.tooLarge, f.tooSmall}))
                    << f.name << " '" << t << "': " << c.message;
            }
        }
        tally.expectBoth(qz::hexField(static_cast<qz::HexFieldId>(id)).name);
    }
}

TEST(EntryRobustness, FinX1WithAnyOffsetBoxAndTheWordBox) {
    const std::vector<std::string>& all = texts();
    Tally fin, word, leave;
    for (size_t i = 0; i < all.size(); ++i) {
        const std::string& t = all[i];
        const qz::FieldCheck f = qz::checkFINx1Entry(t, all[(i * 7919) % all.size()]);
        if (f.ok) {
            ++fin.taken;
            ASSERT_GE(f.value, 0);
            ASSERT_LE(f.value, 0xFFFF);
        } else {
            ++fin.refused;
            ASSERT_TRUE(f.message == qz::kNotValidNumber || f.message == qz::kCodeTooLarge) << t;
        }
        const qz::FieldCheck w = qz::checkWordEntry(t);
        if (w.ok) {
            ++word.taken;
            ASSERT_GE(w.value, 0);
            ASSERT_LE(w.value, 0xFFFFFF);
        } else {
            ++word.refused;
            ASSERT_TRUE(w.message == qz::kNotValidNumber || w.message == qz::kWordTooLarge) << t;
        }
        const qz::FieldCheck l = qz::checkWordOnLeave(t);
        (l.ok ? leave.taken : leave.refused)++;
        if (!l.ok) {
            ASSERT_EQ(l.message, qz::kNotValidNumber);
        }
    }
    fin.expectBoth("txtFINx1");
    word.expectBoth("Text1");
    leave.expectBoth("Text1 on leaving");
}

TEST(EntryRobustness, DecimalFieldsAndTheVoltageRequest) {
    Tally ext1, ext2, volts, whole;
    for (const std::string& t : texts()) {
        for (auto [field, tally] :
             {std::pair{&qz::ktxtEXT1rsense, &ext1}, std::pair{&qz::ktxtEXT2Rsense, &ext2}}) {
            const qz::DecimalCheck c = qz::checkDecimalField(*field, t);
            if (c.ok) {
                ++tally->taken;
                ASSERT_GE(c.value, 0.4f) << t;
                ASSERT_LE(c.value, 256000.0f) << t;
                ASSERT_EQ(c.text, t);
            } else {
                ++tally->refused;
                ASSERT_TRUE(c.message == qz::kNotValidNumber || c.message == field->outside) << t;
            }
        }
        const qz::DecimalCheck v = qz::checkVoltageEntry(t, -12.8125f, 12.812109f);
        if (v.ok) {
            ++volts.taken;
            ASSERT_GE(v.value, -12.8125f) << t;
            ASSERT_LE(v.value, 12.812109f) << t;
            const qz::ForceResult f =
                qz::ForceVoltage(*qz::parseDecimal(t), 5.0f, 0x8000, 0xFFFF, 0x8000);
            if (f.refusal == qz::LawRefusal::None) {
                ASSERT_GE(f.x1, 0);
                ASSERT_LE(f.x1, 0xFFFF);
            }
        } else {
            ++volts.refused;
            ASSERT_TRUE(v.message == qz::kNotValidNumber || v.message == qz::kVoltageOutsideLimits)
                << t;
        }
        const auto n = qz::parseWhole(t);
        (n ? whole.taken : whole.refused)++;
        if (n) {
            ASSERT_LE(std::fabs(*n - *qz::parseDecimal(t)), 0.5) << t;
        }
    }
    ext1.expectBoth("txtEXT1rsense");
    ext2.expectBoth("txtEXT2Rsense");
    volts.expectBoth("txtV");
    whole.expectBoth("whole number");
}

TEST(EntryRobustness, ClampEntriesWithAnyResistorBoxes) {
    const std::vector<std::string>& all = texts();
    Tally high, low;
    for (size_t i = 0; i < all.size(); ++i) {
        const int range = static_cast<int>(i % 7);
        const std::string& ext1 = all[(i * 104729) % all.size()];
        const std::string& ext2 = all[(i * 15485863) % all.size()];
        for (qz::ClampSide side : {qz::ClampSide::High, qz::ClampSide::Low}) {
            const bool isHigh = side == qz::ClampSide::High;
            const qz::ClampResult r =
                qz::computeClamp(side, all[i], range, ext1, ext2, i % 2 ? 20.0f : 10.0f, 5.0f);
            Tally& tally = isHigh ? high : low;
            if (r.ok) {
                ++tally.taken;
                ASSERT_GE(r.code, isHigh ? 0x8000 : 0) << all[i];
                ASSERT_LE(r.code, isHigh ? 0xFFFF : 0x8000) << all[i];
                ASSERT_EQ(r.DAClast, (isHigh ? 0x100000 : 0x0D0000) | r.code);
            } else {
                ++tally.refused;
                const bool own =
                    isHigh ? oneOf(r.message, {qz::kClampHighAboveLimit, qz::kClampHighNegative})
                           : oneOf(r.message, {qz::kClampLowPositive, qz::kClampLowBelowLimit});
                const bool resistor =
                    oneOf(r.message, {qz::ktxtEXT1rsense.outside, qz::ktxtEXT2Rsense.outside});
                ASSERT_TRUE(own || resistor || r.message == qz::kNotValidNumber)
                    << all[i] << ": " << r.message;
                // The resistor's words blame the box of the range in use, and only it.
                if (resistor) {
                    ASSERT_EQ(r.blame, range == 6 ? qz::ClampBlame::txtEXT1rsense
                                                  : qz::ClampBlame::txtEXT2Rsense);
                } else {
                    ASSERT_EQ(r.blame, qz::ClampBlame::Entry);
                }
            }
        }
    }
    high.expectBoth("txtclamph");
    low.expectBoth("txtClampl");
}
