// Two thousand random operator actions (a fixed seed) across every open panel and dialog
// on the virtual board: typed entries with nonsense among them, Enter or a move away,
// picks, clicks, tab changes, menu entries, window frames, and short runs on a clock that
// moves only when waited on, with actions of the same kind inside the runs. Nothing may
// crash, every message is an entry refusal or one of the program's own texts, every end of
// the program comes from an "Exit" or "EXIT" with nothing sent, and the wire carries only
// well-formed 24-bit words.

#include "diagnostics/frmDIAG.h"
#include "forms/TabControl.h"
#include "measure/frmMeasure.h"
#include "support/ConsoleFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include <random>

using forms::Form;

namespace {

std::string randomText(std::mt19937& rng) {
    static const char* const typical[] = {"", "0", "1", "2.5", "-1", "5", "0.1", "20", "100", "1000",
                                          "FFFF", "8000", "7f", "ffffffff", "1e3", "1e-40", "nan",
                                          "&h10", " 3 ", "-0", "12.8125", "abc", "4,5", "99999999999"};
    if (rng() % 3 != 0) return typical[rng() % std::size(typical)];
    static const std::string alphabet = "0123456789abcdefABCDEF .-+&hHeE,x";
    std::string s(rng() % 10, ' ');
    for (char& c : s) c = alphabet[rng() % alphabet.size()];
    return s;
}

// The program's own messages: a refusal of an entry, or the About dialog's.
bool ownMessage(const qztest::Box& b) {
    if (b.title == "QZ7740")
        return b.icon == qz::MsgIcon::None && b.text == "System Information Is Unavailable At This Time";
    if (b.title != "Entry Error" || b.icon != qz::MsgIcon::Exclamation) return false;
    for (const char* start : {"Not a valid number. Please reenter", "Number too large. Please reenter",
                              "Number too small. Please reenter", "Number outside",
                              "Requested clamp level outside of Irange", "This combination of VREF",
                              "Start Voltage must be less than End Voltage."})
        if (b.text.rfind(start, 0) == 0) return true;
    return false;
}

bool named(const QObject* o) {
    return !o->objectName().isEmpty() && !o->objectName().startsWith(QStringLiteral("qt_"));
}

// The recorder's entry and mark open a window of their own, which has tests of its own.
bool recorders(const QObject* o) {
    return o->objectName() == QStringLiteral("mnuRecord") || o->objectName() == QStringLiteral("lblRecording") ||
           (qobject_cast<const QAction*>(o) && static_cast<const QAction*>(o)->isSeparator());
}
template <typename T> QList<T*> panelOnly(QList<T*> all) {
    all.removeIf([](T* o) { return recorders(o); });
    return all;
}

bool ends(const QString& name) {
    return name == QStringLiteral("cmdEXIT") || name == QStringLiteral("mnuExit") ||
           name == QStringLiteral("menuExit") || name == QStringLiteral("mnuEnd");
}

class RandomActions : public qztest::ConsoleFixture {
protected:
    std::mt19937 rng{20240614};
    qz::SteppedClock clock;
    std::vector<std::string> lines;
    int endsExpected = 0, refusals = 0, runs = 0, inRunActions = 0;
    bool chain = false;

    template <typename T> T* any(const QList<T*>& list) {
        return list.isEmpty() ? nullptr : list[static_cast<int>(rng() % list.size())];
    }
    size_t take() {
        const std::vector<std::string> fresh = h.trace.fresh();
        lines.insert(lines.end(), fresh.begin(), fresh.end());
        return fresh.size();
    }

    // The panels and dialogs on the screen; a panel that runs is given the test's clock,
    // also when a menu has just loaded it afresh.
    QList<QWidget*> open() {
        QList<QWidget*> shown;
        for (Form form : forms::kAllForms) {
            QWidget* w = h.nav.loaded(form);
            if (!w || !w->isVisible()) continue;
            if (auto* me = dynamic_cast<frmMeasure*>(w)) me->useClock(clock);
            if (auto* d = dynamic_cast<frmDIAG*>(w)) d->useClock(clock);
            shown << w;
        }
        return shown;
    }
    bool running() {
        auto* me = dynamic_cast<frmMeasure*>(h.nav.loaded(Form::frmMeasure));
        auto* d = dynamic_cast<frmDIAG*>(h.nav.loaded(Form::frmDIAG));
        return (me && me->running()) || (d && d->running());
    }
    void stopRuns() {
        if (auto* me = dynamic_cast<frmMeasure*>(h.nav.loaded(Form::frmMeasure)))
            for (QPushButton* stop : {me->cmdStop, me->cmdStopit})
                if (stop->isEnabled()) stop->click();
        if (auto* d = dynamic_cast<frmDIAG*>(h.nav.loaded(Form::frmDIAG)))
            if (d->running() && !d->Check1->isChecked()) d->Check1->click();
    }

    // Inside a run: a few actions, one per event pass, then STOP for every run going on.
    void inRun(int left, int passes) {
        if (!running()) return void(chain = false);
        if (passes == 0) ++runs;
        ASSERT_LT(passes, 5000) << "a run does not end";
        if (left > 0) {
            ++inRunActions;
            act();
        } else {
            stopRuns();
        }
        QTimer::singleShot(0, [this, left, passes] { inRun(std::max(left - 1, 0), passes + 1); });
    }
    void startRun(QAbstractButton* button) {
        if (!chain) {
            chain = true;
            const int left = static_cast<int>(rng() % 6);
            QTimer::singleShot(0, [this, left] { inRun(left, 0); });
        }
        button->click();
    }

    void typeInto(QWidget* panel) {
        QLineEdit* box = any(panel->findChildren<QLineEdit*>());
        if (!box || !named(box) || !box->isEnabled() || box->isReadOnly()) return;
        box->setFocus();
        box->setText(QString::fromStdString(randomText(rng)));
        if (rng() % 4 != 0) return QTest::keyClick(box, Qt::Key_Return);
        qztest::Harness::activate(panel->window());
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Tab); // leaves the box
    }
    // A run with fields that keep it short, or with whatever the fields hold.
    void run(QWidget* panel) {
        if (auto* me = dynamic_cast<frmMeasure*>(panel)) {
            if (rng() % 2) {
                for (auto [box, text] : {std::pair{me->txtstartV, "0"}, {me->txtendV, "0.2"},
                                         {me->txtstep, "50"}, {me->txtForceV, "1"}})
                    qztest::Harness::enter(box, QString::fromLatin1(text));
            }
            startRun(rng() % 2 ? me->cmdPlot : me->cmdPlotit);
        } else if (auto* d = dynamic_cast<frmDIAG*>(panel)) {
            startRun(d->cmdPLOTTEMP);
        }
    }
    void click(QWidget* panel) {
        QAbstractButton* b = any(panelOnly(panel->findChildren<QAbstractButton*>()));
        if (!b || !named(b) || !b->isEnabled()) return;
        const QString name = b->objectName();
        if (name == QStringLiteral("cmdPlot") || name == QStringLiteral("cmdPlotit") ||
            name == QStringLiteral("cmdPLOTTEMP"))
            return startRun(b);
        if (ends(name)) return ending([b] { b->click(); });
        b->click();
    }
    void menu(QWidget* panel) {
        QAction* a = any(panelOnly(panel->findChildren<QAction*>()));
        if (!a || !named(a) || !a->isEnabled()) return;
        if (ends(a->objectName())) return ending([a] { a->trigger(); });
        a->trigger();
    }
    // An end of the program sends nothing; the test's end only counts it.
    void ending(const std::function<void()>& action) {
        take();
        action();
        ++endsExpected;
        EXPECT_EQ(take(), 0u) << "an end sends nothing";
    }

    void act() {
        const QList<QWidget*> panels = open();
        QWidget* panel = any(panels);
        if (!panel) return;
        switch (rng() % 12) {
        case 0: case 1: case 2: typeInto(panel); break;
        case 3: case 4: {
            QComboBox* list = any(panel->findChildren<QComboBox*>());
            if (list && named(list) && list->isEnabled() && list->count() > 0)
                qztest::pick(list, static_cast<int>(rng() % list->count()));
            break;
        }
        case 5: case 6: case 7: click(panel); break;
        case 8: {
            // The tab control has no meta-object of its own: findChildren would give any widget.
            QList<forms::TabControl*> all;
            for (QWidget* w : panel->findChildren<QWidget*>())
                if (auto* t = dynamic_cast<forms::TabControl*>(w)) all << t;
            if (forms::TabControl* tabs = any(all))
                tabs->setCurrentIndex(static_cast<int>(rng() % static_cast<unsigned>(tabs->count())));
            break;
        }
        case 9: menu(panel); break;
        case 10: run(panel); break;
        default:
            // The window's frame; the front panel's would end the program and leave
            // nothing to act on.
            if (panel != m) panel->close();
            break;
        }
    }
};

} // namespace

TEST_F(RandomActions, TwoThousandActionsAcrossEveryOpenPanel) {
    for (Form form : {Form::frmMeasure, Form::frmDIAG, Form::frmCompensation, Form::frmAbout})
        ASSERT_NE(h.nav.show(form), nullptr);
    take();
    for (int step = 0; step < 2000; ++step) {
        act();
        QApplication::processEvents();
        for (const qztest::Box& b : h.boxes) {
            ASSERT_TRUE(ownMessage(b)) << "step " << step << ": [" << b.title << "] " << b.text;
            ++refusals;
        }
        h.boxes.clear();
        ASSERT_EQ(h.ends, endsExpected) << "step " << step << ": only an Exit ends the program";
        take();
    }
    EXPECT_GT(refusals, 50);
    EXPECT_GT(runs, 30);
    EXPECT_GT(inRunActions, 30);
    EXPECT_GT(endsExpected, 10);

    const QRegularExpression line(QStringLiteral(
        R"(^VR \d+ [0-9A-F]{4} [0-9A-F]{4} (OUT|IN) \d+ -> \d+( :( [0-9A-F]{2})*)?$)"));
    // The requests depend on the draw of actions; a thousand show that the actions reached
    // the board, whatever panel's buttons the draw met.
    ASSERT_GT(lines.size(), 1000u);
    for (const std::string& l : lines) ASSERT_TRUE(line.match(QString::fromStdString(l)).hasMatch()) << l;
    for (int w : qztest::wordsSent(lines)) ASSERT_TRUE(w >= 0 && w <= 0xFFFFFF) << w;
    for (int address = 0; address < 0x80; ++address) ASSERT_LE(h.board->reg(address), 0xFFFF) << address;
}
