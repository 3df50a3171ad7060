#pragma once
// The check of an entry field on Enter: a function of the field's text that gives the
// value to write, the tidied text to show, or the message of a refusal.

#include <cstdint>
#include <string>

namespace qz {

inline constexpr const char* kEntryErrorTitle = "Entry Error";
inline constexpr const char* kNotValidNumber = "Not a valid number. Please reenter it.";

struct FieldCheck {
    bool ok = false;
    int32_t value = 0;    // the value to write, when ok
    std::string text;     // the tidied text, when ok
    std::string message;  // the refusal, when not ok
};

// Text1, the console's word box: any 24-bit word.
inline constexpr const char* kWordTooLarge =
    "Number too large. Please reenter code between 0 and xFFFFFF.";
FieldCheck checkWordEntry(const std::string& text);

// The check Text1 makes when it loses the focus: a hexadecimal number, upper-cased.
FieldCheck checkWordOnLeave(const std::string& text);

} // namespace qz
