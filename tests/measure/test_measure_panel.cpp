// The measurement panel at the start of the program, and its runs through its controls on
// a board whose readings the test chooses (the ADC gives half the FIN code), with a clock
// that moves only when waited on; last, the loop closed on the virtual board's model.

#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "forms/TabControl.h"
#include "runs/RunBoard.h"
#include "support/RunTools.h"
#include "measure/frmMeasure.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <cmath>

using forms::Form;
using qztest::Harness;
using qztest::pick;

namespace {

const std::vector<int> kHead = {0x012200, 0x8B0000, 0x810000, 0x028150}; // gain, OFFSET, SYS, DPS1

class Measure : public ::testing::Test {
  protected:
    void SetUp() override {
        board->code = [](int fin, int) { return fin / 2; };
        board->clock = &clock;
        console = h.startConsole<frmMAINQZ7740>();
        p = static_cast<frmMeasure*>(h.nav.show(Form::frmMeasure));
        ASSERT_NE(p, nullptr);
        p->useClock(clock);
        Harness::activate(p);
        h.trace.fresh();
    }
    std::vector<int> sent() { return qztest::wordsSent(h.trace.fresh()); }
    QString progress() { return p->findChild<QLabel*>(QStringLiteral("runProgressText"))->text(); }
    // Runs f in the first event pass of the run that click starts.
    void duringRun(QPushButton* plot, std::function<void()> f) {
        QTimer::singleShot(0, p, std::move(f));
        QTest::mouseClick(plot, Qt::LeftButton);
    }

    qztest::RunBoard* board = new qztest::RunBoard;
    Harness h{std::unique_ptr<qz::BridgeLibrary>(board)};
    qztest::ActingClock clock;
    std::unique_ptr<frmMAINQZ7740> console;
    frmMeasure* p = nullptr;
    qz::General& g = h.session->general;
};

} // namespace

TEST(MeasureStart, LoadedOnTheWayAndAllThreeReferencesEndAtFiveVolts) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    EXPECT_EQ(qztest::wordsSent(h.trace.lines()),
              (std::vector<int>{0x012200, 0x012200, 0x029950, 0x030000, 0x06AA80, 0x029950}));
    auto* p = static_cast<frmMeasure*>(h.nav.loaded(Form::frmMeasure));
    auto* m = static_cast<frmMain*>(h.nav.loaded(Form::frmMain));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(h.session->general.VREF, 5.0f);
    for (const auto* options : {&p->optRef, &m->optRef, &f->optRef})
        EXPECT_TRUE((*options)[0]->isChecked());
    EXPECT_EQ(p->Text1->text(), QStringLiteral("029950"));
    EXPECT_EQ(h.session->general.sweepPMUreg, 0x029950);
    EXPECT_EQ(p->cboMeasureVI->currentIndex(), 0);
    EXPECT_EQ(p->cboSweepI->currentText(), QStringLiteral("\u00B15uA"));
    EXPECT_EQ(p->cboDela->currentText(), QStringLiteral("No Delay"));
    EXPECT_EQ(p->SSTab1->currentIndex(), 0);
    EXPECT_EQ(p->Strip1->cursorMode(), 0);
    EXPECT_EQ(p->windowTitle(),
              QStringLiteral("QZ7740 Voltage Measurements & CV1640 [virtual board]"));
    EXPECT_TRUE(m->Command1->isEnabled()) << "the front panel's way here is open";
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Measure, ASweepSendsItsHeadThenOneWordAPointAndFillsItsFields) {
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    std::vector<int> words = kHead;
    for (int k = 0; k < 10; ++k)
        words.push_back(0x080000 | (19980 + 2558 * k));
    words.push_back(0x08B1F4);
    EXPECT_EQ(sent(), words);
    EXPECT_EQ(p->txtstart->text(), QStringLiteral("4E0C"));
    EXPECT_EQ(p->txtend->text(), QStringLiteral("B1F4"));
    EXPECT_EQ(p->txtstepcode->text(), QStringLiteral("9FE"));
    EXPECT_EQ(p->Text1->text(), QStringLiteral("8B1F4"));
    EXPECT_EQ(p->lblREADSPI->text(), QStringLiteral("58FA"));
    EXPECT_EQ(p->txtmin->text(), QStringLiteral("-9.001617"));
    EXPECT_EQ(p->txtMax->text(), QStringLiteral("-4.123383"));
    EXPECT_EQ(p->txtdifff->text(), QStringLiteral("4.878235"));
    EXPECT_EQ(p->List1->count(), 1 + 11 + 1 + 11);
    EXPECT_EQ(p->List1->lines()[12], "0.762176513671875") << "the first reading, then the table";
    EXPECT_EQ(p->Strip1->count(), 11);
    EXPECT_EQ(p->Strip1->pointAt(10), QPointF(11, -4.123382568359375));
    EXPECT_DOUBLE_EQ(p->Strip1->yScaleTop(), -4.5357208251953125) << "max x 1.1, below max";
    EXPECT_EQ(p->Strip1->traceColor(), 0xFF0000);
    for (forms::StripChart* chart : {p->Strip1, p->Strip2}) {
        EXPECT_EQ(chart->cursorMode(), 2);
        EXPECT_EQ(chart->handleStyle(), 3);
    }
    EXPECT_EQ(g.IRangeIndex, 0);
    qztest::clickBox(p->Check1);
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    EXPECT_EQ(p->Strip2->handleStyle(), 3) << "\"No Handles\" has no effect on this panel";
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Measure, AStepTypedWithoutEnterRunsAsItsTextSays) {
    p->txtstep->setText(QStringLiteral("2000"));
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    EXPECT_TRUE(h.boxes.empty());
    EXPECT_EQ(p->txtstepcode->text(), QStringLiteral("13FB")) << "round(65536 x 2 / 25.625)";
    EXPECT_EQ(p->List1->count(), 1 + 6 + 1 + 6);
}

TEST_F(Measure, EachRefusalOnItsFieldAndNothingSentAfterTheHead) {
    struct Case {
        QLineEdit* box;
        const char* text;
        QPushButton* plot;
        std::string message;
    };
    const std::string outside = "Number outside possible voltage range, please refer to transfer "
                                "function and offset dac setting "
                                "and review output voltage request. Min and Max for your "
                                "reference/offset DAC settings are-12.81 and 12.81";
    const Case cases[] = {
        {p->txtstartV, "x", p->cmdPlot, "Not a valid number. Please reenter it."},
        {p->txtstartV, "6", p->cmdPlot, "Start Voltage must be less than End Voltage."},
        {p->txtendV, "13", p->cmdPlot, outside},
        {p->txtstep, "0.1", p->cmdPlot,
         "Voltage step too small: it gives no DAC code. Please reenter a voltage step of at "
         "least one code, 0.391mV at this reference."},
        {p->txtstartV, "5", p->cmdPlot, "Start Voltage must be less than End Voltage."},
        {p->txtForceV, "", p->cmdPlotit, "Not a valid number. Please reenter it."},
        {p->txtForceV, "-13", p->cmdPlotit, outside},
        {p->txtVREF, "7", p->cmdPlot,
         "Number outside Reference range. Please reenter reference voltage between 2V and +5V."},
    };
    for (const Case& c : cases) {
        const QString kept = c.box->text();
        if (c.box == p->txtVREF) qztest::clickBox(p->optRef[2]);
        h.trace.fresh();
        c.box->setText(QString::fromLatin1(c.text));
        QTest::mouseClick(c.plot, Qt::LeftButton);
        EXPECT_EQ(sent(), kHead) << c.message;
        h.expectRefusal(c.box, c.message);
        EXPECT_EQ(p->List1->count() + p->List2->count(), 0);
        // The PLOT handler's tail runs after a refusal too.
        EXPECT_EQ(p->Strip2->cursorMode(), 2) << c.message;
        if (c.plot == p->cmdPlot) {
            for (forms::StripChart* chart : {p->Strip1, p->Strip2})
                EXPECT_EQ(chart->handleStyle(), 3) << c.message;
        }
        c.box->setText(kept);
    }
    EXPECT_EQ(board->conversions, 0);
}

TEST_F(Measure, EntriesCheckOnEnterOnly) {
    Harness::enter(p->txtstartV, QStringLiteral("12.6"));
    EXPECT_EQ(sent(), std::vector<int>{0x8B0000}) << "the OFFSET comes from the chip";
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_NE(h.boxes[0].text.find("are-12.81 and 12.81"), std::string::npos);
    h.boxes.clear();
    Harness::enter(p->txtstep, QStringLiteral("1001"));
    h.expectRefusal(p->txtstep,
                    "Number outside range. Please reenter voltage step between 0 and 1000mV.");
    Harness::enter(p->txtVREF, QStringLiteral("1.4"));
    h.expectRefusal(
        p->txtVREF,
        "Number outside Reference range. Please reenter reference voltage between 2V and +5V.");
    Harness::enter(p->txtVREF, QStringLiteral("5.4"));
    Harness::enter(p->txtdin, QStringLiteral("abc"));
    EXPECT_EQ(p->txtdin->text(), QStringLiteral("0ABC"));
    EXPECT_EQ(g.VREF, 5.0f) << "the Enter only checks";
    Harness::enter(p->txtFINSET1, QStringLiteral("10000"));
    h.expectRefusal(p->txtFINSET1, "Number too large. Please reenter code between 0 and xFFFF.");
}

TEST_F(Measure, ATimeRunOfHalfSecondsTakesNoRealTimeAndReadsByItsCursor) {
    pick(p->cboDela, 1);
    pick(p->cboMDelay, 3);
    pick(p->cboMeasureVI, 1);
    pick(p->cboSweepI, 3);
    sent();
    QTest::mouseClick(p->cmdPlotit, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x012200, 0x8B0000, 0x810000, 0x029930, 0x08B1F4}));
    EXPECT_EQ(p->txtForceC->text(), QStringLiteral("B1F4"));
    const std::vector<std::string>& lines = p->List2->lines();
    ASSERT_EQ(lines.size(), 105u);
    EXPECT_EQ(lines[0], "temp\tADC\tADC Measured Voltage\tsample time\tMeasure Current");
    EXPECT_EQ(lines[3], "2\t22778\t1.73782348632812\t0.23\t-0.00103084564208984");
    EXPECT_NEAR(clock.seconds(), 101 * 0.1, 1e-5);
    EXPECT_EQ(p->txtdiff->text(), QStringLiteral("0"));
    EXPECT_LT(p->Strip2->yScaleBottom(), p->Strip2->yScaleTop()) << "equal readings, bounds apart";
    EXPECT_EQ(p->Strip2->cursorMode(), 2);
    EXPECT_EQ(p->Strip1->cursorMode(), 0) << "a time run leaves the sweep's chart";
    for (forms::StripChart* chart : {p->Strip1, p->Strip2})
        EXPECT_EQ(chart->handleStyle(), 0) << "the handles come with a sweep only";
    EXPECT_EQ(p->Text1->text(), QStringLiteral("029930")) << "the DPS1 word, not the FIN word";

    p->Strip2->moveCursor(3);
    EXPECT_EQ(p->txtX->text(), QStringLiteral("0.2300"));
    EXPECT_EQ(p->txtY->text(), QStringLiteral("-0.001030846"));
    p->Strip2->moveCursor(0.2);
    EXPECT_EQ(p->txtX->text(), QStringLiteral("0.2300")) << "no point there: the fields stay";

    QApplication::clipboard()->setText(QStringLiteral("stale"));
    QTest::mouseClick(p->cmdCOPYTOCLIP, Qt::LeftButton);
    EXPECT_EQ(QApplication::clipboard()->text(), QString()) << "an empty list";
    QTest::mouseClick(p->cmdCopy, Qt::LeftButton);
    const QString text = QApplication::clipboard()->text();
    EXPECT_EQ(text.count(QStringLiteral("\r\n")), 105);
    EXPECT_TRUE(text.startsWith(QStringLiteral("temp\tADC\t")));
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\nmincode\tmaxcode\r\n1.737823\t1.737823\r\n")));
}

TEST_F(Measure, TheSweepCursorReadsTheCodeAndValueOfItsPoint) {
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    p->Strip1->moveCursor(1);
    EXPECT_EQ(p->Text3->text(), QStringLiteral("4E0C"));
    EXPECT_EQ(p->Text2->text(), QStringLiteral("-9.001617432"));
    p->Strip1->moveCursor(11);
    EXPECT_EQ(p->Text3->text(), QStringLiteral("B1F4"));
    for (double outside : {11.6, 0.4})
        p->Strip1->moveCursor(outside);
    EXPECT_EQ(p->Text3->text(), QStringLiteral("B1F4"));
    QApplication::processEvents();
    QTest::mouseClick(p->Strip1->viewport(), Qt::LeftButton, {}, p->Strip1->viewPointOf(6, -6));
    EXPECT_EQ(p->Text3->text(), QStringLiteral("8002")) << "a click at point 6";
}

TEST_F(Measure, RunsNeverNestAndExitEndsAtOnce) {
    bool passed = false;
    duringRun(p->cmdPlot, [&] {
        passed = true;
        EXPECT_FALSE(p->cmdPlot->isEnabled());
        EXPECT_FALSE(p->cmdPlotit->isEnabled());
        EXPECT_FALSE(p->cmdWRITESET->isEnabled());
        EXPECT_TRUE(p->cmdStop->isEnabled());
        p->cmdPlot_Click();
        p->cmdPlotit_Click();
        pick(p->cboMeasureVI, 1);
        QTest::mouseClick(p->cmdEXIT, Qt::LeftButton);
    });
    EXPECT_TRUE(passed);
    EXPECT_EQ(h.ends, 1);
    EXPECT_EQ(board->conversions, 81) << "one sweep, in the mode it started with";
    EXPECT_EQ(p->List1->count(), 24);
    EXPECT_EQ(p->List2->count(), 0);
    EXPECT_EQ(g.measMode, 1) << "the pick counts from the next run";
    EXPECT_TRUE(p->cmdPlot->isEnabled());
    EXPECT_FALSE(p->cmdStop->isEnabled());

    duringRun(p->cmdPlot, [&] { QTest::mouseClick(p->cmdStop, Qt::LeftButton); });
    EXPECT_EQ(p->List1->count(), 2) << "the header and the point in progress; no deviation";
    EXPECT_EQ(p->Strip1->count(), 1);
}

TEST_F(Measure, ClosingDuringARunWaitsForItsEnd) {
    QPointer<frmMeasure> panel = p;
    duringRun(p->cmdPlotit, [&] {
        p->close();
        EXPECT_TRUE(p->isVisible()) << "the window's frame waits too";
        p->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
        EXPECT_EQ(h.nav.loaded(Form::frmMeasure), p);
    });
    EXPECT_EQ(p->List2->count(), 105) << "the run went on to its end";
    EXPECT_EQ(h.nav.loaded(Form::frmMeasure), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(panel.isNull());

    // Without a run the frame's close unloads at once, and the next showing loads afresh.
    p = static_cast<frmMeasure*>(h.nav.show(Form::frmMeasure));
    p->Strip1->setCursorMode(2);
    panel = p;
    EXPECT_FALSE(p->close());
    EXPECT_EQ(h.nav.loaded(Form::frmMeasure), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(panel.isNull());
    p = static_cast<frmMeasure*>(h.nav.show(Form::frmMeasure));
    EXPECT_EQ(p->Strip1->cursorMode(), 0) << "loaded afresh";
}

TEST_F(Measure, ABoardLostInMidRunStopsItWithOneMessageAndItsPointsKept) {
    // The board is lost in the wait after the second point: the third point's pass ends it.
    pick(p->cboDela, 0);
    clock.at(2, [this] { board->link = qz::LinkState::Lost; });
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    EXPECT_EQ(p->arrays.sweepCodes, (std::vector<double>{19980, 22538, 25096}));
    EXPECT_EQ(p->List1->count(), 4) << "the header and three points";
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "QZ7740");
    EXPECT_EQ(h.boxes[0].text,
              "The evaluation board was lost during the run. The run stopped; the 3 points it "
              "took are kept.");
    EXPECT_FALSE(p->running());
}

TEST_F(Measure, StopEndsEachRunWithItsPointsSoFarInListArraysFieldsAndChart) {
    // The sweep: STOP in the wait after the second point; the third is taken, then the end.
    pick(p->cboDela, 0); // "No Delay": one wait a point, after its event pass
    clock.at(2, [this] { QTest::mouseClick(p->cmdStop, Qt::LeftButton); });
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    ASSERT_EQ(p->List1->count(), 4) << "the header and three points; no deviation table";
    EXPECT_EQ(p->List1->lines()[3].substr(0, 15), "2\t549384\t25096\t");
    EXPECT_EQ(p->arrays.sweepMeasVolts,
              (std::vector<double>{-9.001617431640625, -8.5137176513671875, -8.02581787109375}));
    EXPECT_EQ(p->arrays.sweepCodes, (std::vector<double>{19980, 22538, 25096}));
    EXPECT_EQ(p->txtmin->text(), QStringLiteral("-9.001617"));
    EXPECT_EQ(p->txtMax->text(), QStringLiteral("-8.025818"));
    EXPECT_EQ(p->txtdifff->text(), QStringLiteral("0.9757996"));
    EXPECT_EQ(p->Strip1->count(), 3);
    EXPECT_EQ(p->Strip1->pointAt(2), QPointF(3, -8.02581787109375));
    EXPECT_FALSE(p->findChild<QLabel*>(QStringLiteral("runProgressText"))->isVisible());

    // The time run, a sample every half second: its progress after ten, then STOP.
    pick(p->cboDela, 5);
    pick(p->cboMDelay, 0);
    board->code = [](int fin, int k) { return fin / 2 + k % 2; };
    board->conversions = 0;
    clock.at(10, [this] {
        EXPECT_EQ(progress(), QStringLiteral("point 10 of 101, 0:04 elapsed, 0:41 left"));
        QTest::mouseClick(p->cmdStopit, Qt::LeftButton);
    });
    QTest::mouseClick(p->cmdPlotit, Qt::LeftButton);
    const std::vector<std::string>& lines = p->List2->lines();
    ASSERT_EQ(lines.size(), 1u + 11u + 3u);
    EXPECT_EQ(lines[11].substr(0, 9), "10\t22778\t");
    EXPECT_EQ(lines[12], "-4.123383\t-4.123001") << "the range of the eleven samples";
    EXPECT_EQ(lines[13], "mincode\tmaxcode");
    EXPECT_EQ(p->arrays.sampleTimes.size(), 11u);
    EXPECT_EQ(p->arrays.sampleTimes.back(), 5.0);
    EXPECT_EQ(p->txtmin1->text(), QStringLiteral("-4.123383"));
    EXPECT_EQ(p->txtmax1->text(), QStringLiteral("-4.123001"));
    EXPECT_EQ(p->txtdiff->text(), QStringLiteral("0.0003814697"));
    EXPECT_EQ(p->Strip2->count(), 11);
    EXPECT_EQ(p->Strip2->pointAt(1), QPointF(2, -4.1230010986328125));
}

TEST_F(Measure, SaveDataWritesTheRunsSettingsThenTheClipboardTextAndAFailureLosesNothing) {
    qztest::SaveTarget target;
    pick(p->cboDela, 1);
    pick(p->cboMDelay, 3);
    QTest::mouseClick(p->cmdPlotit, Qt::LeftButton);
    QTest::mouseClick(p->cmdCopy, Qt::LeftButton);
    target.chosen = target.path("time run.txt");
    QTest::mouseClick(p->cmdSaveit, Qt::LeftButton);
    const auto saved = qztest::SaveTarget::read(target.chosen);
    ASSERT_EQ(saved.header.size(), 10u);
    EXPECT_EQ(saved.header[0], "# QZ7740 measurement versus time");
    EXPECT_EQ(saved.header[1].substr(0, 17), "# date and time: ");
    EXPECT_EQ(std::vector<std::string>(saved.header.begin() + 2, saved.header.end()),
              (std::vector<std::string>{"# board: evaluation board on USB", "# VREF: 5 V",
                                        "# OFFSET code: 8000",
                                        "# current range: \u00B15uA (100000 ohms)",
                                        "# measure mode: Measure Voltage",
                                        "# cycle delay: 100ms (0.1 s)",
                                        "# sample delay: .3 X (0.03 s)", "# force: 5 V (code B1F4)"}));
    EXPECT_EQ(saved.rest, QApplication::clipboard()->text().toStdString());
    EXPECT_EQ(saved.rest.substr(0, 9), "temp\tADC\t");
    EXPECT_TRUE(h.boxes.empty());

    // The sweep's file has its own head.
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    target.chosen = target.path("sweep.txt");
    QTest::mouseClick(p->cmdSave, Qt::LeftButton);
    const auto sweep = qztest::SaveTarget::read(target.chosen);
    ASSERT_EQ(sweep.header.size(), 12u);
    EXPECT_EQ(sweep.header[11], "# step: 1000 mV (2558 codes)");
    QTest::mouseClick(p->cmdCOPYTOCLIP, Qt::LeftButton);
    EXPECT_EQ(sweep.rest, QApplication::clipboard()->text().toStdString());

    // A target that cannot be written: a directory of that name, a folder that is not
    // there. A message each; no file, no temporary left; the lists keep their lines.
    ASSERT_TRUE(QDir(target.dir.path()).mkdir(QStringLiteral("taken")));
    for (const char* name : {"taken", "missing/run.txt"}) {
        target.chosen = target.path(name);
        QTest::mouseClick(p->cmdSaveit, Qt::LeftButton);
        ASSERT_EQ(h.boxes.size(), 1u) << name;
        EXPECT_EQ(h.boxes[0].title, "Save Data");
        EXPECT_EQ(h.boxes[0].text.substr(0, 31), "The file could not be written:\n");
        EXPECT_NE(h.boxes[0].text.find(target.chosen.toStdString()), std::string::npos);
        h.boxes.clear();
    }
    // A writer that fails half way over a file already there: the old file stands whole.
    EXPECT_FALSE(forms::writeWhole(target.path("sweep.txt"), [](QIODevice& file) {
        file.write("half a line");
        return false;
    }));
    ASSERT_EQ(h.boxes.size(), 1u);
    h.boxes.clear();
    EXPECT_EQ(qztest::SaveTarget::read(target.path("sweep.txt")).rest, sweep.rest);
    EXPECT_EQ(target.entries(),
              (QStringList{QStringLiteral("sweep.txt"), QStringLiteral("taken"),
                           QStringLiteral("time run.txt")}));
    EXPECT_TRUE(QDir(target.path("taken")).isEmpty());
    EXPECT_EQ(p->List2->count(), 105);
    target.chosen.clear();
    QTest::mouseClick(p->cmdSaveit, Qt::LeftButton);
    EXPECT_TRUE(h.boxes.empty()) << "a cancelled choice writes nothing and says nothing";
}

TEST_F(Measure, TheChartZoomsIntoADraggedRectangleGoesBackOnADoubleClickAndSavesAPicture) {
    QTest::mouseClick(p->cmdPlot, Qt::LeftButton);
    QApplication::processEvents();
    forms::StripChart* chart = p->Strip1;
    const QRectF whole = chart->shownRange();
    p->Strip1->moveCursor(2);
    QWidget* view = chart->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, chart->viewPointOf(3, -6));
    QTest::mouseMove(view, chart->viewPointOf(4, -7));
    QTest::mouseMove(view, chart->viewPointOf(6, -8));
    QTest::mouseRelease(view, Qt::LeftButton, {}, chart->viewPointOf(6, -8));
    const QRectF zoom = chart->shownRange();
    EXPECT_NEAR(zoom.left(), 3, 0.1);
    EXPECT_NEAR(zoom.right(), 6, 0.1);
    EXPECT_NEAR(zoom.top(), -8, 0.1);
    EXPECT_NEAR(zoom.bottom(), -6, 0.1);
    EXPECT_EQ(p->Text3->text(), QStringLiteral("580A")) << "a drag moves no cursor";
    QTest::mouseDClick(view, Qt::LeftButton, {}, chart->viewPointOf(5, -7));
    EXPECT_EQ(chart->shownRange(), whole);
    EXPECT_EQ(p->Text3->text(), QStringLiteral("580A"));

    qztest::SaveTarget target;
    target.chosen = target.path("chart.png");
    chart->savePictureAs();
    const QImage picture(target.chosen);
    EXPECT_EQ(picture.size(), chart->size());
    target.chosen = target.path("missing/chart.png");
    chart->savePictureAs();
    ASSERT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(h.boxes[0].title, "Save Data");
    EXPECT_EQ(target.entries(), QStringList{QStringLiteral("chart.png")});
}

TEST_F(Measure, TheThirdTabHidesTheRunsControlsAndItsStimuliSendTheirWords) {
    const std::initializer_list<QWidget*> runs{p->frmVref,       p->Frame1, p->Frame2, p->Frame3,
                                               p->cmdCOPYTOCLIP, p->Check1, p->Frame16};
    p->SSTab1->setCurrentIndex(2);
    for (QWidget* w : runs)
        EXPECT_TRUE(w->isHidden()) << w->objectName().toStdString();
    QTest::mouseClick(p->cmdWRITESET, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x028150, 0x080000, 0x088000}));
    EXPECT_EQ(p->Text2->text(), QStringLiteral("00080000"));
    EXPECT_NEAR(clock.seconds(), 0.2, 1e-9);
    pick(p->cboCurrent1, 1);
    pick(p->cboCurrent2, 4);
    p->txtdin->setText(QStringLiteral("ABC"));
    QTest::mouseClick(p->cmdRangeChange, Qt::LeftButton);
    EXPECT_EQ(sent(), (std::vector<int>{0x028950, 0x080ABC, 0x02A150}));
    EXPECT_EQ(p->txtrange2->text(), QStringLiteral("02A150"));
    EXPECT_EQ(p->Text1->text(), QStringLiteral("02A150"));
    p->txtFINSET2->clear();
    QTest::mouseClick(p->cmdWRITESET, Qt::LeftButton);
    h.expectRefusal(p->txtFINSET2, "Not a valid number. Please reenter it.");
    p->SSTab1->setCurrentIndex(1);
    for (QWidget* w : runs)
        EXPECT_FALSE(w->isHidden()) << w->objectName().toStdString();
}

TEST(MeasureOnTheBoard, ASweepReadsBackTheVoltagesAndTheCurrentIntoTheLoad) {
    Harness h;
    auto f = h.startConsole<frmMAINQZ7740>();
    auto* p = static_cast<frmMeasure*>(h.nav.show(Form::frmMeasure));
    pick(p->cboSweepI, 3);
    p->cmdPlot_Click();
    const qz::MeasureArrays& a = p->arrays;
    ASSERT_EQ(a.sweepVolts.size(), 11u);
    for (size_t i = 0; i < a.sweepVolts.size(); ++i)
        EXPECT_NEAR(a.sweepMeasVolts[i], a.sweepVolts[i], 0.002) << i;
    pick(p->cboMeasureVI, 1);
    p->cmdPlot_Click();
    for (size_t i = 0; i < a.sweepVolts.size(); ++i)
        EXPECT_NEAR(a.sweepMeasAmps[i], a.sweepVolts[i] / 10000.0, 1e-6) << i;
    EXPECT_TRUE(h.boxes.empty());
}
