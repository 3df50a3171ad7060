// The remote control's reading of a line and of its parameters on any bytes: units with
// their headers and parameters or an error with its code, numbers with their units,
// quoted strings, booleans, the data blocks; never a crash. A whole number reads as the
// same number, and an answer's number text reads back as a number.

#include "Check.h"
#include "remote/Scpi.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    namespace r = qz::remote;

    for (const r::MessageUnit& m : r::parseMessage(text)) {
        const r::Parsed& p = m.parsed;
        if (p.unit) {
            FUZZ_CHECK(p.error.code == r::err::kNone);
            FUZZ_CHECK(!p.unit->nodes.empty());
            FUZZ_CHECK(p.query == p.unit->query);
            for (const std::string& param : p.unit->params) {
                (void)r::parseQuoted(param);
                (void)r::parseBoolean(param);
                for (r::SiUnit unit : {r::SiUnit::None, r::SiUnit::Volt, r::SiUnit::Ampere, r::SiUnit::Second}) {
                    const r::NumericParse n = r::parseNumeric(param, unit, true);
                    FUZZ_CHECK(n.numeric.has_value() != (n.error.code != r::err::kNone));
                }
            }
            (void)r::matchHeader("[SOURce#:]VOLTage[:LEVel][:IMMediate][:AMPLitude]", p.unit->nodes);
        } else {
            FUZZ_CHECK(p.error.code != r::err::kNone);
            FUZZ_CHECK(!p.error.text.empty());
            FUZZ_CHECK(r::errorText(p.error).rfind(std::to_string(p.error.code) + ",\"", 0) == 0);
        }
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
    const std::vector<double> values{number.value_or(0.0), -1.5};
    for (r::DataFormat f : {r::DataFormat::Ascii, r::DataFormat::Real32, r::DataFormat::Real64})
        (void)r::formatValues(values, {f, size % 2 == 1});
    return 0;
}
