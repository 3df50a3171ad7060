#pragma once
// The VREF option group that three panels show: "5V", "2.5V" and "Other" with its box.

#include "forms/MessageBox.h"
#include "forms/Navigator.h"

#include <array>
#include <initializer_list>
#include <optional>

class QGroupBox;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace forms {

using ReferenceOptions = std::array<QRadioButton*, 3>;

// The frame "frmVref" captioned "VREF": the options "5V" (chosen at start), "2.5V" and
// "Other", the "Other" box with its unit beside it, and the panel's note under them, if any.
QGroupBox* buildReferenceFrame(QWidget* parent, ReferenceOptions& optRef, QLineEdit*& txtVREF,
                               const char* note = nullptr);

// The reference of option index: 5 or 2.5, or the number of the "Other" box once its
// check passes. A box that fails it is refused and the option in use is selected again
// (its click operation does not run). inUse follows the option whose reference is taken.
std::optional<float> pickReference(int index, QLineEdit* txtVREF, const ReferenceOptions& options,
                                   int& inUse, Outcome& outcome);

// The same option on the other panels' groups, each of whose handlers runs on a real
// change. For "Other" the number goes along: the other panels' boxes take this box's
// text first, so that every panel's handler reads the same reference.
void followReference(Navigator& nav, int index, const QLineEdit* txtVREF,
                     std::initializer_list<Form> others);

} // namespace forms
