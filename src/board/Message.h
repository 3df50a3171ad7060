#pragma once
// How plain code asks for a message box. The panels supply the box; tests supply a recorder.

#include <functional>
#include <string>

namespace qz {

enum class MsgIcon { None, Exclamation, Information, Critical };

using MessageSink =
    std::function<void(const std::string& title, const std::string& text, MsgIcon icon)>;

// The application's title, which a message box without a title of its own carries.
inline constexpr const char* kAppTitle = "QZ7740";

} // namespace qz
