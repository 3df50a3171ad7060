// The remote control's reading of a line and of its parameters on any bytes: a header with
// its parameters or an error with its code, numbers in decimal or #H, quoted strings,
// booleans; never a crash. A whole number reads as the same number, and an answer's
// number text reads back as a number.

#include "Check.h"
#include "remote/Scpi.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    namespace r = qz::remote;

    const r::Parsed p = r::parseLine(text);
    if (p.line) {
        FUZZ_CHECK(p.error.code == r::err::kNone);
        FUZZ_CHECK(!p.line->nodes.empty());
        FUZZ_CHECK(p.query == p.line->query);
        for (const std::string& param : p.line->params) {
            (void)r::parseQuoted(param);
            (void)r::parseBoolean(param);
        }
    } else if (p.error.code != r::err::kNone) {
        FUZZ_CHECK(!p.error.text.empty());
        FUZZ_CHECK(r::errorText(p.error).rfind(std::to_string(p.error.code) + ",\"", 0) == 0);
    }

    const auto number = r::parseNumber(text);
    const auto whole = r::parseWhole(text);
    if (whole) {
        FUZZ_CHECK(number.has_value());
        FUZZ_CHECK(*number == static_cast<double>(*whole));
    }
    if (number && std::isfinite(*number)) {
        const auto again = r::parseNumber(r::numberText(*number));
        FUZZ_CHECK(again.has_value());
    }
    (void)r::parseQuoted(text);
    (void)r::parseBoolean(text);
    return 0;
}
