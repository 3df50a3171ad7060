#pragma once
// The auto compensation selectors that the front panel and the compensation panel both
// show: the mode options, the ESR and load capacitance lists with their units, built alike
// from the compensation tables.

#include <array>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QRadioButton;
class QWidget;

namespace forms {

struct AutoCompControls {
    std::array<QRadioButton*, 2> Option2{}; // "SAFE MODE", selected at start; "AUTO COMPENSATION MODE"
    QComboBox* cboRC = nullptr;              // the ESR
    QComboBox* cboCR = nullptr;              // the load capacitance
    QLabel* Label11 = nullptr;               // "m"
    QLabel* Label10 = nullptr;               // the Ohm sign
    QLabel* Label9 = nullptr;                // "uF"
    QHBoxLayout* milliohm = nullptr;         // "m" and the Ohm sign set close as one word

    // The lists and their units follow the mode: enabled in auto compensation only.
    void enableLists(bool enabled) const;
};

// The options go on optionsParent, the lists and their units on listsParent.
AutoCompControls makeAutoComp(QWidget* optionsParent, QWidget* listsParent);

} // namespace forms
