// What the diagnostic register's page does: each choice writes its word at once; the
// MEASOUT path goes out through DPS1 after it; a read fills the read mirror only.

#include "diagnostics/frmDIAG.h"

#include "board/Wire.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/MessageBox.h"
#include "forms/StripChart.h"
#include "forms/TabControl.h"
#include "forms/RunPass.h"
#include "registers/BitMirror.h"
#include "registers/Diagnostics.h"
#include "registers/RegisterMap.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QString>
#include <QRadioButton>

namespace diag = qz::diag;

void frmDIAG::Form_Load() {
    qz::General& g = session.general;
    g.DIAGreg = qz::kDIAGregStart;
    SSTab2->setCurrentIndex(2);
    for (const auto& s : qz::sensor::kSetup) session.usb.WriteI2C(s.data, s.pointer);
    g.tempDelay = 0.1f;
    optTSENSE[9]->setChecked(true);
    optTSENSE_Click(9);
    session.usb.WriteI2C(qz::sensor::kAfterRouting.data, qz::sensor::kAfterRouting.pointer);
    const int32_t local = session.usb.ReadI2C(qz::sensor::kLocal);
    txtLocal->setText(QString::number(local));
    Strip1->setHandleStyle(0);
    lblREADSPI->setText(forms::hexText(local, 1));
    Strip1->setPointCount(200);
    Strip1->setXAxisMin(0);
    Strip1->setXAxisMax(200);
    Strip1->setPointCount(200);
}

bool frmDIAG::running() const { return run_->running(); }

void frmDIAG::stopRun() { run_->requestStop(); }

void frmDIAG::closeEvent(QCloseEvent* event) {
    // A close during a run waits for its end; otherwise the frame's close is the menu's
    // "Close", and the next showing loads afresh.
    event->ignore();
    if (run_->running()) return run_->requestClose();
    nav.unload(form);
}

void frmDIAG::select(int32_t mask, int32_t bits) {
    qz::General& g = session.general;
    // The mask comes before the busy test: a busy entry still loses the field.
    g.DIAGreg &= mask;
    if (g.entryBusy || bits < 0) return;
    g.DIAGreg |= bits;
    session.SPIout(g.DIAGreg);
    showWord();
}

void frmDIAG::showWord() {
    Text1->setText(forms::hexText(session.general.DIAGreg, 6));
    DecToBinDIAG(session.general.DIAGreg);
}

void frmDIAG::optDIAGA_Click(int index) { select(diag::kNodeMask, diag::nodeBits(index)); }
void frmDIAG::optDIAGB_Click(int index) { select(diag::kNodeMask, diag::nodeBits(index)); }
void frmDIAG::optTESTFORCE_Click(int index) { select(diag::kStageMask, diag::stageBits(index)); }
void frmDIAG::optTSENSE_Click(int index) { select(diag::kPointMask, diag::pointBits(index)); }

void frmDIAG::optMEASAB_Click(int index) {
    qz::General& g = session.general;
    if (g.entryBusy || index < 0 || index > 1) return;
    g.PMUreg = (g.PMUreg & diag::kMeasoutMask) | diag::kMeasoutPath[static_cast<size_t>(index)];
    session.SPIout(g.DIAGreg);
    session.SPIout(g.PMUreg);
    showWord();
}

void frmDIAG::cmdWRITEDIAGREG_Click() {
    session.SPIout(session.general.DIAGreg);
    session.SPIout(session.general.PMUreg);
    showWord();
}

void frmDIAG::cmdREADDIAG_Click() {
    const int32_t command = qz::readCommandOf(qz::reg::kDiag);
    const int32_t r = session.readWord(command);
    lblREADSPI->setText(forms::hexText(r, 6));
    Text1->setText(forms::hexText(command, 6));
    DecToBinRDIAG(r);
}

void frmDIAG::cmdRESET_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(qz::wire::kChipReset);
    // Reading the alarm status with clear drops the alarms the reset left latched.
    session.SPIout(qz::readCommandOf(qz::reg::kAlarmStatusClear));
}

void frmDIAG::cmdEXIT_Click() { forms::endProgram(); }

void frmDIAG::SSTab2_Click(int) {
    // The fixed frames follow the page: the register and the array hide on the read page,
    // the word boxes on the sensor's page.
    const int page = SSTab2->currentIndex();
    frmDiagREG->setVisible(page != 1);
    frmDIAGA->setVisible(page != 1);
    frmwrite->setVisible(page != 2);
}

void frmDIAG::DecToBinDIAG(int32_t word) { txtCP1->mirror(word, qz::kDecToBinDIAG); }
void frmDIAG::DecToBinRDIAG(int32_t word) { txtRD1->mirror(word, qz::kDecToBinRDIAG); }
