// The two runs of the measurement panel, their charts and the chart cursors. A run is
// plain code (runs/); the panel gathers its fields, starts it, serves the events once per
// point and shows what it gives.

#include "measure/frmMeasure.h"

#include "forms/Build.h"
#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "levels/NumberText.h"
#include "forms/RunPass.h"
#include "runs/ChartRules.h"
#include "runs/SavedRun.h"
#include "runs/Sweep.h"
#include "runs/TimeRun.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <ctime>

namespace {
constexpr int kBlue = 0xFF0000; // blue-green-red
constexpr const char* kValueFormat = "0.000000000";
constexpr const char* kTimeFormat = "0.0000";

void letEventsRun() {
    QCoreApplication::processEvents();
}
} // namespace

qz::ReferenceChoice frmMeasure::referenceChoice() const {
    qz::ReferenceChoice c;
    for (int i = 0; i < 3; ++i)
        if (optRef[static_cast<size_t>(i)]->isChecked()) c.option = i;
    c.otherText = txtVREF->text().toStdString();
    return c;
}

qz::RunStamp frmMeasure::stamp() const {
    return {std::time(nullptr), session.usb.linkState()};
}

qz::MeasureChoices frmMeasure::choices() const {
    return {cboSweepI->currentText().toStdString(), cboDela->currentText().toStdString(),
            cboMDelay->currentText().toStdString()};
}

void frmMeasure::settings(qz::RunSettings& r, int32_t offsetCode, float Rsense) const {
    const qz::General& g = session.general;
    r.reference = referenceChoice();
    r.prepared = {offsetCode, measGain_};
    r.rsense = Rsense;
    r.measMode = g.measMode;
    r.sampleDelay = g.sampleDelay;
    r.tempDelay = g.tempDelay;
    r.cycleDelay = g.cycleDelay;
}

qz::RunContext frmMeasure::context(forms::ResultList* list) {
    return {session, *clock_, [this](const qz::RunProgress& p) { return run_->pass(p); },
            [list](std::string line) { list->addLine(std::move(line)); }};
}

void frmMeasure::showProgress(const qz::RunProgress& p, bool sweep) {
    lblREADSPI->setText(forms::hexText(p.adcCode, 1));
    // The sweep shows each word it composes; the time run leaves Text1 to the DPS1 word.
    if (sweep) Text1->setText(forms::hexText(p.word, 1));
    List1->flush();
    List2->flush();
}

void frmMeasure::cmdStop_Click() {
    run_->requestStop();
}

void frmMeasure::recordRun(qz::RunKind kind, int points, const std::vector<double>& forced,
                           const std::vector<double>& readings, bool amps) {
    const size_t n = std::min({static_cast<size_t>(std::max(points, 0)), forced.size(), readings.size()});
    using Diff = std::vector<double>::difference_type;
    session.runs.record({kind, std::vector<double>(forced.begin(), forced.begin() + static_cast<Diff>(n)),
                         std::vector<double>(readings.begin(), readings.begin() + static_cast<Diff>(n)), amps});
}

void frmMeasure::finishRun() {
    // A close asked for during the run happens now.
    nav.unload(form);
}

qz::Prepared frmMeasure::plotHead(bool sweep, forms::ResultList* list,
                                  std::initializer_list<QLineEdit*> cleared) {
    qz::General& g = session.general;
    const qz::Prepared prepared = qz::PrepareMeasure(session);
    measGain_ = prepared.measGain;
    // The two runs take their lists in the other order.
    if (sweep) {
        cboSweepI_Click();
        cboMeasureVI_Click();
    } else {
        cboMeasureVI_Click();
        cboSweepI_Click();
    }
    // The chip takes the range and the MEASOUT source before the first point.
    session.SPIout(g.sweepPMUreg);
    g.IRangeIndex = 0;
    list->clear();
    for (QLineEdit* box : cleared)
        box->clear();
    cboSweepI_Click();
    return prepared;
}

void frmMeasure::cmdPlot_Click() { forms::show(plotSweep()); }

forms::Outcome frmMeasure::plotSweep() {
    if (run_->running()) return {};
    forms::RunScope scope(*run_, [this] { finishRun(); });
    run_->begin(cmdStop, 0, *clock_, {});
    const qz::Prepared prepared = plotHead(true, List1, {Text2, Text3, txtmin, txtMax});
    const float Rsense = qz::senseRange(session.general.IRangeIndex).rsense;
    // A refused sweep ends in SweepV; the handler's tail runs all the same.
    const forms::Outcome o = SweepV(Rsense, prepared.offsetCode);
    letEventsRun();
    for (forms::StripChart* chart : {Strip1, Strip2}) {
        chart->setCursorMode(2);
        chart->setHandleStyle(3);
    }
    Check1_Click();
    return o;
}

forms::Outcome frmMeasure::SweepV(float Rsense, int32_t offsetCode) {
    qz::General& g = session.general;
    g.IRangeIndex = 0;
    g.measMode = 0;
    cboMeasureVI_Click();
    List1->clear();
    sweepHeader_.clear();
    qz::SweepRequest r;
    r.start = txtstartV->text().toStdString();
    r.end = txtendV->text().toStdString();
    r.step = txtstep->text().toStdString();
    settings(r, offsetCode, Rsense);
    qz::SweepPlan plan;
    if (const auto refusal = qz::planSweep(g, r, plan)) return refuse(refusal->box, refusal->text);
    txtdifff->clear();
    txtstart->setText(forms::hexText(plan.startCode, 1));
    txtend->setText(forms::hexText(plan.endCode, 1));
    txtstepcode->setText(forms::hexText(plan.stepCode, 1));
    sweepHeader_ =
        qz::headerLines("QZ7740 voltage sweep", qz::sweepSettings(stamp(), choices(), r, plan));

    run_->begin(cmdStop, plan.n + 1, *clock_, [this](const qz::RunProgress& p) { showProgress(p, true); });
    const qz::SweepOutcome out = qz::runSweep(context(List1), plan, arrays);
    recordRun(qz::RunKind::Sweep, out.points, arrays.sweepVolts,
              plan.measMode == 1 ? arrays.sweepMeasAmps : arrays.sweepMeasVolts, plan.measMode == 1);
    List1->flush();
    lblREADSPI->setText(forms::hexText(out.adcCode, 1));
    Text1->setText(forms::hexText(out.word, 1));
    txtmin->setText(forms::qtext(qz::defaultText(out.range.min)));
    txtMax->setText(forms::qtext(qz::defaultText(out.range.max)));
    txtdifff->setText(forms::qtext(qz::defaultText(out.range.max - out.range.min)));
    ShowChartAxes(qz::sweepChartBounds(out.range), out.points,
                  plan.measMode == 1 ? arrays.sweepMeasAmps : arrays.sweepMeasVolts);
    letEventsRun();
    // A stopped sweep has no last reading to draw the line to.
    if (!out.stopped)
        qz::FitDeviation(arrays, plan.startCode, plan.endCode,
                         [this](std::string line) { List1->addLine(std::move(line)); });
    List1->flush();
    Strip1->setTraceColor(kBlue);
    return {};
}

void frmMeasure::ShowChartAxes(const qz::ChartBounds& b, int points, const std::vector<double>& d) {
    Strip1->clearChart();
    Strip1->setPointCount(points);
    Strip1->setXAxisMin(1);
    Strip1->setXAxisMax(points);
    Strip1->setYScaleTop(b.scaleTop);
    Strip1->setYScaleBottom(b.scaleBottom);
    Strip1->setYAxisMax(b.axisMax);
    Strip1->setYAxisMin(b.axisMin);
    Strip1->setTraceColor(kBlue);
    Strip1->addArray(d);
}

void frmMeasure::cmdPlotit_Click() { forms::show(plotTime()); }

forms::Outcome frmMeasure::plotTime() {
    if (run_->running()) return {};
    forms::RunScope scope(*run_, [this] { finishRun(); });
    run_->begin(cmdStopit, 0, *clock_, {});
    const qz::Prepared prepared = plotHead(false, List2, {txtX, txtY, txtmin1, txtmax1, txtdiff});
    const float Rsense = qz::senseRange(session.general.IRangeIndex).rsense;
    const forms::Outcome o = SweepandMeasure(Rsense, prepared.offsetCode);
    letEventsRun();
    // The handles are the sweep's to show: a time run leaves them as they are.
    Strip2->setCursorMode(2);
    Check1_Click();
    return o;
}

forms::Outcome frmMeasure::SweepandMeasure(float Rsense, int32_t offsetCode) {
    qz::General& g = session.general;
    g.IRangeIndex = 0;
    List2->clear();
    timeHeader_.clear();
    qz::TimeRequest r;
    r.force = txtForceV->text().toStdString();
    settings(r, offsetCode, Rsense);
    qz::TimePlan plan;
    if (const auto refusal = qz::planTimeRun(g, r, plan)) return refuse(refusal->box, refusal->text);
    txtForceC->setText(forms::hexText(plan.code, 1));
    timeHeader_ = qz::headerLines("QZ7740 measurement versus time",
                                  qz::timeSettings(stamp(), choices(), r, plan));

    run_->begin(cmdStopit, qz::kTimeSamples, *clock_, [this](const qz::RunProgress& p) { showProgress(p, false); });
    const qz::TimeOutcome out = qz::runTime(context(List2), plan, arrays);
    recordRun(qz::RunKind::Time, out.points, arrays.sampleTimes,
              plan.measMode == 1 ? arrays.timeMeasAmps : arrays.sweepMeasVolts, plan.measMode == 1);
    List2->flush();
    lblREADSPI->setText(forms::hexText(out.adcCode, 1));
    txtmin1->setText(forms::qtext(qz::defaultText(out.range.min)));
    txtmax1->setText(forms::qtext(qz::defaultText(out.range.max)));
    txtdiff->setText(forms::qtext(qz::defaultText(out.range.max - out.range.min)));
    ShowTimeChart(qz::timeChartBounds(out.range),
                  plan.measMode == 1 ? arrays.timeMeasAmps : arrays.sweepMeasVolts);
    return {};
}

void frmMeasure::ShowTimeChart(const qz::ChartBounds& b, const std::vector<double>& d) {
    Strip2->clearChart();
    Strip2->setPointCount(100);
    Strip2->setXAxisMin(0);
    Strip2->setXAxisMax(100);
    Strip2->setYScaleTop(b.scaleTop);
    Strip2->setYScaleBottom(b.scaleBottom);
    Strip2->setYAxisMax(b.axisMax);
    Strip2->setYAxisMin(b.axisMin);
    Strip2->addArray(d);
    letEventsRun();
}

void frmMeasure::Strip1_CursorMoved(double x) {
    const std::vector<double>& values =
        session.general.measMode == 1 ? arrays.sweepMeasAmps : arrays.sweepMeasVolts;
    const auto k = qz::cursorIndex(x, std::min(values.size(), arrays.sweepCodes.size()));
    if (!k) return;
    Text2->setText(forms::qtext(qz::formatNumber(values[*k], kValueFormat)));
    Text3->setText(forms::hexText(static_cast<int32_t>(arrays.sweepCodes[*k]), 1));
}

void frmMeasure::Strip2_CursorMoved(double x) {
    const std::vector<double>& values =
        session.general.measMode == 1 ? arrays.timeMeasAmps : arrays.sweepMeasVolts;
    const auto k = qz::cursorIndex(x, std::min(values.size(), arrays.sampleTimes.size()));
    if (!k) return;
    txtY->setText(forms::qtext(qz::formatNumber(values[*k], kValueFormat)));
    txtX->setText(forms::qtext(qz::formatNumber(arrays.sampleTimes[*k], kTimeFormat)));
}
