#pragma once
// Every message box of the program goes through here, so that tests can read them.

#include "board/Message.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QLineEdit;
class QWidget;

namespace forms {

// A box as an operation gives it: its title, text and icon.
struct Box {
    std::string title, text;
    qz::MsgIcon icon = qz::MsgIcon::Exclamation;
};

// What an operation did, for whoever called it to show or report: done, with the boxes
// it has to tell on the way (warnings that stop nothing), or refused, with the box that
// says why and the entry box it blames. The operator's hand shows it all (show()); the
// remote control turns it into errors; nothing is shown by the operation itself.
struct Outcome {
    std::vector<Box> notes;
    std::optional<Box> refusal;
    QLineEdit* field = nullptr; // the box a refusal blames, emptied and focused when shown

    bool ok() const { return !refusal; }
    explicit operator bool() const { return ok(); }
    // Another operation's outcome joins this one: its notes after ours, its refusal if we
    // have none.
    Outcome& operator+=(Outcome other);
};

// The refusal of an entry: "Entry Error" with this text, blaming the field.
Outcome refused(QLineEdit* field, const std::string& text);
// A refusal in a box of its own.
Outcome refused(Box box);
// A warning that stops nothing.
Outcome noted(Box box);

// The operator's view of an outcome: each box in turn; a refused entry's box is emptied
// and takes the focus.
void show(const Outcome& outcome);

// Shows a box with one OK button: title, text and icon.
void message(const std::string& title, const std::string& text, qz::MsgIcon icon);

// Puts another box in place of the real one (tests); an empty sink restores it.
void setMessageSink(qz::MessageSink sink);

// The refusal of an entry, shown at once: show(refused(field, text)).
void refuseEntry(QLineEdit* field, const std::string& text);

// Ends the program at once; tests put a recorder in its place.
void endProgram();
void setEndProgram(std::function<void()> end);

} // namespace forms
