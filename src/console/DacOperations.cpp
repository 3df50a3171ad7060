// What the DAC pages of the console do: DACLOAD, the ramp, the selections and reads of
// the read page, and the reference voltage.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Controls.h"
#include "forms/TabControl.h"
#include "levels/EntryField.h"
#include "registers/BitMirror.h"
#include "registers/HexText.h"

#include <QComboBox>

#include <algorithm>
#include <QLineEdit>
#include <QPushButton>

namespace {
QString hex(int32_t n, int width) { return QString::fromStdString(qz::NumberToHex(n, width)); }
} // namespace

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
        const int32_t r = readWord(0x880000);
        txtstart->setText(hex(r - 0x080000, 4));
        break;
    }
    case 1: {
        const int32_t r = readWord(0x880000);
        txtFINx1->setText(hex(r - 0x080000, 4));
        break;
    }
    default: break;
    }
}

void frmMAINQZ7740::cmdENRAMP_Click() {
    if (session.general.entryBusy) return;
    session.SPIout(0x41FFFF);
}

void frmMAINQZ7740::cmdINTRAMP_Click() {
    if (session.general.entryBusy) return;
    session.SPIout(0x420000);
}

void frmMAINQZ7740::cmdReadEnableRamp_Click() {
    const int32_t r = readWord(0xC10000);
    Text1->setText(QStringLiteral("C10000"));
    txtRampStatus->setText(hex(r, 6));
}

void frmMAINQZ7740::cboDAC_Click() {
    static constexpr int32_t kReads[] = {0x880000, 0x890000, 0x8A0000, 0x8C0000, 0xBD0000};
    const int i = cboDAC->currentIndex();
    // Before a choice the list keeps the word it holds.
    if (i >= 0 && i < 5) dacRead = kReads[i];
    showWord(dacRead);
}

void frmMAINQZ7740::cboCLAMPS_Click() {
    const int i = cboCLAMPS->currentIndex();
    if (i >= 0) clampRead = 0x8D0000 + i * 0x10000;
    showWord(clampRead);
}

void frmMAINQZ7740::cboCOMPDACs_Click() {
    compDACread = 0x930000;
    compDACsel = 0.0f;
    if (cboCOMPDACs->currentIndex() == 1) {
        compDACread = 0xA80000;
        compDACsel = 1.0f;
    }
    showWord(compDACread);
}

void frmMAINQZ7740::cboCurrentRange_Click() {
    // Before a choice the list acts as its first item.
    const int i = std::max(0, cboCurrentRange->currentIndex());
    if (i < 7) compRangeRead = compDACread + i * 0x30000;
    else compRangeRead = compDACsel == 0.0f ? 0xC50000 : 0xC80000;  // the voltage range row
    showWord(compRangeRead);
}

void frmMAINQZ7740::Combo2_Click() {
    const int i = std::max(0, Combo2->currentIndex());
    compFullRead = compRangeRead + i * 0x10000;
    showWord(compFullRead);
}

void frmMAINQZ7740::cmdREADDAC_Click() {
    cboDAC_Click();
    int32_t r = readWord(0x8B0000);
    txtOFFSET->setText(hex(r - 0x0B0000, 6));
    r = readRegister(dacRead);
    showWord(dacRead);
    txtDaccode->setText(hex(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADCLAMPDACs_Click() {
    cboCLAMPS_Click();
    int32_t r = readRegister(clampRead);
    txtDACC->setText(hex(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADCOMPDACs_Click() {
    cboCurrentRange_Click();
    Combo2_Click();
    cboCOMPDACs_Click();
    int32_t r = readRegister(compFullRead);
    txtDACcomp->setText(hex(r & 0xFFFF, 6));
    txtRDAC->mirror(r, qz::kDecToBinRDAC);
}

void frmMAINQZ7740::cmdREADRAMPREGS_Click() {
    if (session.general.entryBusy) return;
    txtRRampEnd->setText(hex(readWord(0xBE0000) & 0xFFFF, 6));
    txtRRCLKDiv->setText(hex(readWord(0xBF0000) & 0xFFFF, 6));
    const int32_t r = readRegister(0xC00000);
    Text1->setText(QStringLiteral("C00000"));
    txtRRampStep->setText(hex(r & 0xFFFF, 6));
}

void frmMAINQZ7740::wireDacPages() {
    connect(cmdENRAMP, &QPushButton::clicked, this, [this] { cmdENRAMP_Click(); });
    connect(cmdINTRAMP, &QPushButton::clicked, this, [this] { cmdINTRAMP_Click(); });
    connect(cmdReadEnableRamp, &QPushButton::clicked, this, [this] { cmdReadEnableRamp_Click(); });
    connect(cmdREADDAC, &QPushButton::clicked, this, [this] { cmdREADDAC_Click(); });
    connect(cmdREADCLAMPDACs, &QPushButton::clicked, this, [this] { cmdREADCLAMPDACs_Click(); });
    connect(cmdREADCOMPDACs, &QPushButton::clicked, this, [this] { cmdREADCOMPDACs_Click(); });
    connect(cmdREADRAMPREGS, &QPushButton::clicked, this, [this] { cmdREADRAMPREGS_Click(); });
    forms::onClick(cboDAC, [this] { cboDAC_Click(); });
    forms::onClick(cboCLAMPS, [this] { cboCLAMPS_Click(); });
    forms::onClick(cboCOMPDACs, [this] { cboCOMPDACs_Click(); });
    forms::onClick(cboCurrentRange, [this] { cboCurrentRange_Click(); });
    forms::onClick(Combo2, [this] { Combo2_Click(); });
}
