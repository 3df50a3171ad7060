#include "forms/AutoComp.h"

#include "forms/Build.h"
#include "registers/Compensation.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>

#include <initializer_list>

namespace forms {

void AutoCompControls::enableLists(bool enabled) const {
    for (QWidget* w : std::initializer_list<QWidget*>{cboRC, cboCR, Label9, Label10, Label11})
        w->setEnabled(enabled);
}

AutoCompControls makeAutoComp(QWidget* optionsParent, QWidget* listsParent) {
    AutoCompControls c;
    for (int i = 0; i < 2; ++i)
        c.Option2[static_cast<size_t>(i)] = makeOption(
            member("Option2", i), QString::fromLatin1(qz::kModeItems[i].text), optionsParent);
    c.Option2[0]->setChecked(true);
    c.cboRC = makeList(QStringLiteral("cboRC"), itemsOf(qz::kEsrItems, &qz::CompItem::text),
                       QStringLiteral("Choose ESR"), listsParent);
    c.cboCR = makeList(QStringLiteral("cboCR"), itemsOf(qz::kCdutItems, &qz::CompItem::text),
                       QStringLiteral("Choose Load Capacitance, CR"), listsParent);
    c.Label11 = makeLabel(QStringLiteral("Label11"), QStringLiteral("m"), listsParent);
    c.Label10 = makeLabel(QStringLiteral("Label10"), QStringLiteral("\u03A9"), listsParent);
    c.Label9 = makeLabel(QStringLiteral("Label9"), QStringLiteral("uF"), listsParent);
    c.milliohm = new QHBoxLayout;
    c.milliohm->setSpacing(0);
    c.milliohm->addWidget(c.Label11);
    c.milliohm->addWidget(c.Label10);
    c.milliohm->addStretch(1);
    return c;
}

} // namespace forms
