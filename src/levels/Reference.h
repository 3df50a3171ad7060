#pragma once
// The reference voltage VREF: the two fixed choices and the check of the "Other" box.

#include "levels/EntryField.h"
#include "levels/Messages.h"
#include "levels/Numbers.h"

#include <string_view>

namespace qz {

// The references of the options "5V" and "2.5V", by option index.
inline constexpr float kFixedReferences[2] = {5.0f, 2.5f};

inline constexpr const char* kReferenceOutside =
    "Number outside Reference range. Please reenter reference voltage between 2V and +5V.";

// The "Other" box: the text, rounded to a whole number, must lie from 2 to 5 (at or above
// 1.9 and below 5.1); the reference is then the text itself, fractions kept, in single
// precision ("5.4" passes as 5 and gives 5.4).
inline DecimalCheck checkReference(std::string_view text) {
    DecimalCheck r;
    const auto whole = parseWhole(text);
    const auto value = parseSingle(text);
    if (!whole || !value) {
        r.message = kNotValidNumber;
    } else if (!(*whole < 5.1) || *whole < 1.9) {
        r.message = kReferenceOutside;
    } else {
        r.ok = true;
        r.value = *value;
        r.text = std::string(text);
    }
    return r;
}

} // namespace qz
