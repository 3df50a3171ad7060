#pragma once
// The words of an entry refusal that more than one part of the level engine gives.

namespace qz {

// The title of every entry refusal.
inline constexpr const char* kEntryErrorTitle = "Entry Error";

// A text that is not a number, or that a level cannot be worked out from.
inline constexpr const char* kNotValidNumber = "Not a valid number. Please reenter it.";

} // namespace qz
