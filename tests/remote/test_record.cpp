// Operator sessions on the real panels, recorded, saved as a PyVISA script, and played by
// the system's Python against a fresh program on the virtual board: the requests the
// replay puts on the wire are the session's, line for line, reads included.

#include "diagnostics/frmDIAG.h"
#include "forms/CrossPanel.h"
#include "forms/Entry.h"
#include "measure/frmMeasure.h"
#include "remote/Recorder.h"
#include "remote/Script.h"
#include "support/ConsoleFixture.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include <map>
#include <sstream>
#include <random>

using qz::remote::Step;

namespace {

constexpr int kCapMs = 120000; // far past any replay: a hung one fails instead of hanging

struct Replay {
    int status = -1;
    std::string out, err;
    std::vector<std::string> lines; // the program's trace after its start
    std::map<std::string, std::string> results; // the files the script wrote
};

std::vector<std::string> linesOf(const QString& path) {
    QFile f(path);
    std::vector<std::string> out;
    if (!f.open(QIODevice::ReadOnly)) return out;
    for (const QByteArray& l : f.readAll().split('\n'))
        if (!l.isEmpty()) out.push_back(l.toStdString());
    return out;
}

// The steps as a PyVISA script, run against a fresh program that traces.
Replay replay(const std::vector<Step>& steps) {
    Replay r;
    QTemporaryDir dir;
    const QString script = dir.filePath(QStringLiteral("recording.py"));
    const QString trace = dir.filePath(QStringLiteral("trace.txt"));
    {
        QFile f(script);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray::fromStdString(qz::remote::pyvisaScript(steps, {"now", "test"})));
    }
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(QZ_PROGRAM), {"--headless", "--simulate", "--remote", "0", "--trace", trace});
    while (!program.canReadLine() && program.waitForReadyRead(kCapMs)) {
    }
    const QString listening = QString::fromUtf8(program.readLine()).trimmed();
    EXPECT_TRUE(listening.startsWith(QStringLiteral("listening on 127.0.0.1:"))) << listening.toStdString();
    const size_t start = linesOf(trace).size(); // the start is done before the program listens
    QProcess python;
    python.start(QStringLiteral(QZ_PYTHON3),
                 {QStringLiteral("-B"), script,
                  QStringLiteral("TCPIP0::127.0.0.1::%1::SOCKET").arg(listening.section(QLatin1Char(':'), -1)),
                  QStringLiteral("--results"), dir.filePath(QStringLiteral("results"))});
    if (python.waitForFinished(kCapMs) && python.exitStatus() == QProcess::NormalExit) r.status = python.exitCode();
    python.kill();
    r.out = python.readAllStandardOutput().toStdString();
    r.err = python.readAllStandardError().toStdString();
    program.kill();
    program.waitForFinished(kCapMs);
    const QDir out(dir.filePath(QStringLiteral("results")));
    for (const QString& name : out.entryList(QDir::Files)) {
        QFile f(out.filePath(name));
        if (f.open(QIODevice::ReadOnly)) r.results[name.toStdString()] = f.readAll().toStdString();
    }
    const std::vector<std::string> all = linesOf(trace);
    r.lines.assign(all.begin() + static_cast<std::ptrdiff_t>(std::min(start, all.size())), all.end());
    return r;
}

std::string listOf(const std::vector<Step>& steps) { return qz::remote::commandList(steps); }

class Record : public qztest::ConsoleFixture {
protected:
    void SetUp() override {
        qztest::ConsoleFixture::SetUp();
        recorder = std::make_unique<qz::remote::Recorder>(*h.session, h.nav);
        recorder->start();
        h.trace.fresh();
    }
    void TearDown() override { recorder.reset(); }

    // The session so far, replayed: the same requests in the same order.
    Replay expectReplayEqual() {
        take();
        Replay r = replay(recorder->steps());
        expectEqual(r);
        return r;
    }
    void expectEqual(const Replay& r) {
        EXPECT_EQ(r.status, 0) << r.err;
        for (size_t i = 0; i < std::min(session.size(), r.lines.size()); ++i)
            ASSERT_EQ(r.lines[i], session[i]) << "request " << i << " of the session's " << session.size()
                                              << ", made by " << actionAt(i);
        ASSERT_EQ(r.lines.size(), session.size()) << listOf(recorder->steps());
    }
    // What the operator did, with where its requests and its steps end.
    struct Done {
        size_t lines, steps;
        std::string what;
    };
    std::vector<Done> done;
    void did(const QString& what) {
        take();
        done.push_back({session.size(), recorder->steps().size(), what.toStdString()});
    }
    std::string actionAt(size_t line) {
        size_t firstStep = 0;
        for (const Done& d : done) {
            if (line < d.lines) {
                std::string out = d.what + ", recorded as:";
                for (size_t k = firstStep; k < d.steps; ++k) out += "\n  " + recorder->steps()[k].message;
                return out;
            }
            firstStep = d.steps;
        }
        return "no action";
    }
    // The session's requests since the last look, kept for the comparison.
    std::vector<std::string> take() {
        std::vector<std::string> fresh = h.trace.fresh();
        session.insert(session.end(), fresh.begin(), fresh.end());
        return fresh;
    }

    std::vector<std::string> session;
    template <typename T> T* on(forms::Form form, const char* name) {
        return forms::controlOf<T>(h.nav, form, QString::fromLatin1(name));
    }
    // A panel shown by the operator, its runs on a clock that moves only when waited on.
    QWidget* open(forms::Form form) { return clocked(h.nav.show(form)); }
    QWidget* clocked(QWidget* p) {
        if (auto* me = dynamic_cast<frmMeasure*>(p)) me->useClock(clock);
        if (auto* d = dynamic_cast<frmDIAG*>(p)) d->useClock(clock);
        return p;
    }

    // The operator's hand on a control: an entry box gets text (its value in force when
    // none is given) and Enter, a list its next item (or a given one), a button a click.
    // False for a control that takes none of these.
    bool operate(QWidget* w, const QString* text = nullptr, int item = -1) {
        static const QStringList skipped = {"cmdEXIT", "lblRecording", "cmdLocal", "cmdReconnect", "cmdPLOTTEMP"};
        const QString name = w->objectName();
        if (name.isEmpty() || name.startsWith(QStringLiteral("qt_")) || skipped.contains(name) || !w->isEnabled())
            return false;
        if (auto* box = qobject_cast<QLineEdit*>(w); box && !box->isReadOnly())
            qztest::Harness::enter(box, text ? *text : forms::acceptedText(box));
        else if (auto* list = qobject_cast<QComboBox*>(w); list && list->count() > 0)
            qztest::pick(list, item >= 0 ? item % list->count() : (list->currentIndex() + 1) % list->count());
        else if (auto* button = qobject_cast<QAbstractButton*>(w))
            button->click();
        else
            return false;
        return true;
    }

    qz::SteppedClock clock;

    std::unique_ptr<qz::remote::Recorder> recorder;
};

} // namespace

TEST_F(Record, FrontPanelSessionReplaysWordForWord) {
    qztest::pick(m->cboCurrent, 2);
    qztest::Harness::enter(m->txtclamph, QStringLiteral("1.5"));
    qztest::Harness::enter(m->txtClampl, QStringLiteral("-1.25"));
    qztest::clickBox(m->chkCLAMPEN);
    qztest::pick(m->cboSlew, 3);
    qztest::pick(m->MEASOUTG, 0);
    qztest::pick(m->cboMEASURE, 2);
    qztest::Harness::enter(m->OFFSETx1, QStringLiteral("8100"));
    qztest::Harness::enter(m->txtV, QStringLiteral("2.5"));
    m->optRef[1]->click();
    qztest::Harness::enter(m->txtV, QStringLiteral("-1.75"));
    m->cmdCheckAlarms->click();
    m->cmdCLEAR->click();
    m->readSYS->click();
    const std::string list = listOf(recorder->steps());
    EXPECT_NE(list.find("CURR:RANG \""), std::string::npos) << list;
    EXPECT_NE(list.find("VOLT 2.5\n"), std::string::npos) << list;
    EXPECT_NE(list.find("STAT:ALAR?\n"), std::string::npos) << list;
    EXPECT_NE(list.find("REG:READ? 1\n"), std::string::npos) << list;
    expectReplayEqual();
}

// Every control of every panel, operated once in turn: each that sends a request is
// recorded (by its task command or by the requests it made), and the whole walk replays
// request for request.
TEST_F(Record, EveryControlThatSendsIsRecordedAndTheWalkReplays) {
    int sending = 0;
    for (forms::Form form : {forms::Form::frmMain, forms::Form::frmMAINQZ7740, forms::Form::frmMeasure,
                             forms::Form::frmDIAG, forms::Form::frmCompensation}) {
        QWidget* panel = open(form);
        for (QWidget* w : panel->findChildren<QWidget*>()) {
            const size_t stepsBefore = recorder->steps().size();
            if (!operate(w)) continue;
            h.boxes.clear();
            if (take().empty()) continue;
            ++sending;
            EXPECT_GT(recorder->steps().size(), stepsBefore)
                << forms::formName(form).toStdString() << " " << w->objectName().toStdString() << " sent and was not recorded";
        }
    }
    EXPECT_GT(sending, 100);
    expectReplayEqual();
}

// The runs, the alarms, the console's words composed bit by bit, and a refusal: the
// replay's requests are the session's, and its result files hold the session's readings.
TEST_F(Record, RunsAlarmsComposedWordsAndARefusalReplay) {
    auto* me = static_cast<frmMeasure*>(open(forms::Form::frmMeasure));
    qztest::Harness::enter(me->txtstartV, QStringLiteral("0"));
    qztest::Harness::enter(me->txtendV, QStringLiteral("1"));
    qztest::Harness::enter(me->txtstep, QStringLiteral("250"));
    qztest::pick(me->cboSweepI, 3);
    me->cmdPlot->click();
    qztest::Harness::enter(me->txtForceV, QStringLiteral("2"));
    qztest::pick(me->cboMeasureVI, 1);
    me->cmdPlotit->click();
    m->cmdCheckAlarms->click();
    // Bits composed on the console without a twin go out with its WRITE; a word by hand.
    f->CPEN->click();
    f->chkFINGND->click();
    f->cmdWRITESYS->click();
    f->chkHWINHB->click();
    qztest::Harness::enter(f->Text1, QStringLiteral("0889FE"));
    take();
    // A refused entry records nothing and sends nothing.
    const size_t steps = recorder->steps().size();
    qztest::Harness::enter(m->txtV, QStringLiteral("abc"));
    EXPECT_EQ(h.boxes.size(), 1u);
    EXPECT_EQ(recorder->steps().size(), steps);
    EXPECT_TRUE(take().empty());
    // The stimulus lists choose the range the clamps are typed in, without a word.
    qztest::pick(me->cboCurrent2, 2);
    qztest::Harness::enter(m->txtclamph, QStringLiteral("1"));
    // One refused after it sent the range words: those are recorded as they went.
    qztest::Harness::enter(m->txtV, QStringLiteral("99"));
    EXPECT_EQ(h.boxes.size(), 2u);
    // The front panel builds its next word on the word the console composed.
    qztest::clickBox(m->chkGPO);

    const std::string list = listOf(recorder->steps());
    for (const char* expected : {"SWE:STEP 250MV\n", "INIT:SWE\n*OPC?\nFETC:SWE:FORC?\nFETC:SWE?\n",
                                 "INIT:TIME\n*OPC?\nFETC:TIME:TIM?\nFETC:TIME?\n", "STAT:ALAR?\n",
                                 "REG:SHAD #H", "REG:WRITE #H0889FE\n", "GPO ON\n"})
        EXPECT_NE(list.find(expected), std::string::npos) << expected << " in\n" << list;
    const Replay r = expectReplayEqual();
    // The readings in the files are the session's, since the reads were.
    const qz::RunRecord* sweep = h.session->runs.last(qz::RunKind::Sweep);
    ASSERT_TRUE(sweep && r.results.count("sweep-1.csv")) << r.out;
    std::istringstream csv(r.results.at("sweep-1.csv"));
    std::string line;
    std::getline(csv, line);
    for (size_t i = 0; i < sweep->readings.size(); ++i) {
        ASSERT_TRUE(std::getline(csv, line)) << i;
        const auto comma = line.find(',');
        EXPECT_NEAR(std::stod(line.substr(0, comma)), sweep->forced[i], 1e-6) << line;
        EXPECT_NEAR(std::stod(line.substr(comma + 1)), sweep->readings[i], 1e-6) << line;
    }
    EXPECT_EQ(sweep->readings.size(), 5u);
    EXPECT_TRUE(r.results.count("time-1.csv"));
}

// Two thousand random operator actions across every panel (entries with nonsense among
// them, picks, clicks, panels opened and closed), recorded and replayed.
TEST_F(Record, TwoThousandRandomActionsReplay) {
    std::mt19937 rng(7740);
    static const char* const texts[] = {"0", "1", "2.5", "-1", "5", "0.1", "20", "100", "FFFF", "8000",
                                        "7f", "1e3", "abc", "-0", "12.8125", "", "250", "3"};
    for (forms::Form form : {forms::Form::frmMeasure, forms::Form::frmDIAG, forms::Form::frmCompensation})
        open(form);
    // The replay runs on the real clock: the runs' delays stay at none.
    auto* me = static_cast<frmMeasure*>(h.nav.loaded(forms::Form::frmMeasure));
    qztest::pick(me->cboDela, 0);
    qztest::pick(me->cboMDelay, 0);
    int actions = 0;
    while (actions < 2000) {
        std::vector<QWidget*> panels;
        for (forms::Form form : {forms::Form::frmMain, forms::Form::frmMAINQZ7740, forms::Form::frmMeasure,
                                 forms::Form::frmDIAG, forms::Form::frmCompensation})
            if (QWidget* p = h.nav.loaded(form)) panels.push_back(clocked(p)); // loaded afresh too
        QWidget* panel = panels[rng() % panels.size()];
        if (rng() % 40 == 0) {
            // A panel closed, or one of the others shown, as their menus do.
            // (Not the diagnostics panel: its load sets the runs' delay.)
            const forms::Form form = rng() % 2 ? forms::Form::frmMeasure : forms::Form::frmCompensation;
            if (h.nav.loaded(form)) h.nav.unload(form);
            else open(form);
            did(forms::formName(form) + QStringLiteral(" opened or closed"));
            ++actions;
            continue;
        }
        const QList<QWidget*> all = panel->findChildren<QWidget*>();
        QWidget* w = all[static_cast<qsizetype>(rng() % static_cast<size_t>(all.size()))];
        // The delays stay at none. The boxes that only hold a number for a later operation
        // (VREF's Other, the external ranges' resistors) are not recorded: the README
        // says so.
        static const QStringList kept = {"cboDela", "cboMDelay", "txtVREF", "txtEXT1rsense", "txtEXT2Rsense"};
        if (kept.contains(w->objectName())) continue;
        // The sweeps stay short: a step of a few millivolts would make ten thousand points.
        const QString text = w->objectName() == QStringLiteral("txtstep")
                                 ? QStringLiteral("250")
                                 : QString::fromLatin1(texts[rng() % std::size(texts)]);
        if (operate(w, rng() % 2 ? &text : nullptr, static_cast<int>(rng() % 16))) ++actions;
        did(panel->objectName() + QLatin1Char(' ') + w->objectName());
        // A refusal empties a box and asks for it again: the operator types the last good
        // value back in, as a box that stays empty is read by no script.
        if (!h.boxes.empty())
            for (QWidget* p : panels)
                for (QLineEdit* box : p->findChildren<QLineEdit*>())
                    if (box->text().isEmpty() && !forms::acceptedText(box).isEmpty()) {
                        qztest::Harness::enter(box, forms::acceptedText(box));
                        did(p->objectName() + QStringLiteral(" re-entered ") + box->objectName());
                    }
        h.boxes.clear();
        QApplication::processEvents();
    }
    expectReplayEqual();
}
