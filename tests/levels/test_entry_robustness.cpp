// Every field check against many random texts: a value that is taken lies within the
// field's bounds and is what the box shows, and a refusal speaks with the field's words.

#include "levels/Clamps.h"
#include "levels/EntryField.h"
#include "levels/Numbers.h"

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
        std::vector<std::string> t(30000);
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
