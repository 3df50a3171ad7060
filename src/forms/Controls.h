#pragma once
// The click operation of a list, check box or option button. A user's pick always runs
// it; a change made by code through the setters below runs it only when the state
// really changes, so that two twin controls setting each other stop after one round.

#include "forms/MessageBox.h"
#include "forms/Navigator.h"

#include <functional>
#include <initializer_list>
#include <type_traits>

class QAbstractButton;
class QComboBox;
class QWidget;

namespace forms {

// Ties the click operation to the control. For a list it runs on every pick, the
// item already chosen included. A user's pick shows the operation's outcome.
void onClick(QComboBox* list, std::function<Outcome()> handler);
void onClick(QAbstractButton* button, std::function<Outcome()> handler);
// An operation that cannot be refused nor has anything to tell.
template <typename Control, typename F>
    requires std::is_void_v<std::invoke_result_t<F>>
void onClick(Control* control, F handler) {
    onClick(control, std::function<Outcome()>([h = std::move(handler)] {
                h();
                return Outcome{};
            }));
}

// Ties each list and check box to one handler, which is given the control's name.
void onClicks(std::initializer_list<QWidget*> controls, std::function<Outcome(const QString&)> handler);

// Sets a list's index; runs the click operation when the index changes.
void setListIndex(QComboBox* list, int index);
// Sets a check box; runs the click operation when the state changes.
void setChecked(QAbstractButton* box, bool checked);
// Selects an option button; runs its click operation when it was not selected.
void selectOption(QAbstractButton* option);

// Runs the click operation as if the user had picked (a handler calling another); its
// outcome is shown.
void click(QWidget* control);
// Runs the click operation for code that reports its outcome itself (the remote
// control): nothing is shown.
Outcome operate(QWidget* control);

// The item a field control stands at: a list's index (-1 while none is chosen), a check
// box's state (1 checked, 0 not) or an option's selection (1 selected).
int itemOf(const QWidget* control);
// Sets a list's index, a check box's state or an option's selection to item, by the
// setters above: the click operation runs only on a real change.
void setItem(QWidget* control, int item);

// The twin of a control: the control of the same name on another panel is set to item.
// Its own click operation runs only when that changes it, so two twins setting each
// other stop after one round, and a twin already at item sends nothing.
void setTwin(Navigator& nav, Form panel, const QString& control, int item);

// The list takes no keys and no wheel turns, nor does its open list: only a mouse pick
// chooses.
void swallowKeys(QComboBox* list);
// No wheel turn changes the list, so that scrolling over a panel sends nothing.
void ignoreWheel(QComboBox* list);

} // namespace forms
