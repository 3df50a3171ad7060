// The runs as the operator starts them, through the panels on the virtual board (offscreen):
// the sweep over every code into its list, arrays, fields and chart; the drawing of a
// strip chart of 65,536 points; the temperature run of 1001 readings with "No Delay".

#include "BenchSupport.h"

#include "board/VirtualBoard.h"
#include "console/frmMAINQZ7740.h"
#include "diagnostics/frmDIAG.h"
#include "forms/MessageBox.h"
#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "measure/frmMeasure.h"
#include "registers/Session.h"
#include "shell/Panels.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPixmap>

#include <cmath>
#include <vector>

namespace {

// The program as it starts on the virtual board, with the panel it is asked for.
struct Program {
    std::unique_ptr<qz::Session> session =
        std::make_unique<qz::Session>(std::make_unique<qz::VirtualBoard>());
    forms::Navigator nav;
    std::unique_ptr<frmMAINQZ7740> console;

    Program() {
        forms::setMessageSink([](const std::string&, const std::string&, qz::MsgIcon) {});
        qz::registerPanels(nav, *session);
        console = std::make_unique<frmMAINQZ7740>(*session, nav);
        nav.adopt(forms::Form::frmMAINQZ7740, console.get());
        console->Form_Load();
    }
    ~Program() {
        for (forms::Form form : forms::kAllForms)
            if (form != forms::Form::frmMAINQZ7740) delete nav.loaded(form);
        forms::setMessageSink({});
    }
    template <typename Panel> Panel* show(forms::Form form) {
        auto* p = static_cast<Panel*>(nav.show(form));
        QApplication::processEvents();
        return p;
    }
};

// Every code from 0 to 65535 at VREF 5 V, "Measure Voltage", with the delays at zero: the
// panel's own cost, the list's, the arrays' and the chart's, over the board's.
void PanelSweepEveryCode(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Program program;
        auto* p = program.show<frmMeasure>(forms::Form::frmMeasure);
        p->optRef_Click(0);
        p->txtstartV->setText(QStringLiteral("-12.8125"));
        p->txtendV->setText(QStringLiteral("12.8121"));
        p->txtstep->setText(QStringLiteral("0.4"));
        qz::General& g = program.session->general;
        g.sampleDelay = g.tempDelay = g.cycleDelay = 0.0f;
        state.ResumeTiming();
        p->cmdPlot_Click();
        QApplication::processEvents();
        state.PauseTiming();
        if (p->List1->count() != 2 + 2 * 65536 || p->Strip1->count() != 65536)
            state.SkipWithError("the sweep did not take every code");
        state.counters["peak_MB"] = qzbench::peakMegabytes();
        state.ResumeTiming();
    }
}
BENCHMARK(PanelSweepEveryCode)->Unit(benchmark::kMillisecond)->Iterations(3);

// 65,536 points handed to a chart of the panel's size and drawn into a picture.
void ChartDraw65536(benchmark::State& state) {
    std::vector<double> values(65536);
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = std::sin(i * 0.001) + 0.01 * static_cast<double>(i % 7);
    forms::StripChart chart(QStringLiteral("Strip1"));
    chart.resize(840, 560);
    chart.show();
    QApplication::processEvents();
    for (auto _ : state) {
        chart.clearChart();
        chart.setXAxisMax(65536);
        chart.addArray(values);
        const QPixmap picture = chart.grab();
        benchmark::DoNotOptimize(picture.cacheKey());
    }
}
BENCHMARK(ChartDraw65536)->Unit(benchmark::kMillisecond)->Iterations(10);

// "TAKE TEMP READINGS" with "No Delay": 1001 readings into the chart and the list.
void PanelTempRun(benchmark::State& state) {
    Program program;
    auto* d = program.show<frmDIAG>(forms::Form::frmDIAG);
    d->cboDelay->setCurrentIndex(1);
    for (auto _ : state) {
        d->cmdPLOTTEMP_Click();
        if (d->List2->count() != 1002) state.SkipWithError("the run did not take 1001 readings");
    }
}
BENCHMARK(PanelTempRun)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
