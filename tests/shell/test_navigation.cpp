// Every menu entry and navigation button of every panel on the virtual board, walked one
// by one: each opens what the program's menu table says, "Close" unloads (the console's
// only hides), "Exit" and "EXIT" end the program with nothing sent, and the window's frame
// closes a panel as its "Close" does.

#include "diagnostics/frmDIAG.h"
#include "forms/CrossPanel.h"
#include "forms/TabControl.h"
#include "registers/FieldOps.h"
#include "remote/Instrument.h"
#include "support/ConsoleFixture.h"

#include <QAction>
#include <QCheckBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>

#include <array>

using forms::Form;

namespace {

enum class Does { Show, Unload, Hide, End };

struct Row {
    Form panel;
    const char* menu;
    const char* name;
    const char* caption;
    Does does;
    Form target = Form::frmMain;
};

// The program's menu table.
const Row kMenus[] = {
    {Form::frmMAINQZ7740, "File", "mnuClose", "Close", Does::Hide},
    {Form::frmMAINQZ7740, "File", "mnuExit", "Exit", Does::End},
    {Form::frmMAINQZ7740, "View", "mnuMain", "Main Menu", Does::Show, Form::frmMain},
    {Form::frmMAINQZ7740, "View", "mnuPOT", "Sweep Voltage Measurements", Does::Show, Form::frmMeasure},
    {Form::frmMAINQZ7740, "View", "mnuMeas", "Diagnostic functions", Does::Show, Form::frmDIAG},
    {Form::frmMAINQZ7740, "View", "mnuComp", "Compensation Registers", Does::Show, Form::frmCompensation},
    {Form::frmMAINQZ7740, "Help", "mnuAbout", "About", Does::Show, Form::frmAbout},
    {Form::frmMain, "File", "mnuExit", "Exit", Does::End},
    {Form::frmMain, "View", "mnuSweep", "Sweep Voltage Measurements", Does::Show, Form::frmMeasure},
    {Form::frmMain, "View", "mnuDiag", "Diagnostic Register", Does::Show, Form::frmDIAG},
    {Form::frmMain, "View", "mnuIndi", "Individual Control register", Does::Show, Form::frmMAINQZ7740},
    {Form::frmMain, "View", "mnuComp", "Compensation Register", Does::Show, Form::frmCompensation},
    {Form::frmMain, "Help", "mnuAbout", "About", Does::Show, Form::frmAbout},
    {Form::frmMeasure, "File", "mnuClose", "Close", Does::Unload},
    {Form::frmMeasure, "File", "menuExit", "Exit", Does::End},
    {Form::frmMeasure, "View", "mnuMain", "QZ7740 Main Menu", Does::Show, Form::frmMAINQZ7740},
    {Form::frmMeasure, "View", "mnuDiag", "Diagnostic Functions", Does::Show, Form::frmDIAG},
    {Form::frmMeasure, "View", "mnuComp", "Compensation Registers", Does::Show, Form::frmCompensation},
    {Form::frmMeasure, "Help", "menuAbout", "About", Does::Show, Form::frmAbout},
    {Form::frmDIAG, "File", "mnuClose", "Close", Does::Unload},
    {Form::frmDIAG, "File", "menuExit", "Exit", Does::End},
    {Form::frmDIAG, "View", "mnuSweep", "Sweep Voltage Measurements", Does::Show, Form::frmMeasure},
    {Form::frmDIAG, "View", "mnuMain", "QZ7740 Main Menu", Does::Show, Form::frmMAINQZ7740},
    {Form::frmDIAG, "View", "mnuComp", "Compensation Registers", Does::Show, Form::frmCompensation},
    {Form::frmDIAG, "Help", "menuAbout", "About", Does::Show, Form::frmAbout},
    {Form::frmCompensation, "File", "mnuClose", "Close", Does::Unload},
    {Form::frmCompensation, "File", "mnuEnd", "Exit", Does::End},
    {Form::frmCompensation, "View", "mnuSweepM", "Sweep Voltage Measurements", Does::Show, Form::frmMeasure},
    {Form::frmCompensation, "View", "mnuDiag", "Diagnostic Functions", Does::Show, Form::frmDIAG},
    {Form::frmCompensation, "View", "mnuMain", "QZ7740 Main Menu", Does::Show, Form::frmMAINQZ7740},
    {Form::frmCompensation, "Help", "mnuAbout", "About", Does::Show, Form::frmAbout},
};

constexpr Form kPanels[] = {Form::frmMAINQZ7740, Form::frmMain, Form::frmMeasure, Form::frmDIAG,
                            Form::frmCompensation};

class Navigation : public qztest::ConsoleFixture {
protected:
    QWidget* panel(Form form) { return h.nav.show(form); }
    // A panel the action is to open is first taken away, so that only the action brings it.
    void takeAway(Form form) {
        if (form == Form::frmMAINQZ7740 || form == Form::frmMain) {
            if (QWidget* w = h.nav.loaded(form)) w->hide();
        } else {
            h.nav.unload(form);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    void expectOutcome(Form on, Does does, Form target, const std::string& what, int endsBefore) {
        switch (does) {
        case Does::Show: {
            QWidget* t = h.nav.loaded(target);
            ASSERT_NE(t, nullptr) << what;
            EXPECT_TRUE(t->isVisible()) << what;
            EXPECT_TRUE(h.nav.loaded(on) && h.nav.loaded(on)->isVisible()) << what << ": showing hides none";
            break;
        }
        case Does::Unload:
            EXPECT_EQ(h.nav.loaded(on), nullptr) << what;
            break;
        case Does::Hide:
            EXPECT_TRUE(h.nav.loaded(on) && h.nav.loaded(on)->isHidden()) << what << ": hidden, still loaded";
            break;
        case Does::End:
            EXPECT_EQ(h.ends, endsBefore + 1) << what;
            EXPECT_TRUE(h.trace.fresh().empty()) << what << ": nothing sent";
            break;
        }
        EXPECT_TRUE(h.boxes.empty()) << what;
    }
};

std::string nameOf(Form form, const char* entry) {
    return forms::formName(form).toStdString() + "." + entry;
}

} // namespace

TEST_F(Navigation, EveryMenuBarHoldsItsEntriesInOrder) {
    for (Form form : kPanels) {
        QWidget* p = panel(form);
        ASSERT_NE(p, nullptr);
        QList<QAction*> bar = p->findChild<QMenuBar*>()->actions();
        ASSERT_EQ(bar.size(), 3) << forms::formName(form).toStdString();
        for (int i = 0; i < 3; ++i) {
            const char* title = std::array{"File", "View", "Help"}[static_cast<size_t>(i)];
            EXPECT_EQ(bar[i]->text(), QString::fromLatin1(title));
            QStringList want, got;
            // Every File menu opens with the recorder's entry.
            if (i == 0) want << QStringLiteral("mnuRecord Record...") << QStringLiteral(" ");
            for (const Row& r : kMenus)
                if (r.panel == form && std::string(r.menu) == title)
                    want << QStringLiteral("%1 %2").arg(QString::fromLatin1(r.name), QString::fromLatin1(r.caption));
            for (QAction* a : bar[i]->menu()->actions())
                got << QStringLiteral("%1 %2").arg(a->objectName(), a->text());
            EXPECT_EQ(got, want) << forms::formName(form).toStdString() << " " << title;
        }
    }
}

TEST_F(Navigation, EveryEntryOpensWhatItsTableSays) {
    for (const Row& r : kMenus) {
        const std::string what = nameOf(r.panel, r.name);
        QWidget* p = panel(r.panel);
        if (r.does == Does::Show && r.target != r.panel) takeAway(r.target);
        h.trace.fresh();
        QAction* a = p->findChild<QAction*>(QString::fromLatin1(r.name));
        ASSERT_NE(a, nullptr) << what;
        ASSERT_TRUE(a->isEnabled()) << what;
        const int ends = h.ends;
        a->trigger();
        expectOutcome(r.panel, r.does, r.target, what, ends);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(Navigation, TheFrontPanelsButtonsAndEveryExit) {
    const struct {
        const char* name;
        const char* caption;
        Form target;
    } ways[] = {{"Command1", "SWEEP VOLTAGES - USE ADC", Form::frmMeasure},
                {"Command2", "DIAGNOSTIC FUNCTIONS", Form::frmDIAG},
                {"Command3", "COMPENSATION SETTINGS", Form::frmCompensation},
                {"cmdManualComp", "GO TO MANUAL COMP", Form::frmCompensation}};
    for (const auto& w : ways) {
        takeAway(w.target);
        auto* b = qztest::child<QPushButton>(m, w.name);
        ASSERT_NE(b, nullptr);
        EXPECT_EQ(b->text(), QString::fromLatin1(w.caption));
        QTest::mouseClick(b, Qt::LeftButton);
        expectOutcome(Form::frmMain, Does::Show, w.target, w.name, h.ends);
    }
    auto* pages = dynamic_cast<forms::TabControl*>(
        h.nav.loaded(Form::frmCompensation)->findChild<QWidget*>(QStringLiteral("SSTab1")));
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->currentIndex(), 1) << "GO TO MANUAL COMP opens page 1";

    for (Form form : kPanels) {
        auto* exit = qztest::child<QPushButton>(panel(form), "cmdEXIT");
        ASSERT_NE(exit, nullptr);
        EXPECT_EQ(exit->text(), QStringLiteral("EXIT"));
        h.trace.fresh();
        const int ends = h.ends;
        QTest::mouseClick(exit, Qt::LeftButton);
        expectOutcome(form, Does::End, form, nameOf(form, "cmdEXIT"), ends);
    }
}

TEST_F(Navigation, TheFrameClosesAsCloseDoesAndOnlyTheLoadsWordsStartAgain) {
    const struct {
        Form form;
        Does does;
    } frames[] = {{Form::frmMAINQZ7740, Does::Hide},   {Form::frmCompensation, Does::Unload},
                  {Form::frmDIAG, Does::Unload},        {Form::frmMeasure, Does::Unload},
                  {Form::frmMain, Does::End}};
    for (const auto& fr : frames) {
        QWidget* p = panel(fr.form);
        h.trace.fresh();
        const int ends = h.ends;
        p->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        expectOutcome(fr.form, fr.does, fr.form, nameOf(fr.form, "frame"), ends);
    }

    // Every shadow word keeps its value through a Close and a fresh load, but for those
    // that panel's load sets.
    qz::General& w = g;
    int32_t* words[] = {&w.SYSreg, &w.PMUreg, &w.DPS2reg, &w.COMP1reg, &w.COMP2reg, &w.ALMreg, &w.DIAGreg};
    const struct {
        Form form;
        const char* close;
        std::vector<std::pair<int32_t*, int32_t>> loadSets;
    } closes[] = {{Form::frmCompensation, "mnuClose", {{&w.COMP1reg, 0x040000}, {&w.COMP2reg, 0x050000}}},
                  {Form::frmDIAG, "mnuClose", {{&w.DIAGreg, 0x070800}}}};
    for (const auto& c : closes) {
        panel(c.form)->findChild<QAction*>(QString::fromLatin1(c.close))->trigger();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (size_t i = 0; i < std::size(words); ++i) *words[i] = 0x7A0000 + static_cast<int32_t>(i);
        panel(c.form);
        for (size_t i = 0; i < std::size(words); ++i) {
            int32_t want = 0x7A0000 + static_cast<int32_t>(i);
            for (const auto& [word, value] : c.loadSets)
                if (word == words[i]) want = value;
            EXPECT_EQ(*words[i], want) << forms::formName(c.form).toStdString() << " word " << i;
        }
    }
}

TEST_F(Navigation, ARunHoldsItsPanelsCloseUntilItEndsWhileExitEndsAtOnce) {
    auto* d = static_cast<frmDIAG*>(panel(Form::frmDIAG));
    qz::SteppedClock clock;
    d->useClock(clock);
    bool checked = false;
    QTimer::singleShot(0, d, [&] {
        ASSERT_TRUE(d->running());
        d->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
        d->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(h.nav.loaded(Form::frmDIAG), d) << "held until the run ends";
        d->findChild<QAction*>(QStringLiteral("menuExit"))->trigger();
        EXPECT_EQ(h.ends, 1) << "at once, during the run";
        d->Check1->click(); // STOP
        checked = true;
    });
    d->cmdPLOTTEMP_Click();
    EXPECT_TRUE(checked);
    EXPECT_EQ(h.nav.loaded(Form::frmDIAG), nullptr) << "the held close comes at the run's end";
}

// Every control one panel reaches on another by name is there: the fixed references, the
// VREF groups, the twins of the control table on both panels, and the remote control's.
TEST_F(Navigation, EveryCrossPanelReferenceFindsItsControl) {
    std::vector<forms::ControlRef> refs(std::begin(forms::ref::kFixed), std::end(forms::ref::kFixed));
    for (Form panel : forms::ref::kReferencePanels) {
        refs.push_back(forms::ref::referenceBox(panel));
        for (int k = 0; k < 3; ++k)
            refs.push_back(forms::ref::referenceOption(panel, k));
    }
    for (const qz::ControlOps& c : qz::allControls()) {
        refs.push_back({Form::frmMAINQZ7740, c.name});
        if (c.twin) refs.push_back({Form::frmMain, c.name});
    }
    for (const forms::ControlRef& r : qz::remote::Instrument::panelControls())
        refs.push_back(r);
    for (const forms::ControlRef& r : refs) {
        QWidget* panel = h.nav.load(r.form);
        ASSERT_NE(panel, nullptr);
        EXPECT_NE(panel->findChild<QWidget*>(r.objectName()), nullptr)
            << forms::formName(r.form).toStdString() << " lacks " << r.objectName().toStdString();
    }
}

TEST_F(Navigation, AMisspeltControlOfAnotherPanelStopsTheProgramWithItsName) {
    // The panels' threads make a forked child unsafe: the child starts the tests afresh.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(forms::controlOf<QLineEdit>(h.nav, {Form::frmMAINQZ7740, "txtFINm"}),
                 "no QLineEdit named \"txtFINm\" on frmMAINQZ7740");
    EXPECT_DEATH(forms::controlOf<QLineEdit>(h.nav, {Form::frmMAINQZ7740, "QZ7740"}),
                 "no QLineEdit named \"QZ7740\"") << "a control of another kind";
}
