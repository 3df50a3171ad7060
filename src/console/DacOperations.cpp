// What the DAC pages of the console do: DACLOAD, the ramp, the selections and reads of
// the read page, and the reference voltage.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "levels/EntryField.h"
#include "registers/BitMirror.h"
#include "registers/RegisterMap.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <iterator>

using forms::hexText;

void frmMAINQZ7740::DACLOAD(int32_t lx, int32_t dacadd) {
    int32_t& last = session.general.DAClast;
    last = qz::composeDACLOAD(lx, dacadd).word;
    showWord(last);
    session.SPIout(last);
    // The mirror works on DAClast itself and leaves it at 0 until the next load.
    txtDAC->mirror(last, qz::kDecToBin);
}

void frmMAINQZ7740::tabDACS_Click(int) {
    switch (tabDACS->currentIndex()) {
    case 0: {
        txtstart->clear();
        const int32_t r = session.readWord(qz::readCommandOf(qz::reg::kFinX1));
        txtstart->setText(hexText(r - qz::writeWord(qz::reg::kFinX1, 0), 4));
        break;
    }
    case 1: {
        const int32_t r = session.readWord(qz::readCommandOf(qz::reg::kFinX1));
        txtFINx1->setText(hexText(r - qz::writeWord(qz::reg::kFinX1, 0), 4));
        break;
    }
    default: break;
    }
}

void frmMAINQZ7740::cmdENRAMP_Click() {
    if (session.general.entryBusy) return;
    session.SPIout(qz::writeWord(qz::reg::kRampEnable, 0xFFFF));
}

void frmMAINQZ7740::cmdINTRAMP_Click() {
    if (session.general.entryBusy) return;
    session.SPIout(qz::writeWord(qz::reg::kRampInterrupt, 0));
}

void frmMAINQZ7740::cmdReadEnableRamp_Click() {
    const int32_t command = qz::readCommandOf(qz::reg::kRampEnable);
    const int32_t r = session.readWord(command);
    showWord(command);
    txtRampStatus->setText(hexText(r, 6));
}

void frmMAINQZ7740::cboDAC_Click() {
    const int i = cboDAC->currentIndex();
    // Before a choice the list keeps the word it holds.
    if (i >= 0 && i < static_cast<int>(std::size(qz::kFinAuxDacs)))
        dacRead = qz::readCommandOf(qz::kFinAuxDacs[i]);
    showWord(dacRead);
}

void frmMAINQZ7740::cboCLAMPS_Click() {
    const int i = cboCLAMPS->currentIndex();
    if (i >= 0 && i < static_cast<int>(std::size(qz::kClampDacs)))
        clampRead = qz::readCommandOf(qz::kClampDacs[i]);
    showWord(clampRead);
}

namespace {
// The read command of a comparator DAC register.
int32_t comparatorRead(float compDACsel, int row, qz::DacMember member) {
    const auto which = compDACsel == 0.0f ? qz::Comparator::CPL : qz::Comparator::CPH;
    return qz::readCommandOf(qz::comparatorAddress(which, row, member));
}
} // namespace

void frmMAINQZ7740::cboCOMPDACs_Click() {
    compDACsel = cboCOMPDACs->currentIndex() == 1 ? 1.0f : 0.0f;
    compDACread = comparatorRead(compDACsel, 0, qz::DacMember::X1);
    showWord(compDACread);
}

void frmMAINQZ7740::cboCurrentRange_Click() {
    // Before a choice the list acts as its first item.
    const int row = std::clamp(cboCurrentRange->currentIndex(), 0, qz::kComparatorRows - 1);
    compRangeRead = comparatorRead(compDACsel, row, qz::DacMember::X1);
    showWord(compRangeRead);
}

void frmMAINQZ7740::Combo2_Click() {
    // m and c stand one and two registers after the x1 that the range word holds.
    const int member = std::clamp(Combo2->currentIndex(), 0, 2);
    compFullRead = compRangeRead + qz::writeWord(member, 0);
    showWord(compFullRead);
}

void frmMAINQZ7740::cmdREADDAC_Click() {
    cboDAC_Click();
    int32_t r = session.readWord(qz::readCommandOf(qz::reg::kOffset));
    txtOFFSET->setText(hexText(r - qz::writeWord(qz::reg::kOffset, 0), 6));
    r = readRegister(dacRead);
    showWord(dacRead);
    txtDaccode->setText(hexText(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADCLAMPDACs_Click() {
    cboCLAMPS_Click();
    int32_t r = readRegister(clampRead);
    txtDACC->setText(hexText(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADCOMPDACs_Click() {
    cboCurrentRange_Click();
    Combo2_Click();
    cboCOMPDACs_Click();
    int32_t r = readRegister(compFullRead);
    txtDACcomp->setText(hexText(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADRAMPREGS_Click() {
    if (session.general.entryBusy) return;
    // The names of the step and divider boxes cross over; their captions follow the reads.
    txtRRampEnd->setText(hexText(session.readWord(qz::readCommandOf(qz::reg::kRampEnd)) & 0xFFFF, 6));
    txtRRCLKDiv->setText(hexText(session.readWord(qz::readCommandOf(qz::reg::kRampStep)) & 0xFFFF, 6));
    const int32_t command = qz::readCommandOf(qz::reg::kRclkDivider);
    const int32_t r = readRegister(command);
    showWord(command);
    txtRRampStep->setText(hexText(r & 0xFFFF, 6));
}

void frmMAINQZ7740::wireDacPages() {
    forms::onClick(cmdENRAMP, [this] { cmdENRAMP_Click(); });
    forms::onClick(cmdINTRAMP, [this] { cmdINTRAMP_Click(); });
    forms::onClick(cmdReadEnableRamp, [this] { cmdReadEnableRamp_Click(); });
    forms::onClick(cmdREADDAC, [this] { cmdREADDAC_Click(); });
    forms::onClick(cmdREADCLAMPDACs, [this] { cmdREADCLAMPDACs_Click(); });
    forms::onClick(cmdREADCOMPDACs, [this] { cmdREADCOMPDACs_Click(); });
    forms::onClick(cmdREADRAMPREGS, [this] { cmdREADRAMPREGS_Click(); });
    forms::onClick(cboDAC, [this] { cboDAC_Click(); });
    forms::onClick(cboCLAMPS, [this] { cboCLAMPS_Click(); });
    forms::onClick(cboCOMPDACs, [this] { cboCOMPDACs_Click(); });
    forms::onClick(cboCurrentRange, [this] { cboCurrentRange_Click(); });
    forms::onClick(Combo2, [this] { Combo2_Click(); });
}
