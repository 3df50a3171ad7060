#include "console/frmMAINQZ7740.h"

#include "board/Wire.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/Menus.h"
#include "forms/MessageBox.h"
#include "forms/TabControl.h"
#include "levels/EntryField.h"
#include "registers/RegisterMap.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using forms::makeButton;

frmMAINQZ7740::frmMAINQZ7740(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, forms::Form::frmMAINQZ7740, QStringLiteral("QZ7740 MAIN MENU"), parent) {
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
    using forms::Form;
    using forms::Menu;
    using forms::MenuAction;
    // The console is never unloaded: it holds the word box that shows every word sent.
    forms::buildMenuBar(*this, {
        {Menu::File, "mnuClose", "Close", MenuAction::Hide},
        {Menu::File, "mnuExit", "Exit", MenuAction::Exit},
        {Menu::View, "mnuMain", "Main Menu", MenuAction::Show, Form::frmMain},
        {Menu::View, "mnuPOT", "Sweep Voltage Measurements", MenuAction::Show, Form::frmMeasure},
        {Menu::View, "mnuMeas", "Diagnostic functions", MenuAction::Show, Form::frmDIAG},
        {Menu::View, "mnuComp", "Compensation Registers", MenuAction::Show, Form::frmCompensation},
        {Menu::Help, "mnuAbout", "About", MenuAction::Show, Form::frmAbout},
    });
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
    // The word box takes typing here: any word can be sent by hand.
    Text1 = forms::addCaptionedBox(words, 0, 0, "WRITE", QStringLiteral("Text1"));
    Text1->setReadOnly(false);
    lblREADSPI = forms::addCaptionedBox(words, 0, 1, "READ", QStringLiteral("lblREADSPI"));
    lblREADSPI->setFocusPolicy(Qt::NoFocus);
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
    forms::onClick(cmdREADADC, [this] { cmdREADADC_Click(); });
    forms::onClick(cmdRESET, [this] { cmdRESET_Click(); });
    forms::onClick(cmdEXIT, [this] { cmdEXIT_Click(); });
    return bar;
}

QWidget* frmMAINQZ7740::buildSwitchPanel() {
    QGroupBox* frame = forms::makeFrame(QStringLiteral("SW8130 CH Select"), this);
    auto* g = new QGridLayout(frame);
    Check1 = forms::makeCheck(QStringLiteral("Check1"), QStringLiteral("SWITCH ENABLED"), true, frame);
    g->addWidget(Check1, 0, 0, 1, 4);
    g->addWidget(forms::makeCaption("Output", frame), 1, 0, 1, 4);
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

void frmMAINQZ7740::Form_Load() {
    session.usb.LoadUSB();
    PowerOn();
}

void frmMAINQZ7740::PowerOn() {
    qz::General& g = session.general;
    QZ7740->setCurrentIndex(0);
    g.SYSreg = qz::kSYSregStart;
    session.usb.SendRequest(qz::wire::kSwitchChannel, 1);
    session.usb.SendRequest(qz::wire::kSwitchEnable);
    session.usb.SendRequest(qz::wire::kHwInhibitOff);
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
    compDACread = qz::readCommandOf(qz::comparatorAddress(qz::Comparator::CPL, 0, qz::DacMember::X1));
    session.usb.SendRequest(qz::wire::kSwitchEnable);
    session.usb.SendRequest(qz::wire::kClampPinOn);
    forms::show(optRef_Click(0));
    showWord(g.SYSreg);
    // The front panel takes over once the program has one.
    if (nav.has(forms::Form::frmMain)) {
        hide();
        nav.show(forms::Form::frmMain);
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

void frmMAINQZ7740::showWord(int32_t word) { Text1->setText(forms::hexText(word, 6)); }

void frmMAINQZ7740::Text1_KeyPress(int keyAscii) {
    if (keyAscii != 13 || session.general.entryBusy) return;
    const qz::FieldCheck c = qz::checkWordEntry(Text1->text().toStdString());
    const forms::Outcome o = forms::take(Text1, c);
    forms::show(o);
    if (o) session.SPIout(c.value);
}

void frmMAINQZ7740::Text1_LostFocus() {
    forms::show(forms::take(Text1, qz::checkWordOnLeave(Text1->text().toStdString())));
}

void frmMAINQZ7740::cmdREADADC_Click() {
    session.usb.SendRequest(qz::wire::kAdcConvert);
    lblREADSPI->setText(forms::hexText(session.usb.ReadADCWord(), 6));
}

void frmMAINQZ7740::cmdRESET_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(qz::wire::kChipReset);
    Text1->setText(QStringLiteral("000000"));
    // Reading the alarm status with clear drops the alarms the reset left latched.
    session.SPIout(qz::readCommandOf(qz::reg::kAlarmStatusClear));
}

void frmMAINQZ7740::cmdEXIT_Click() { forms::endProgram(); }

void frmMAINQZ7740::Check1_Click() {
    if (session.general.entryBusy) return;
    session.usb.SendRequest(Check1->isChecked() ? qz::wire::kSwitchEnable : qz::wire::kSwitchDisable);
}

void frmMAINQZ7740::optComp0_Click(int index) {
    if (session.general.entryBusy) return;
    if (session.general.SYSreg & 0x2000) {
        session.usb.SendRequest(qz::wire::kSwitchChannel, index, false);
    } else {
        // With MEASOUT gain 1 the switch is not moved: the output stays on ground.
        forms::selectOption(optComp0[3]);
    }
}
