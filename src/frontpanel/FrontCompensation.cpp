// The front panel's compensation selectors: the same word COMP1reg, the same lists and
// masks as the compensation panel, but each selection goes to the chip at once.

#include "frontpanel/frmMain.h"
#include "forms/CrossPanel.h"

#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "registers/Compensation.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using forms::Form;

// The lists start enabled although safe mode is selected: nothing disables them before the
// first click of a mode, and until then a list writes its field with SAFEMODE 0.
void frmMain::wireCompensation() {
    for (int i = 0; i < 2; ++i)
        forms::onClick(autoComp.Option2[static_cast<size_t>(i)], [this, i] { Option2_Click(i); });
    forms::onClick(autoComp.cboRC, [this] { cboRC_Click(); });
    forms::onClick(autoComp.cboCR, [this] { cboCR_Click(); });
    cmdManualComp->setEnabled(nav.has(Form::frmCompensation));
    connect(cmdManualComp, &QPushButton::clicked, this, [this] { cmdManualComp_Click(); });
}

void frmMain::compSelect(const qz::CompSelection& s, int item) {
    int32_t& word = qz::compWord(session.general, s.word);
    word = qz::applySelection(word, s, item);
    session.SPIout(word);
    showWrite(word);
}

void frmMain::Option2_Click(int index) {
    if (session.general.entryBusy) return;
    autoComp.enableLists(index == 1);
    compSelect(qz::kOption2, index);
}

void frmMain::cboRC_Click() {
    compSelect(qz::kcboRC, autoComp.cboRC->currentIndex());
}
void frmMain::cboCR_Click() {
    compSelect(qz::kcboCR, autoComp.cboCR->currentIndex());
}

void frmMain::cmdManualComp_Click() {
    // An existing compensation panel keeps its words; only a new one loads afresh.
    nav.show(Form::frmCompensation);
    if (auto* tabs = forms::controlOf<forms::TabControl>(nav, forms::ref::kCompensationTabs))
        tabs->setCurrentIndex(1);
}
