// What the measurement panel does outside its runs: its load, the reference, range,
// measure and delay lists, the entries and their checks, the two stimuli, the clipboard,
// the help frames and the ways out.

#include "measure/frmMeasure.h"

#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/Reference.h"
#include "forms/ResultList.h"
#include "forms/SaveData.h"
#include "forms/StripChart.h"
#include "forms/TabControl.h"
#include "levels/Reference.h"
#include "forms/RunPass.h"
#include "registers/RegisterMap.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using forms::Form;

void frmMeasure::wire() {
    for (int i = 0; i < 3; ++i)
        forms::onClick(optRef[static_cast<size_t>(i)], [this, i] { return optRef_Click(i); });
    const std::pair<QComboBox*, void (frmMeasure::*)()> lists[] = {
        {cboSweepI, &frmMeasure::cboSweepI_Click},
        {cboMeasureVI, &frmMeasure::cboMeasureVI_Click},
        {cboDela, &frmMeasure::cboDela_Click},
        {cboMDelay, &frmMeasure::cboMDelay_Click},
        {cboFINREG, &frmMeasure::cboFINREG_Click},
        {cboCurrent1, &frmMeasure::cboCurrent1_Click},
        {cboCurrent2, &frmMeasure::cboCurrent2_Click},
    };
    for (const auto& [list, handler] : lists)
        forms::onClick(list, [this, h = handler] { (this->*h)(); });
    forms::onClick(Check1, [this] { Check1_Click(); });
    SSTab1->onClick([this](int previous) { SSTab1_Click(previous); });

    const std::pair<QPushButton*, void (frmMeasure::*)()> buttons[] = {
        {cmdStop, &frmMeasure::cmdStop_Click},
        {cmdStopit, &frmMeasure::cmdStop_Click},
        {cmdCOPYTOCLIP, &frmMeasure::cmdCOPYTOCLIP_Click},
        {cmdCopy, &frmMeasure::cmdCopy_Click},
        {cmdSave, &frmMeasure::cmdSave_Click},
        {cmdSaveit, &frmMeasure::cmdSaveit_Click},
        {cmdWRITESET, &frmMeasure::cmdWRITESET_Click},
        {cmdRangeChange, &frmMeasure::cmdRangeChange_Click},
        {cmdEXIT, &frmMeasure::cmdEXIT_Click},
    };
    for (const auto& [button, handler] : buttons)
        forms::onClick(button, [this, h = handler] { (this->*h)(); });
    // The runs' outcome is shown by the click, and told to whoever records it.
    forms::onClick(cmdPlot, [this] { return plotSweep(); });
    forms::onClick(cmdPlotit, [this] { return plotTime(); });
    const std::pair<QPushButton*, std::pair<QWidget*, bool>> help[] = {{Label16, {FrmHELP, true}},
                                                                       {Label30, {FrmHELP, false}},
                                                                       {Label29, {Frame9, true}},
                                                                       {Label17, {Frame9, false}}};
    for (const auto& [label, what] : help)
        connect(label, &QPushButton::clicked, this, [w = what] { w.first->setVisible(w.second); });

    const bool& busy = session.general.entryBusy;
    const std::pair<QLineEdit*, forms::Outcome (frmMeasure::*)()> entries[] = {
        {txtVREF, &frmMeasure::txtVREF_Enter},       {txtstartV, &frmMeasure::txtstartV_Enter},
        {txtendV, &frmMeasure::txtendV_Enter},       {txtstep, &frmMeasure::txtstep_Enter},
        {txtForceV, &frmMeasure::txtForceV_Enter},   {txtFINSET1, &frmMeasure::txtFINSET1_Enter},
        {txtFINSET2, &frmMeasure::txtFINSET2_Enter}, {txtdin, &frmMeasure::txtdin_Enter},
    };
    for (const auto& [box, handler] : entries)
        forms::onEntry(box, busy, [this, h = handler] { return (this->*h)(); });

    Strip1->onCursorMoved([this](double x) { Strip1_CursorMoved(x); });
    Strip2->onCursorMoved([this](double x) { Strip2_CursorMoved(x); });
    run_->block({cmdPlot, cmdPlotit, cmdWRITESET, cmdRangeChange, cmdSave, cmdSaveit});
    cmdStop->setEnabled(false);
    cmdStopit->setEnabled(false);

    // "Close" waits for a run to end, so it goes through this panel's own handler.
    if (auto* close = findChild<QAction*>(QStringLiteral("mnuClose"))) {
        disconnect(close, &QAction::triggered, this, nullptr);
        connect(close, &QAction::triggered, this, [this] { mnuClose_Click(); });
    }
}

void frmMeasure::Form_Load() {
    for (forms::StripChart* chart : {Strip1, Strip2}) {
        chart->setCursorMode(0);
        chart->setHandleStyle(0);
    }
    SSTab1->setCurrentIndex(0);
    qz::General& g = session.general;
    g.sweepPMUreg = g.PMUreg;
    forms::show(optRef_Click(1));
    forms::setListIndex(cboMeasureVI, 0);
}

bool frmMeasure::running() const {
    return run_->running();
}

forms::Outcome frmMeasure::optRef_Click(int index) {
    qz::General& g = session.general;
    if (g.entryBusy) return {};
    forms::Outcome o;
    const std::optional<float> vref = forms::pickReference(index, txtVREF, optRef, refIndex_, o);
    if (!vref) return o;
    g.VREF = *vref;
    // Chosen here too when code runs the click, before the twins hear of it.
    optRef[static_cast<size_t>(index)]->setChecked(true);
    forms::followReference(nav, index, txtVREF, {Form::frmMain, Form::frmMAINQZ7740});
    return o;
}

forms::Outcome frmMeasure::txtVREF_Enter() {
    // Only a check: VREF follows at the next click of "Other" or the next run.
    return forms::take(txtVREF, qz::checkReference(txtVREF->text().toStdString()));
}

void frmMeasure::cboSweepI_Click() {
    qz::cboSweepIClick(session.general, cboSweepI->currentIndex());
    Text1->setText(forms::hexText(session.general.sweepPMUreg, 6));
}

void frmMeasure::cboMeasureVI_Click() {
    qz::cboMeasureVIClick(session.general, cboMeasureVI->currentIndex());
    Text1->setText(forms::hexText(session.general.sweepPMUreg, 6));
}

void frmMeasure::cboDela_Click() {
    qz::cboDelaClick(session.general, cboDela->currentIndex());
}

void frmMeasure::cboMDelay_Click() {
    qz::cboMDelayClick(session.general, cboDela->currentIndex(), cboMDelay->currentIndex());
}

void frmMeasure::Check1_Click() {
    // "No Handles" is read and has no effect on this panel: the handles show after a sweep,
    // whatever the box says.
    (void)Check1->isChecked();
}

void frmMeasure::SSTab1_Click(int) {
    // The lists beside the tabs serve the two runs; the stimuli have their own.
    const bool runs = SSTab1->currentIndex() != 2;
    for (QWidget* w : std::initializer_list<QWidget*>{frmVref, Frame1, Frame2, Frame3,
                                                      cmdCOPYTOCLIP, cmdSave, Check1, Frame16})
        w->setVisible(runs);
}

void frmMeasure::cmdEXIT_Click() {
    forms::endProgram();
}

void frmMeasure::mnuClose_Click() {
    if (run_->running())
        run_->requestClose();
    else
        nav.unload(form);
}

void frmMeasure::closeEvent(QCloseEvent* event) {
    // The frame's close is "Close": the panel goes, and its next showing loads it afresh;
    // during a run it waits for the run's end.
    event->ignore();
    mnuClose_Click();
}

forms::Outcome frmMeasure::refuse(qz::Box box, const std::string& text) {
    QLineEdit* field = nullptr;
    switch (box) {
    case qz::Box::txtstartV: field = txtstartV; break;
    case qz::Box::txtendV: field = txtendV; break;
    case qz::Box::txtstep: field = txtstep; break;
    case qz::Box::txtVREF: field = txtVREF; break;
    case qz::Box::txtForceV: field = txtForceV; break;
    }
    return forms::refused(field, text);
}

forms::Outcome frmMeasure::voltageEntry(QLineEdit* box) {
    // The OFFSET code comes from the chip, not from any panel's box.
    const int32_t offset =
        session.readWord(qz::readCommandOf(qz::reg::kOffset)) - qz::writeWord(qz::reg::kOffset, 0);
    return forms::take(box, qz::checkForceEntry(box->text().toStdString(), session.general.VREF, offset));
}

forms::Outcome frmMeasure::txtstartV_Enter() {
    return voltageEntry(txtstartV);
}
forms::Outcome frmMeasure::txtendV_Enter() {
    return voltageEntry(txtendV);
}
forms::Outcome frmMeasure::txtForceV_Enter() {
    return voltageEntry(txtForceV);
}
forms::Outcome frmMeasure::txtstep_Enter() {
    return forms::take(txtstep, qz::checkStepEntry(txtstep->text().toStdString()));
}

forms::Outcome frmMeasure::txtFINSET1_Enter() {
    return forms::take(txtFINSET1, qz::checkCodeEntry(txtFINSET1->text().toStdString()));
}
forms::Outcome frmMeasure::txtFINSET2_Enter() {
    return forms::take(txtFINSET2, qz::checkCodeEntry(txtFINSET2->text().toStdString()));
}
forms::Outcome frmMeasure::txtdin_Enter() {
    return forms::take(txtdin, qz::checkCodeEntry(txtdin->text().toStdString()));
}

void frmMeasure::cmdCOPYTOCLIP_Click() {
    List1->copyToClipboard();
}
void frmMeasure::cmdCopy_Click() {
    List2->copyToClipboard();
}
void frmMeasure::cmdSave_Click() {
    forms::saveData(this, QStringLiteral("sweep.txt"), sweepHeader_, *List1);
}
void frmMeasure::cmdSaveit_Click() {
    forms::saveData(this, QStringLiteral("time run.txt"), timeHeader_, *List2);
}

void frmMeasure::cboFINREG_Click() {
    qz::cboFINREGClick(session.general, words, cboFINREG->currentIndex());
}

void frmMeasure::cboCurrent1_Click() {
    qz::cboCurrentClick(session.general, words.finWord1, cboCurrent1->currentIndex());
    Text1->setText(forms::hexText(words.finWord1, 6));
}

void frmMeasure::cboCurrent2_Click() {
    qz::cboCurrentClick(session.general, words.finWord2, cboCurrent2->currentIndex());
    Text1->setText(forms::hexText(words.finWord2, 6));
}

namespace {
QLineEdit* codeBox(frmMeasure& f, qz::CodeBox box) {
    switch (box) {
    case qz::CodeBox::txtFINSET1: return f.txtFINSET1;
    case qz::CodeBox::txtFINSET2: return f.txtFINSET2;
    case qz::CodeBox::txtdin: break;
    }
    return f.txtdin;
}
} // namespace

void frmMeasure::cmdWRITESET_Click() {
    if (run_->running()) return;
    const qz::WriteSetResult r =
        qz::cmdWRITESET(session, *clock_, words, cboFINREG->currentIndex(),
                        txtFINSET1->text().toStdString(), txtFINSET2->text().toStdString());
    if (r.refusal) return forms::refuseEntry(codeBox(*this, r.refusal->box), r.refusal->text);
    Text2->setText(forms::qtext(r.Text2));
    Text3->setText(forms::qtext(r.Text3));
}

void frmMeasure::cmdRangeChange_Click() {
    if (run_->running()) return;
    const qz::RangeChangeResult r =
        qz::cmdRangeChange(session, *clock_, words, cboCurrent1->currentIndex(),
                           cboCurrent2->currentIndex(), txtdin->text().toStdString());
    if (r.refusal) return forms::refuseEntry(codeBox(*this, r.refusal->box), r.refusal->text);
    Text1->setText(forms::qtext(r.Text1));
    txtfincode->setText(forms::qtext(r.txtfincode));
    txtrange1->setText(forms::qtext(r.txtrange1));
    txtrange2->setText(forms::qtext(r.txtrange2));
}
