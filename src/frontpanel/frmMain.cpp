// The front panel as the operator sees it: the force voltage and its limits on the left,
// the channel, clamps, MEASOUT and system settings in the middle, the alarms on the right,
// and the words, the reads and the ways to the other panels along the bottom.

#include "frontpanel/frmMain.h"

#include "forms/Build.h"
#include "forms/Reference.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "forms/Lamp.h"
#include "forms/Menus.h"
#include "levels/FieldTable.h"
#include "levels/Ranges.h"
#include "registers/AlarmStatus.h"
#include "registers/Compensation.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using forms::makeButton;
using forms::makeCaption;
using forms::makeCheck;
using forms::makeFrame;
using forms::makeList;

frmMain::frmMain(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, forms::Form::frmMain, QStringLiteral("QZ7740 Main Menu"), parent) {
    using forms::Form;
    using forms::Menu;
    using forms::MenuAction;
    forms::buildMenuBar(*this, {
        {Menu::File, "mnuExit", "Exit", MenuAction::Exit},
        {Menu::View, "mnuSweep", "Sweep Voltage Measurements", MenuAction::Show, Form::frmMeasure},
        {Menu::View, "mnuDiag", "Diagnostic Register", MenuAction::Show, Form::frmDIAG},
        {Menu::View, "mnuIndi", "Individual Control register", MenuAction::Show, Form::frmMAINQZ7740},
        {Menu::View, "mnuComp", "Compensation Register", MenuAction::Show, Form::frmCompensation},
        {Menu::Help, "mnuAbout", "About", MenuAction::Show, Form::frmAbout},
    });

    auto* central = new QWidget(this);
    auto* v = new QVBoxLayout(central);
    auto* columns = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addWidget(buildForceFrame());
    left->addWidget(buildClampFrame());
    left->addStretch(1);
    auto* middle = new QVBoxLayout;
    middle->addWidget(buildChannelFrame());
    middle->addWidget(buildMeasureFrame());
    middle->addWidget(buildSystemFrame());
    middle->addStretch(1);
    auto* right = new QVBoxLayout;
    right->addWidget(buildAlarmFrame());
    right->addWidget(buildCompensationFrame());
    right->addStretch(1);
    columns->addLayout(left);
    columns->addLayout(middle);
    columns->addLayout(right);
    v->addLayout(columns, 1);
    v->addWidget(buildWordBar());
    setCentralWidget(central);
    wire();
}

QWidget* frmMain::buildForceFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("FORCE VOLTAGE"), this);
    auto* g = new QGridLayout(frame);
    txtV = forms::makeNumberBox("txtV", "", frame);
    forms::addRow(g, 0, "Force", {txtV}, "V");
    OFFSETx1 = forms::makeEntryBox(qz::hexField(qz::HexFieldId::frmMain_OFFSETx1), frame, 0);
    forms::addRow(g, 1, "Offset DAC", {OFFSETx1});
    txtDaccode = forms::makeReadingBox("txtDaccode", frame);
    forms::addRow(g, 2, "FIN DAC code", {txtDaccode});
    txtOutputV = forms::makeReadingBox("txtOutputV", frame);
    forms::addRow(g, 3, "Output", {txtOutputV}, "V");
    txtOutputVl = forms::makeReadingBox("txtOutputVl", frame);
    forms::addRow(g, 4, "Z/S", {txtOutputVl}, "V");
    txtOutputVh = forms::makeReadingBox("txtOutputVh", frame);
    forms::addRow(g, 5, "F/S", {txtOutputVh}, "V");

    g->addWidget(forms::buildReferenceFrame(frame, optRef, txtVREF), 6, 0, 1, 3);
    g->setColumnStretch(3, 1);
    return frame;
}

QWidget* frmMain::buildChannelFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("CURRENT RANGE"), this);
    auto* g = new QGridLayout(frame);
    cboCurrent = makeList(QStringLiteral("cboCurrent"), forms::itemsOf(qz::kRangeStartNames),
                          QString(), frame);
    g->addWidget(cboCurrent, 0, 0, 1, 2);
    chkPD = makeCheck(QStringLiteral("chkPD"), QStringLiteral("Power Up DPS"), true, frame);
    chkENABLECH = makeCheck(QStringLiteral("chkENABLECH"), QStringLiteral("Enable DPS(/SW-INH)"), true, frame);
    g->addWidget(chkPD, 1, 0);
    g->addWidget(chkENABLECH, 1, 1);
    return frame;
}

QWidget* frmMain::buildClampFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("CLAMPS"), this);
    auto* g = new QGridLayout(frame);
    chkCLAMPEN = makeCheck(QStringLiteral("chkCLAMPEN"), QStringLiteral("Enable Current Clamp"), true, frame);
    g->addWidget(chkCLAMPEN, 0, 0, 1, 3);
    txtclamph = forms::makeNumberBox("txtclamph", "", frame);
    txtClampl = forms::makeNumberBox("txtClampl", "", frame);
    forms::addRow(g, 1, "High Clamp", {txtclamph});
    forms::addRow(g, 2, "Low Clamp", {txtClampl});
    // One unit for both clamps: it follows the range.
    lblmA = forms::makeLabel(QStringLiteral("lblmA"), QString(), frame);
    g->addWidget(lblmA, 1, 2, 2, 1, Qt::AlignVCenter);
    txtEXT1rsense = forms::makeNumberBox(qz::ktxtEXT1rsense.name, qz::ktxtEXT1rsense.startText, frame);
    txtEXT2Rsense = forms::makeNumberBox(qz::ktxtEXT2Rsense.name, qz::ktxtEXT2Rsense.startText, frame);
    forms::addRow(g, 3, "EXT1 Rsense", {txtEXT1rsense}, "\u03A9");
    forms::addRow(g, 4, "EXT2 Rsense", {txtEXT2Rsense}, "\u03A9");
    g->setColumnStretch(3, 1);
    return frame;
}

QWidget* frmMain::buildMeasureFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("MEASURE"), this);
    auto* g = new QGridLayout(frame);
    cboMEASURE = forms::makeFieldList("cboMEASURE", QStringLiteral("MEASOUT = VSENSE"), frame);
    g->addWidget(cboMEASURE, 0, 0, 1, 2);
    QGroupBox* gains = makeFrame(QStringLiteral("GAIN SETTING"), frame);
    auto* gv = new QVBoxLayout(gains);
    IMEASG = forms::makeFieldList("IMEASG", QStringLiteral("I MEAS GAIN =20"), gains);
    MEASOUTG = forms::makeFieldList("MEASOUTG", QStringLiteral("MEASOUT GAIN = 0.2"), gains);
    gv->addWidget(IMEASG);
    gv->addWidget(MEASOUTG);
    g->addWidget(gains, 1, 0);
    QGroupBox* compare = makeFrame(QStringLiteral("COMPARE"), frame);
    auto* cv = new QVBoxLayout(compare);
    cboCompare = forms::makeFieldList("cboCompare", QStringLiteral("Compare o/p Hi-Z"), compare);
    cv->addWidget(cboCompare);
    cv->addStretch(1);
    g->addWidget(compare, 1, 1);
    return frame;
}

QWidget* frmMain::buildSystemFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("SYSTEM"), this);
    auto* g = new QGridLayout(frame);
    cboSlave = forms::makeFieldList("cboSlave", QStringLiteral("MASTER - Copy Voltage"), frame);
    cboSlew = forms::makeFieldList("cboSlew", QStringLiteral("1 V/us"), frame);
    cboSysforce = forms::makeFieldList("cboSysforce", QStringLiteral("SYSTEM FORCE/SENSE OPEN"), frame);
    tempset = forms::makeFieldList("tempset", QStringLiteral("ENABLED AT 130degC"), frame);
    forms::addRow(g, 0, "GANG MODE", {cboSlave});
    forms::addRow(g, 1, "SLEW RATE", {cboSlew});
    forms::addRow(g, 2, "SYSTEM FORCE/SENSE CONNECTION", {cboSysforce});
    forms::addRow(g, 3, "DIE THERMAL SHUTDOWN", {tempset});
    chk10k = makeCheck(QStringLiteral("chk10k"), QStringLiteral("10K Resistor connected between Force/Sense"),
                       false, frame);
    chkGPO = makeCheck(QStringLiteral("chkGPO"), QStringLiteral("GPO"), false, frame);
    g->addWidget(chk10k, 4, 0, 1, 2);
    g->addWidget(chkGPO, 5, 0, 1, 2);
    return frame;
}

QWidget* frmMain::buildAlarmFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("ALARMS"), this);
    auto* g = new QGridLayout(frame);
    std::array<forms::Lamp*, 2>* lamps[6] = {&cmdTEMP, &cmdosalm, &cmddut, &cmdclamp, &cmdguard, &cmdcpo};
    // The table lists the lamps two to a row, latched first.
    for (size_t i = 0; i < std::size(qz::kAlarmLamps); ++i) {
        const qz::AlarmLampRow& row = qz::kAlarmLamps[i];
        const int r = static_cast<int>(i / 2);
        auto* lamp = new forms::Lamp(forms::member(row.lamp, row.member), frame);
        (*lamps[r])[static_cast<size_t>(row.member)] = lamp;
        if (row.member == 0) g->addWidget(makeCaption(row.row, frame), r, 0);
        g->addWidget(lamp, r, 1 + row.member);
    }
    // At start every lamp is green; the comparator captions read low.
    for (auto* rowLamps : lamps)
        for (forms::Lamp* lamp : *rowLamps) lamp->set(qz::kGreen, QStringLiteral("OK"));
    cmdcpo[0]->set(qz::kGreen, QStringLiteral("L =  0"));
    cmdcpo[1]->set(qz::kGreen, QStringLiteral("H = 0"));
    cmdCheckAlarms = makeButton(QStringLiteral("cmdCheckAlarms"), QStringLiteral("Check Alarm Status"), frame);
    cmdCLEAR = makeButton(QStringLiteral("cmdCLEAR"), QStringLiteral("CLEAR"), frame);
    g->addWidget(cmdCheckAlarms, 6, 0, 1, 2);
    g->addWidget(cmdCLEAR, 6, 2);
    return frame;
}

QWidget* frmMain::buildCompensationFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("COMPENSATION"), this);
    auto* g = new QGridLayout(frame);
    autoComp = forms::makeAutoComp(frame, frame);
    for (int i = 0; i < 2; ++i) g->addWidget(autoComp.Option2[static_cast<size_t>(i)], i, 0, 1, 2);
    g->addWidget(autoComp.cboRC, 2, 0);
    g->addLayout(autoComp.milliohm, 2, 1);
    g->addWidget(autoComp.cboCR, 3, 0);
    g->addWidget(autoComp.Label9, 3, 1);
    cmdManualComp = makeButton(QStringLiteral("cmdManualComp"), QStringLiteral("GO TO MANUAL COMP"), frame);
    g->addWidget(cmdManualComp, 4, 0, 1, 2, Qt::AlignLeft);
    g->setColumnStretch(1, 1);
    return frame;
}

QWidget* frmMain::buildWordBar() {
    auto* bar = new QWidget(this);
    auto* g = new QGridLayout(bar);
    g->setContentsMargins(0, 0, 0, 0);
    txtWrite = forms::addCaptionedBox(g, 0, 0, "Write", QStringLiteral("txtWrite"));
    txtRead = forms::addCaptionedBox(g, 0, 1, "Read", QStringLiteral("txtRead"));

    auto* reads = new QHBoxLayout;
    readSYS = makeButton(QStringLiteral("readSYS"), QStringLiteral("READ SYS CONTR REG"), bar);
    Command4 = makeButton(QStringLiteral("Command4"), QStringLiteral("READ DPS1"), bar);
    readDPS2 = makeButton(QStringLiteral("readDPS2"), QStringLiteral("READ DPS2"), bar);
    Command5 = makeButton(QStringLiteral("Command5"), QStringLiteral("READ COMP1"), bar);
    readcomp2 = makeButton(QStringLiteral("readcomp2"), QStringLiteral("READ COMP2"), bar);
    for (QPushButton* b : {readSYS, Command4, readDPS2, Command5, readcomp2}) reads->addWidget(b);
    reads->addStretch(1);
    g->addLayout(reads, 1, 2);

    auto* ways = new QHBoxLayout;
    Command1 = makeButton(QStringLiteral("Command1"), QStringLiteral("SWEEP VOLTAGES - USE ADC"), bar);
    Command2 = makeButton(QStringLiteral("Command2"), QStringLiteral("DIAGNOSTIC FUNCTIONS"), bar);
    Command3 = makeButton(QStringLiteral("Command3"), QStringLiteral("COMPENSATION SETTINGS"), bar);
    Command6 = makeButton(QStringLiteral("Command6"), QStringLiteral("LOAD DACS"), bar);
    for (QPushButton* b : {Command1, Command2, Command3, Command6}) ways->addWidget(b);
    ways->addStretch(1);
    g->addLayout(ways, 2, 0, 1, 3);

    cmdRESET = makeButton(QStringLiteral("cmdRESET"), QStringLiteral("RESET QZ7740"), bar);
    cmdEXIT = makeButton(QStringLiteral("cmdEXIT"), QStringLiteral("EXIT"), bar);
    g->addWidget(cmdRESET, 1, 3);
    g->addWidget(cmdEXIT, 2, 3);
    g->setColumnStretch(2, 1);
    return bar;
}
