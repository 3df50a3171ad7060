#pragma once
// Every message box of the program goes through here, so that tests can read them.

#include "board/Message.h"

#include <functional>

class QLineEdit;
class QWidget;

namespace forms {

// Shows a box with one OK button: title, text and icon.
void message(const std::string& title, const std::string& text, qz::MsgIcon icon);

// Puts another box in place of the real one (tests); an empty sink restores it.
void setMessageSink(qz::MessageSink sink);

// The refusal of an entry: the "Entry Error" warning with this text; then the field is
// emptied and takes the focus.
void refuseEntry(QLineEdit* field, const std::string& text);

// Ends the program at once; tests put a recorder in its place.
void endProgram();
void setEndProgram(std::function<void()> end);

} // namespace forms
