#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/TabControl.h"
#include "levels/EntryField.h"
#include "registers/HexText.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using forms::makeButton;

frmMAINQZ7740::frmMAINQZ7740(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, QStringLiteral("frmMAINQZ7740"), QStringLiteral("QZ7740 MAIN MENU"),
                   parent) {
    auto* central = new QWidget(this);
    auto* v = new QVBoxLayout(central);
    QZ7740 = new forms::TabControl(QStringLiteral("QZ7740"), 5, central);
    QZ7740->addTab(buildWriteSystemTab(), QStringLiteral("WRITE SYSTEM CONTROL REG"));
    QZ7740->addTab(buildWriteDPS1Tab(), QStringLiteral("WRITE DPS1 REG"));
    QZ7740->addTab(buildWriteDPS2Tab(), QStringLiteral("WRITE DPS2 REG"));
    QZ7740->addTab(buildAlarmSetupTab(), QStringLiteral("ALARM SETUP REG"));
    QZ7740->addTab(buildWriteDacTab(), QStringLiteral("WRITE DAC REG"));
    QZ7740->addTab(buildReadSystemTab(), QStringLiteral("READ SYSTEM CONTROL REG"));
    QZ7740->addTab(buildReadDPS1Tab(), QStringLiteral("READ DPS1 REG"));
    QZ7740->addTab(buildReadDPS2Tab(), QStringLiteral("READ DPS2 REG"));
    QZ7740->addTab(buildReadAlarmTab(), QStringLiteral("READ ALARM STATUS"));
    QZ7740->addTab(buildReadDacTab(), QStringLiteral("READ DAC REG"));
    QZ7740->onClick([this](int previous) { QZ7740_Click(previous); });
    v->addWidget(QZ7740, 1);
    v->addWidget(buildWordBar());
    setCentralWidget(central);
    buildMenus();
    wireDacPages();
    wireDacEntries();

    session.showWordSent = [this](const std::string& hex) {
        Text1->setText(QString::fromStdString(hex));
    };
}

QWidget* frmMAINQZ7740::buildWordBar() {
    auto* bar = new QWidget(this);
    auto* h = new QHBoxLayout(bar);
    auto* wordBox = new QWidget(bar);
    auto* words = new QGridLayout(wordBox);
    words->setContentsMargins(0, 0, 0, 0);
    words->addWidget(new QLabel(QStringLiteral("WRITE"), bar), 0, 0);
    Text1 = forms::makeHexBox(QStringLiteral("Text1"), QString(), 8, bar);
    words->addWidget(Text1, 1, 0);
    words->addWidget(new QLabel(QStringLiteral("READ"), bar), 0, 1);
    lblREADSPI = forms::makeHexBox(QStringLiteral("lblREADSPI"), QString(), 8, bar);
    lblREADSPI->setReadOnly(true);
    lblREADSPI->setFocusPolicy(Qt::NoFocus);
    words->addWidget(lblREADSPI, 1, 1);
    cmdREADADC = makeButton(QStringLiteral("cmdREADADC"), QStringLiteral("READ ADC"), bar);
    words->addWidget(cmdREADADC, 1, 2);
    h->addWidget(wordBox, 0, Qt::AlignVCenter);
    h->addSpacing(16);
    h->addWidget(buildSwitchPanel());
    h->addStretch(1);
    auto* buttons = new QVBoxLayout;
    cmdRESET = makeButton(QStringLiteral("cmdRESET"), QStringLiteral("RESET QZ7740"), bar);
    cmdEXIT = makeButton(QStringLiteral("cmdEXIT"), QStringLiteral("EXIT"), bar);
    buttons->addWidget(cmdRESET);
    buttons->addWidget(cmdEXIT);
    h->addLayout(buttons);
    h->setAlignment(buttons, Qt::AlignVCenter);

    forms::onEnter(Text1, [this] { Text1_KeyPress(13); });
    forms::onLeave(Text1, [this] { Text1_LostFocus(); });
    connect(cmdREADADC, &QPushButton::clicked, this, [this] { cmdREADADC_Click(); });
    connect(cmdRESET, &QPushButton::clicked, this, [this] { cmdRESET_Click(); });
    connect(cmdEXIT, &QPushButton::clicked, this, [this] { cmdEXIT_Click(); });
    return bar;
}

QWidget* frmMAINQZ7740::buildSwitchPanel() {
    QGroupBox* frame = forms::makeFrame(QStringLiteral("SW8130 CH Select"), this);
    auto* g = new QGridLayout(frame);
    Check1 = forms::makeCheck(QStringLiteral("Check1"), QStringLiteral("SWITCH ENABLED"), true, frame);
    g->addWidget(Check1, 0, 0, 1, 4);
    g->addWidget(new QLabel(QStringLiteral("Output"), frame), 1, 0, 1, 4);
    const char* channels[4] = {"MEASOUT", "GND", "VREF", "GND"};
    for (int i = 0; i < 4; ++i) {
        optComp0[static_cast<size_t>(i)] =
            forms::makeOption(forms::member("optComp0", i), QString::fromLatin1(channels[i]), frame);
        g->addWidget(optComp0[static_cast<size_t>(i)], 2, i);
        forms::onClick(optComp0[static_cast<size_t>(i)], [this, i] { optComp0_Click(i); });
    }
    optComp0[1]->setChecked(true);
    forms::onClick(Check1, [this] { Check1_Click(); });
    return frame;
}

void frmMAINQZ7740::buildMenus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    QMenu* view = menuBar()->addMenu(QStringLiteral("View"));
    view->setObjectName(QStringLiteral("mnuView"));
    QMenu* help = menuBar()->addMenu(QStringLiteral("Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    auto entry = [this](QMenu* menu, const char* name, const char* caption,
                        std::function<void()> action) {
        QAction* a = menu->addAction(QString::fromLatin1(caption));
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, [action] { action(); });
        return a;
    };
    // The console is never unloaded: it holds the word box that shows every word sent.
    entry(file, "mnuClose", "Close", [this] { hide(); });
    entry(file, "mnuExit", "Exit", [] { forms::endProgram(); });
    struct Target {
        const char* name;
        const char* caption;
        const char* form;
        QMenu* menu;
    };
    const Target targets[] = {
        {"mnuMain", "Main Menu", "frmMain", view},
        {"mnuPOT", "Sweep Voltage Measurements", "frmMeasure", view},
        {"mnuMeas", "Diagnostic functions", "frmDIAG", view},
        {"mnuComp", "Compensation Registers", "frmCompensation", view},
        {"mnuAbout", "About", "frmAbout", help},
    };
    for (const Target& t : targets) {
        const QString form = QString::fromLatin1(t.form);
        QAction* a = entry(t.menu, t.name, t.caption, [this, form] { nav.show(form); });
        // A panel this program does not have yet cannot be opened.
        connect(t.menu, &QMenu::aboutToShow, a, [this, a, form] { a->setEnabled(nav.has(form)); });
        a->setEnabled(nav.has(form));
    }
}

void frmMAINQZ7740::Form_Load() {
    qz::General& g = session.general;
    session.usb.LoadUSB();
    QZ7740->setCurrentIndex(0);
    g.SYSreg = qz::kSYSregStart;
    session.usb.SendRequest(228, 1);  // SW8130 channel 1
    session.usb.SendRequest(229);     // SW8130 enabled
    session.usb.SendRequest(226);     // /HW-INH not inhibiting
    session.SPIout(g.SYSreg);
    session.SPIout(g.SYSreg);
    DecToBinSYS(g.SYSreg);
    g.PMUreg = qz::kPMUregStart;
    session.SPIout(g.PMUreg);
    DecToBinPMU(g.PMUreg);
    g.DPS2reg = qz::kDPS2regStart;
    session.SPIout(g.DPS2reg);
    DecToBinDPS2(g.DPS2reg);
    g.ALMreg = qz::kALMregStart;
    session.SPIout(g.ALMreg);
    compDACread = 0x930000;
    session.usb.SendRequest(229);
    session.usb.SendRequest(234);  // CL EN pin on
    optRef_Click(0);
    Text1->setText(QString::fromStdString(qz::NumberToHex(g.SYSreg, 6)));
    // The front panel takes over once the program has one.
    if (nav.has(QStringLiteral("frmMain"))) {
        hide();
        nav.show(QStringLiteral("frmMain"));
    } else {
        show();
    }
}

void frmMAINQZ7740::QZ7740_Click(int) {
    const qz::General& g = session.general;
    showWord(g.SYSreg);
    switch (QZ7740->currentIndex()) {
    case 0: showWord(g.SYSreg); break;
    case 1: showWord(g.PMUreg); break;
    case 2: showWord(g.DAClast); break;
    case 3: showWord(g.ALMreg); break;
    case 7: showWord(compDACread); break;
    case 8: READCOMP_Click(); break;
    default: break;
    }
}

void frmMAINQZ7740::showWord(int32_t word) {
    Text1->setText(QString::fromStdString(qz::NumberToHex(word, 6)));
}

void frmMAINQZ7740::Text1_KeyPress(int keyAscii) {
    if (keyAscii != 13 || session.general.entryBusy) return;
    const qz::FieldCheck c = qz::checkWordEntry(Text1->text().toStdString());
    if (!c.ok) {
        forms::refuseEntry(Text1, c.message);
        return;
    }
    Text1->setText(QString::fromStdString(c.text));
    session.SPIout(c.value);
}

void frmMAINQZ7740::Text1_LostFocus() {
    const qz::FieldCheck c = qz::checkWordOnLeave(Text1->text().toStdString());
    if (!c.ok) {
        forms::refuseEntry(Text1, c.message);
        return;
    }
    Text1->setText(QString::fromStdString(c.text));
}

void frmMAINQZ7740::cmdREADADC_Click() {
    session.usb.SendRequest(232);
    const int32_t code = session.usb.ReadADCWord();
    lblREADSPI->setText(QString::fromStdString(qz::NumberToHex(code, 6)));
}

void frmMAINQZ7740::cmdRESET_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(219);
    Text1->setText(QStringLiteral("000000"));
    // Reading the alarm status with clear drops the alarms the reset left latched.
    session.SPIout(0xC40000);
}

void frmMAINQZ7740::cmdEXIT_Click() { forms::endProgram(); }

void frmMAINQZ7740::Check1_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(Check1->isChecked() ? 229 : 230);
}

void frmMAINQZ7740::optComp0_Click(int index) {
    if (session.general.entryBusy) return;
    if (session.general.SYSreg & 0x2000) {
        session.usb.SendRequest(228, index, false);
    } else {
        // With MEASOUT gain 1 the switch is not moved: the output stays on ground.
        forms::selectOption(optComp0[3]);
    }
}
