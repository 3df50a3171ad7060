#pragma once
// Fixed texts of the program's dialogs.

namespace qz {

// Where updates of the program can be had: the About dialog and the MEASOUT gain warning
// both show this line, a plain text rather than a link.
inline constexpr const char* kUpdateLine =
    "For updates of this software, see www.norvane.example/qz7740 on the maker's web site.";

} // namespace qz
