#include "levels/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qz {

namespace {

std::string general(double value, int precision) {
    if (value == 0.0) return "0";
    if (std::isnan(value)) return "nan";
    std::array<char, 64> buf{};
    const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), value,
                                 std::chars_format::general, precision);
    std::string s(buf.data(), r.ptr);
    for (char& c : s)
        if (c == 'e') c = 'E';
    return s;
}

// Zeros before the point, zeros after it; false for any other character.
bool readFormat(std::string_view format, size_t& intZeros, size_t& decimals) {
    intZeros = decimals = 0;
    bool point = false;
    for (char c : format) {
        if (c == '.' && !point)
            point = true;
        else if (c == '0')
            ++(point ? decimals : intZeros);
        else
            return false;
    }
    return intZeros + decimals > 0;
}

} // namespace

std::string defaultText(double value) {
    return general(value, 15);
}

std::string defaultText(float value) {
    return general(static_cast<double>(value), 7);
}

std::string formatNumber(double value, std::string_view format) {
    // Every double has at most 1074 binary, hence decimal, places: this text is exact.
    static constexpr int kExactPlaces = 1074;
    size_t intZeros = 0, decimals = 0;
    if (!std::isfinite(value) || !readFormat(format, intZeros, decimals) ||
        decimals >= static_cast<size_t>(kExactPlaces))
        return defaultText(value);

    std::array<char, 1500> buf{};
    const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), std::fabs(value),
                                 std::chars_format::fixed, kExactPlaces);
    const std::string_view exact(buf.data(), static_cast<size_t>(r.ptr - buf.data()));
    const size_t point = exact.find('.');

    // The kept digits, integer and decimals, without the point.
    std::string digits(exact.substr(0, point));
    digits.append(exact.substr(point + 1, decimals));
    if (exact[point + 1 + decimals] >= '5') {
        size_t k = digits.size();
        while (k > 0 && digits[k - 1] == '9')
            digits[--k] = '0';
        if (k == 0)
            digits.insert(digits.begin(), '1');
        else
            ++digits[k - 1];
    }

    std::string intPart = digits.substr(0, digits.size() - decimals);
    const std::string fraction = digits.substr(digits.size() - decimals);
    const size_t firstNonZero = intPart.find_first_not_of('0');
    intPart.erase(0, firstNonZero == std::string::npos ? intPart.size() : firstNonZero);
    if (intPart.size() < intZeros) intPart.insert(0, intZeros - intPart.size(), '0');

    std::string s = value < 0.0 ? "-" : "";
    s += intPart;
    if (decimals > 0) s += "." + fraction;
    return s;
}

} // namespace qz
