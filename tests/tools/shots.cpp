// Renders every tab of the panels to PNG files, for looking at them:
//   build/tests/qz7740-shots OUTDIR
// Runs on the virtual board; the offscreen platform is enough.

#include "board/VirtualBoard.h"
#include "console/frmMAINQZ7740.h"
#include "forms/Controls.h"
#include "diagnostics/frmDIAG.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/Navigator.h"
#include "forms/RemoteLocal.h"
#include "forms/StripChart.h"
#include "forms/TabControl.h"
#include "frontpanel/frmMain.h"
#include "measure/frmMeasure.h"
#include "registers/Session.h"
#include "remote/Recorder.h"
#include "shell/Panels.h"
#include "shell/RecorderWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>

#include <iostream>

namespace {

void save(QWidget* w, const QString& path) {
    QApplication::processEvents();
    if (!w->grab().save(path)) std::cerr << "cannot write " << path.toStdString() << '\n';
    else std::cout << path.toStdString() << '\n';
}

void shootTabs(QWidget* panel, forms::TabControl* tabs, const QString& dir, const QString& stem) {
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        save(panel, QStringLiteral("%1/%2-tab%3.png").arg(dir, stem).arg(i));
    }
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString dir = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("shots");
    QDir().mkpath(dir);
    forms::setMessageSink([](const std::string& t, const std::string& x, qz::MsgIcon) {
        std::cout << "message box: [" << t << "] " << x << '\n';
    });
    qz::Session session(std::make_unique<qz::VirtualBoard>());
    forms::Navigator nav;
    qz::registerPanels(nav, session);
    auto* console = new frmMAINQZ7740(session, nav);
    nav.adopt(forms::Form::frmMAINQZ7740, console);
    console->Form_Load();
    if (QWidget* front = nav.loaded(forms::Form::frmMain)) {
        save(front, dir + QStringLiteral("/frontpanel.png"));
        // Under a client's control, as its first command leaves it.
        forms::remoteLocal().clientCommand(QStringLiteral("192.168.1.20"));
        save(front, dir + QStringLiteral("/frontpanel-remote.png"));
        forms::remoteLocal().clientGone();
    }
    console->resize(console->sizeHint());
    shootTabs(console, console->QZ7740, dir, QStringLiteral("console"));
    console->QZ7740->setCurrentIndex(4);
    shootTabs(console, console->tabDACS, dir, QStringLiteral("console-dac"));
    if (QWidget* gain = nav.show(forms::Form::frmMEASOUTGAIN)) save(gain, dir + QStringLiteral("/measoutgain.png"));
    if (QWidget* comp = nav.show(forms::Form::frmCompensation)) {
        auto* pages = dynamic_cast<forms::TabControl*>(comp->findChild<QWidget*>(QStringLiteral("SSTab1")));
        if (pages) shootTabs(comp, pages, dir, QStringLiteral("compensation"));
    }
    if (auto* measure = static_cast<frmMeasure*>(nav.show(forms::Form::frmMeasure))) {
        // After a run of each kind in range 2.5mA, whose output follows the sweep into the
        // board's load; each cursor on a point.
        forms::setListIndex(measure->cboSweepI, 3);
        measure->cmdPlotit_Click();
        measure->Strip2->moveCursor(11);
        measure->cmdPlot_Click();
        measure->Strip1->moveCursor(4);
        shootTabs(measure, measure->SSTab1, dir, QStringLiteral("measure"));
    }
    if (auto* diag = static_cast<frmDIAG*>(nav.show(forms::Form::frmDIAG))) {
        // A temperature run on a clock that moves only when waited on, and a point read back.
        qz::SteppedClock clock;
        diag->useClock(clock);
        diag->cmdPLOTTEMP_Click();
        diag->Strip1->moveCursor(400);
        shootTabs(diag, diag->SSTab2, dir, QStringLiteral("diagnostics"));
    }
    if (QWidget* about = nav.show(forms::Form::frmAbout)) save(about, dir + QStringLiteral("/about.png"));
    {
        // The recorder after an operator's few steps (a level, a range, a sweep), while a
        // client's query and its answer go by.
        qz::remote::Recorder recorder(session, nav);
        RecorderWindow window(recorder);
        window.cmdRecord_Click();
        if (auto* front = static_cast<frmMain*>(nav.show(forms::Form::frmMain))) {
            front->txtV->setText(QStringLiteral("2.5"));
            forms::pressEnter(front->txtV);
            front->cboCurrent->setCurrentIndex(2);
            emit front->cboCurrent->activated(2);
        }
        if (auto* measure = static_cast<frmMeasure*>(nav.show(forms::Form::frmMeasure)))
            measure->cmdPlot->click();
        recorder.traffic("127.0.0.1", "MEAS:VOLT?", true);
        recorder.traffic("127.0.0.1", "2.499695", false);
        window.show();
        save(&window, dir + QStringLiteral("/recorder.png"));
    }
    return 0;
}
