// What the compensation panel does: each selection masks its shadow word and ORs in its
// field, and shows the word; the LOAD buttons send the words, the READ buttons fetch the
// chip's, and the mirrors show either bit by bit.

#include "compensation/CompDrawings.h"
#include "compensation/frmCompensation.h"

#include "board/Wire.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/MessageBox.h"
#include "registers/BitMirror.h"
#include "registers/Compensation.h"
#include "registers/RegisterMap.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

void frmCompensation::wire() {
    for (int i = 0; i < 2; ++i)
        forms::onClick(autoComp.Option2[static_cast<size_t>(i)], [this, i] { Option2_Click(i); });
    for (int k = 0; k < 7; ++k)
        forms::onClick(Option1[static_cast<size_t>(k)], [this, k] { Option1_Click(k); });
    const std::pair<QComboBox*, void (frmCompensation::*)()> lists[] = {
        {autoComp.cboRC, &frmCompensation::cboRC_Click},
        {autoComp.cboCR, &frmCompensation::cboCR_Click},
        {cboRZ, &frmCompensation::cboRZ_Click},
        {cboRp, &frmCompensation::cboRp_Click},
        {cboGM, &frmCompensation::cboGM_Click}};
    for (const auto& [list, handler] : lists)
        forms::onClick(list, [this, h = handler] { (this->*h)(); });
    const std::pair<QAbstractButton*, void (frmCompensation::*)()> checks[] = {
        {chkManualMode, &frmCompensation::chkManualMode_Click},
        {chkCc[0], &frmCompensation::chkCc1_Click},
        {chkCc[1], &frmCompensation::chkCc2_Click},
        {chkCc[2], &frmCompensation::chkCc3_Click}};
    for (const auto& [box, handler] : checks)
        forms::onClick(box, [this, h = handler] { (this->*h)(); });
    const std::pair<QPushButton*, void (frmCompensation::*)()> buttons[] = {
        {cmdWriteCOMP1, &frmCompensation::cmdWriteCOMP1_Click},
        {cmdREADC1, &frmCompensation::cmdREADC1_Click},
        {cmdWriteCOMP2, &frmCompensation::cmdWriteCOMP2_Click},
        {cmdREADC2, &frmCompensation::cmdREADC2_Click},
        {cmdRESET, &frmCompensation::cmdRESET_Click},
        {cmdEXIT, &frmCompensation::cmdEXIT_Click}};
    for (const auto& [button, handler] : buttons)
        forms::onClick(button, [this, h = handler] { (this->*h)(); });
    // The bit rows read all zeros until the first load or read.
    for (forms::BitRow* row : {txtCP1, txtCP2})
        for (int k = 0; k < 24; ++k)
            row->setDigit(k, '0');
}

void frmCompensation::Form_Load() {
    qz::General& g = session.general;
    // A new panel starts from the base words: what was composed before, here or on the
    // front panel, is dropped from the shadows, while the chip keeps what it was sent.
    g.COMP1reg = qz::kCOMP1regStart;
    g.COMP2reg = qz::kCOMP2regStart;
    setAutoListsEnabled(false);
}

void frmCompensation::closeEvent(QCloseEvent* event) {
    event->accept();
    nav.unload(form);
}

void frmCompensation::select(const qz::CompSelection& s, int item) {
    int32_t& word = qz::compWord(session.general, s.word);
    word = qz::applySelection(word, s, item);
    if (s.mirrorBit >= 0) {
        forms::BitRow* row = s.word == qz::CompWord::COMP1 ? txtCP1 : txtCP2;
        row->setDigit(s.mirrorBit, (word >> s.mirrorBit) & 1 ? '1' : '0');
    }
    if (s.showsWord) showWord(word);
}

void frmCompensation::showWord(int32_t word) {
    Text1->setText(forms::hexText(word, 6));
}

void frmCompensation::setAutoListsEnabled(bool enabled) {
    autoComp.enableLists(enabled);
}

void frmCompensation::Option2_Click(int index) {
    if (session.general.entryBusy) return;
    // Safe mode greys the lists but leaves their text, and the fields stay in the word.
    setAutoListsEnabled(index == 1);
    select(qz::kOption2, index);
}

void frmCompensation::cboRC_Click() {
    select(qz::kcboRC, autoComp.cboRC->currentIndex());
}
void frmCompensation::cboCR_Click() {
    select(qz::kcboCR, autoComp.cboCR->currentIndex());
}
void frmCompensation::cboRZ_Click() {
    select(qz::kcboRZ, cboRZ->currentIndex());
}
void frmCompensation::cboRp_Click() {
    select(qz::kcboRp, cboRp->currentIndex());
}
void frmCompensation::cboGM_Click() {
    select(qz::kcboGM, cboGM->currentIndex());
}

void frmCompensation::chkManualMode_Click() {
    if (session.general.entryBusy) return;
    select(qz::kchkManualMode, chkManualMode->isChecked() ? 1 : 0);
}

void frmCompensation::chkCc1_Click() {
    chkCcClick(0);
}
void frmCompensation::chkCc2_Click() {
    chkCcClick(1);
}
void frmCompensation::chkCc3_Click() {
    chkCcClick(2);
}

void frmCompensation::chkCcClick(int i) {
    if (session.general.entryBusy) return;
    const bool ticked = chkCc[static_cast<size_t>(i)]->isChecked();
    network->setCc(i + 1, ticked);
    select(qz::kchkCc[i], ticked ? 1 : 0);
}

void frmCompensation::Option1_Click(int index) {
    if (session.general.entryBusy) return;
    network->closeCf(index);
    select(qz::kOption1, index);
}

void frmCompensation::DecToBinComp1(int32_t word) {
    txtCP1->mirror(word, qz::kDecToBinComp1);
}
void frmCompensation::DecToBinComp2(int32_t word) {
    txtCP2->mirror(word, qz::kDecToBinComp2);
}

void frmCompensation::cmdWriteCOMP1_Click() {
    const int32_t word = session.general.COMP1reg;
    session.SPIout(word);
    DecToBinComp1(word);
}

void frmCompensation::cmdWriteCOMP2_Click() {
    const int32_t word = session.general.COMP2reg;
    showWord(word);
    lblREADSPI->clear();
    session.SPIout(word);
    DecToBinComp2(word);
}

int32_t frmCompensation::readRegister(int address) {
    const int32_t command = qz::readCommandOf(address);
    const int32_t value = session.readWord(command);
    lblREADSPI->setText(forms::hexText(value, 6));
    showWord(command);
    return value;
}

// A read shows the chip's bits in the mirror; the shadow word and the selectors stay.
void frmCompensation::cmdREADC1_Click() {
    DecToBinComp1(readRegister(qz::reg::kComp1));
}
void frmCompensation::cmdREADC2_Click() {
    DecToBinComp2(readRegister(qz::reg::kComp2));
}

void frmCompensation::cmdRESET_Click() {
    if (session.general.entryBusy) return;
    // The chip alone goes back to its reset state: shadows and selectors stay.
    session.usb.SendRequest(qz::wire::kChipReset);
    Text1->setText(QStringLiteral("000000"));
}

void frmCompensation::cmdEXIT_Click() {
    forms::endProgram();
}
