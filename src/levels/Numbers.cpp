#include "levels/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

namespace qz {

std::optional<int32_t> parseHex(std::string_view text) {
    // from_chars takes no sign, no prefix and no blanks, and refuses more than 32 bits.
    if (text.empty()) return std::nullopt;
    uint32_t v = 0;
    const char* last = text.data() + text.size();
    const auto r = std::from_chars(text.data(), last, v, 16);
    if (r.ec != std::errc() || r.ptr != last) return std::nullopt;
    return static_cast<int32_t>(v);
}

std::optional<int32_t> readDacCode(std::string_view text) {
    const auto v = parseHex(text);
    if (!v) return std::nullopt;
    return *v < 0 ? *v & 0xFFFF : *v;
}

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

// A decimal text that passed the syntax check: what the number parser is given (no
// blanks, no "+"), its sign, and the decimal exponent of its first non-zero digit.
struct DecimalText {
    std::string digits;
    bool negative = false;
    bool allZero = true;
    int64_t magnitude = 0;
};

std::optional<DecimalText> scanDecimal(std::string_view text) {
    size_t b = 0, e = text.size();
    while (b < e && isBlank(text[b]))
        ++b;
    while (e > b && isBlank(text[e - 1]))
        --e;
    const std::string_view t = text.substr(b, e - b);

    DecimalText d;
    size_t i = 0;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) d.negative = t[i++] == '-';
    const size_t mantissaStart = i;

    int64_t intDigits = 0;      // integer digits after the leading zeros
    int64_t firstFraction = -1; // place of the first non-zero fraction digit, 1-based
    int64_t place = 0;
    bool anyDigit = false;
    for (; i < t.size() && isDigit(t[i]); ++i) {
        anyDigit = true;
        if (t[i] != '0' || intDigits > 0) ++intDigits;
    }
    if (i < t.size() && t[i] == '.') {
        for (++i; i < t.size() && isDigit(t[i]); ++i) {
            anyDigit = true;
            ++place;
            if (t[i] != '0' && firstFraction < 0) firstFraction = place;
        }
    }
    if (!anyDigit) return std::nullopt;

    int64_t exponent = 0;
    if (i < t.size() && (t[i] == 'e' || t[i] == 'E')) {
        ++i;
        bool negExp = false;
        if (i < t.size() && (t[i] == '+' || t[i] == '-')) negExp = t[i++] == '-';
        if (i >= t.size() || !isDigit(t[i])) return std::nullopt;
        for (; i < t.size() && isDigit(t[i]); ++i) {
            // Saturated: past a million the number is out of any range anyway.
            if (exponent < 1000000) exponent = exponent * 10 + (t[i] - '0');
        }
        if (negExp) exponent = -exponent;
    }
    if (i != t.size()) return std::nullopt;

    d.allZero = intDigits == 0 && firstFraction < 0;
    d.magnitude = (intDigits > 0 ? intDigits - 1 : -firstFraction) + exponent;
    // push_back rather than assigning "-": the latter trips a false -Wrestrict in g++ 12.
    d.digits.reserve(t.size() - mantissaStart + 1);
    if (d.negative) d.digits.push_back('-');
    d.digits.append(t.substr(mantissaStart));
    return d;
}

// The number parser gives "out of range" for too large and too small alike; the first
// digit's exponent tells them apart: at or above 1 it can only be too large.
template <typename T> std::optional<T> parseAs(std::string_view text) {
    const auto d = scanDecimal(text);
    if (!d) return std::nullopt;
    T v{};
    const char* first = d->digits.data();
    const char* last = first + d->digits.size();
    const auto r = std::from_chars(first, last, v, std::chars_format::general);
    if (r.ec == std::errc::result_out_of_range) {
        if (d->allZero || d->magnitude < 0) return d->negative ? -T(0) : T(0);
        return std::nullopt;
    }
    if (r.ec != std::errc() || r.ptr != last || !std::isfinite(v)) return std::nullopt;
    return v;
}

} // namespace

std::optional<double> parseDecimal(std::string_view text) {
    return parseAs<double>(text);
}

std::optional<float> parseSingle(std::string_view text) {
    return parseAs<float>(text);
}

std::optional<int32_t> parseWhole(std::string_view text) {
    const auto v = parseDecimal(text);
    if (!v) return std::nullopt;
    const double r = roundHalfEven(*v);
    if (r < static_cast<double>(std::numeric_limits<int32_t>::min()) ||
        r > static_cast<double>(std::numeric_limits<int32_t>::max()))
        return std::nullopt;
    return static_cast<int32_t>(r);
}

double roundHalfEven(double x) {
    // nearbyint rounds in the current mode; the program never leaves the default,
    // FE_TONEAREST, which takes a tie to the even neighbour.
    return std::nearbyint(x);
}

} // namespace qz
