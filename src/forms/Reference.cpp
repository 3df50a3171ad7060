#include "forms/Reference.h"

#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/CrossPanel.h"
#include "forms/MessageBox.h"
#include "levels/Reference.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace forms {

QGroupBox* buildReferenceFrame(QWidget* parent, ReferenceOptions& optRef, QLineEdit*& txtVREF,
                               const char* note) {
    QGroupBox* frame = makeFrame(QStringLiteral("VREF"), parent);
    frame->setObjectName(QStringLiteral("frmVref"));
    auto* g = new QGridLayout(frame);
    const char* captions[3] = {"5V", "2.5V", "Other"};
    for (int i = 0; i < 3; ++i) {
        optRef[static_cast<size_t>(i)] = makeOption(member("optRef", i), QString::fromLatin1(captions[i]), frame);
        g->addWidget(optRef[static_cast<size_t>(i)], i, 0);
    }
    optRef[0]->setChecked(true);
    txtVREF = makeNumberBox("txtVREF", "2", frame, 50);
    g->addWidget(txtVREF, 2, 1);
    g->addWidget(makeCaption("V", frame), 2, 2);
    g->setColumnStretch(3, 1);
    if (note) g->addWidget(makeNote(note, frame), 3, 0, 1, 4);
    return frame;
}

std::optional<float> pickReference(int index, QLineEdit* txtVREF, const ReferenceOptions& options,
                                   int& inUse, Outcome& outcome) {
    if (index < 0 || index > 2) return std::nullopt;
    float vref = 0.0f;
    if (index < 2) {
        vref = qz::kFixedReferences[index];
    } else {
        const qz::DecimalCheck c = qz::checkReference(txtVREF->text().toStdString());
        if (!c.ok) {
            options[static_cast<size_t>(inUse)]->setChecked(true);
            outcome += refused(txtVREF, c.message);
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
