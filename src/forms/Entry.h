#pragma once
// Key and focus events of an entry box.

#include <functional>

class QFont;
class QLineEdit;

namespace forms {

// Runs handler on the Enter key (either Enter key); every other key reaches the box.
void onEnter(QLineEdit* box, std::function<void()> handler);

// Runs handler when the box loses the focus to another control of the program; not
// when the whole window loses it (another program, or a message box coming up).
void onLeave(QLineEdit* box, std::function<void()> handler);

// The fixed-width font in which words and codes are shown.
QFont hexFont();

} // namespace forms
