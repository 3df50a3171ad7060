#include "forms/Reference.h"
#include "forms/CrossPanel.h"

#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/MessageBox.h"
#include "levels/Reference.h"

#include <QLineEdit>
#include <QRadioButton>

namespace forms {

std::optional<float> pickReference(int index, QLineEdit* txtVREF, const ReferenceOptions& options,
                                   int& inUse) {
    if (index < 0 || index > 2) return std::nullopt;
    float vref = 0.0f;
    if (index < 2) {
        vref = qz::kFixedReferences[index];
    } else {
        const qz::DecimalCheck c = qz::checkReference(txtVREF->text().toStdString());
        if (!c.ok) {
            options[static_cast<size_t>(inUse)]->setChecked(true);
            refuseEntry(txtVREF, c.message);
            return std::nullopt;
        }
        vref = c.value;
    }
    inUse = index;
    return vref;
}

void followReference(Navigator& nav, int index, const QLineEdit* txtVREF,
                     std::initializer_list<Form> others) {
    for (Form other : others) {
        if (index == 2) {
            if (auto* box = controlOf<QLineEdit>(nav, ref::referenceBox(other)))
                box->setText(txtVREF->text());
        }
        setTwin(nav, other, ref::referenceOption(other, index).objectName(), 1);
    }
}

} // namespace forms
