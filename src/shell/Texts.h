#pragma once
// Fixed texts of the program's dialogs.

namespace qz {

// Where updates of the program can be had.
inline constexpr const char* kUpdateLine =
    "For updates of this software, see the QZ7740 pages of the maker's web site.";

} // namespace qz
