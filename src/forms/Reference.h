#pragma once
// The VREF option group that three panels show: "5V", "2.5V" and "Other" with its box.

#include <array>
#include <optional>

class QLineEdit;
class QRadioButton;

namespace forms {

using ReferenceOptions = std::array<QRadioButton*, 3>;

// The reference of option index: 5 or 2.5, or the number of the "Other" box once its
// check passes. A box that fails it is refused and the option in use is selected again
// (its click operation does not run). inUse follows the option whose reference is taken.
std::optional<float> pickReference(int index, QLineEdit* txtVREF, const ReferenceOptions& options,
                                   int& inUse);

} // namespace forms
