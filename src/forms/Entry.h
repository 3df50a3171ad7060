#pragma once
// Entry boxes: their key and focus events, and the pattern by which a typed text becomes
// a value. Nothing happens until Enter; then the box's check gives the value and the
// tidied text, or a refusal: the "Entry Error" warning with its text, the box emptied
// and focused, and nothing sent.

#include "forms/MessageBox.h"
#include "levels/EntryField.h"

#include <cstdint>
#include <functional>
#include <optional>

#include <QString>

class QFont;
class QLineEdit;

namespace forms {

// Runs handler on the Enter key (either Enter key); every other key reaches the box.
void onEnter(QLineEdit* box, std::function<void()> handler);

// Runs handler when the box loses the focus to another control of the program; not
// when the whole window loses it (another program, or a message box coming up).
void onLeave(QLineEdit* box, std::function<void()> handler);

// The operator's Enter key in the box, from code: whatever the box does on Enter runs.
void pressEnter(QLineEdit* box);

// An entry box of the pattern: on Enter, unless entryBusy is set, `enter` runs and its
// outcome is shown.
void onEntry(QLineEdit* box, const bool& entryBusy, std::function<Outcome()> enter);

// The box's Enter operation run by code (the remote control): the outcome is given back,
// not shown. A box without one, or while entryBusy is set, does nothing.
Outcome enter(QLineEdit* box);

// A check's verdict on its box: a refusal of the box, or the tidied text put in the box
// and marked accepted.
Outcome take(QLineEdit* box, const qz::FieldCheck& check);
Outcome take(QLineEdit* box, const qz::DecimalCheck& check);

// The text of the box's last accepted entry, or its start text: the value in force,
// whatever has been typed since. Empty while nothing was ever accepted.
void markAccepted(QLineEdit* box);
QString acceptedText(const QLineEdit* box);

// The DAC code a box holds (OFFSET, m, c, x1), read by a routine rather than by the
// box's own Enter; a box that holds no code gives its refusal as not a valid number.
std::optional<int32_t> readCode(QLineEdit* box, Outcome& outcome);

// The fixed-width font in which words and codes are shown.
QFont hexFont();

} // namespace forms
