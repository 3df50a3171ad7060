// Every field check against many random texts: a value that is taken lies within the
// field's bounds and is what the box shows, and a refusal speaks with the field's words.

#include "levels/Clamps.h"
#include "levels/EntryField.h"
#include "levels/Numbers.h"
#include "levels/Reference.h"
#include "levels/TransferLaw.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

const std::vector<std::string>& texts() {
    static const std::vector<std::string> all = [] {
        static const char* const kPieces[] = {
            "0", "7",  "8",    "F",    "f",    "e",  "E",   "g",   "-",        "+",      " ",
            ".", "&h", "1e39", "FFFF", "8000", "7F", "nan", "0.4", "\xC2\xB1", "12.8125"};
        static const char kHex[] = "0123456789abcdefABCDEF";
        std::mt19937 rng(20240611u);
        auto below = [&rng](size_t n) {
            return std::uniform_int_distribution<size_t>(0, n - 1)(rng);
        };
        std::vector<std::string> t(100000);
        for (std::string& s : t) {
            if (below(2) == 0) { // hexadecimal of one to nine digits, the common entry
                for (size_t n = 1 + below(9); n > 0; --n)
                    s += kHex[below(sizeof kHex - 1)];
            } else {
                for (size_t n = below(6); n > 0; --n)
                    s += kPieces[below(std::size(kPieces))];
            }
        }
        return t;
    }();
    return all;
}

} // namespace

TEST(EntryRobustness, HexFieldsKeepTheirBoundsAndTheirWords) {
    for (int id = 0; id < qz::kHexFieldCount; ++id) {
        const qz::HexField f = qz::hexField(static_cast<qz::HexFieldId>(id));
        size_t taken = 0;
        for (const std::string& t : texts()) {
            const qz::FieldCheck c = qz::checkHexField(f, t);
            if (!c.ok) {
                ASSERT_TRUE(c.message == qz::kNotValidNumber || c.message == f.tooLarge ||
                            (f.tooSmall && c.message == f.tooSmall))
                    << f.name << " '" << t << "': " << c.message;
                continue;
            }
            ++taken;
            ASSERT_EQ(c.value, qz::parseHex(t)) << f.name << " '" << t << "'";
            ASSERT_GE(c.value, f.tooSmall ? f.lower : 0) << f.name << " '" << t << "'";
            ASSERT_LE(c.value, f.upper) << f.name << " '" << t << "'";
            ASSERT_EQ(qz::parseHex(c.text), c.value)
                << f.name << " '" << t << "': the box shows it";
        }
        EXPECT_GT(taken, 100u) << f.name;
    }
}

TEST(EntryRobustness, ClampCodesStayInTheirHalf) {
    const std::vector<std::string>& all = texts();
    for (size_t i = 0; i < all.size(); ++i) {
        const int range = static_cast<int>(i % 7);
        const std::string& ext = all[(i * 7919) % all.size()];
        for (qz::ClampSide side : {qz::ClampSide::High, qz::ClampSide::Low}) {
            const bool high = side == qz::ClampSide::High;
            const qz::ClampResult r =
                qz::computeClamp(side, all[i], range, ext, ext, i % 2 ? 20.0f : 10.0f, 5.0f);
            if (!r.ok) continue;
            ASSERT_GE(r.code, high ? 0x8000 : 0) << all[i];
            ASSERT_LE(r.code, high ? 0xFFFF : 0x8000) << all[i];
        }
    }
}

// The front panel's decimal entries: the voltage request, the resistors and the reference.
TEST(EntryRobustness, DecimalFieldsTakeOnlyNumbersWithinTheirBounds) {
    size_t forced = 0;
    for (const std::string& t : texts()) {
        const qz::DecimalCheck v = qz::checkVoltageEntry(t, -12.8125f, 12.812109f);
        if (v.ok) {
            ASSERT_TRUE(v.value >= -12.8125f && v.value <= 12.812109f) << t;
            const qz::ForceResult r = qz::ForceVoltage(*qz::parseDecimal(t), 5.0f, 0x8000, 0xFFFF, 0x8000);
            if (r.refusal == qz::LawRefusal::None) {
                ++forced;
                ASSERT_TRUE(r.x1 >= 0 && r.x1 <= 0xFFFF) << t;
                ASSERT_EQ(r.DAClast >> 16, 0x08) << t;
            }
        } else {
            ASSERT_TRUE(v.message == qz::kNotValidNumber || v.message == qz::kVoltageOutsideLimits) << t;
        }
        for (const qz::DecimalField* box : {&qz::ktxtEXT1rsense, &qz::ktxtEXT2Rsense}) {
            const qz::DecimalCheck r = qz::checkDecimalField(*box, t);
            if (r.ok) ASSERT_TRUE(r.value >= 0.4f && r.value <= 256000.0f && r.text == t) << t;
            else ASSERT_TRUE(r.message == qz::kNotValidNumber || r.message == box->outside) << t;
        }
        const qz::DecimalCheck ref = qz::checkReference(t);
        if (ref.ok) ASSERT_TRUE(ref.value >= 1.5f && ref.value < 5.5f && qz::referenceUsable(ref.value)) << t;
        else ASSERT_TRUE(ref.message == qz::kNotValidNumber || ref.message == qz::kReferenceOutside) << t;
    }
    EXPECT_GT(forced, 1000u);
}
