// The four write tabs of the console: system control, DPS1, DPS2 and alarm setup. A
// control changes its field in the shadow word and shows the word; a control with a twin
// on the front panel sets the twin, whose own operation sends the word at once.

#include "console/frmMAINQZ7740.h"

#include "board/Wire.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "levels/Ranges.h"
#include "registers/BitMirror.h"
#include "registers/FieldOps.h"
#include "registers/RegisterMap.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using forms::makeButton;
using forms::makeCheck;
using forms::makeCaption;
using forms::makeList;
using forms::makePage;

QWidget* frmMAINQZ7740::buildWriteSystemTab() {
    QVBoxLayout* v;
    QWidget* p = makePage(this, v);
    txtSYS = new forms::BitRow(QStringLiteral("txtSYS"), qz::rowCaptions(qz::kSystemControlLabels), p);
    v->addWidget(txtSYS, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    chkPD = makeCheck(QStringLiteral("chkPD"), QStringLiteral("/POWER DOWN"), true, p);
    chkFINGND = makeCheck(QStringLiteral("chkFINGND"), QStringLiteral("FIN connected to GND"), false, p);
    CPEN = makeCheck(QStringLiteral("CPEN"), QStringLiteral("ENABLE COMPARATOR AS WINDOW"), false, p);
    grid->addWidget(chkPD, 0, 0);
    grid->addWidget(chkFINGND, 1, 0);
    grid->addWidget(CPEN, 2, 0);
    MEASOUTG = forms::makeFieldList("MEASOUTG", QStringLiteral("MEASOUT GAIN = 0.2"), p);
    IMEASG = forms::makeFieldList("IMEASG", QStringLiteral("I MEAS GAIN =20"), p);
    tempset = forms::makeFieldList("tempset", QStringLiteral("ENABLED AT 130degC"), p);
    grid->addWidget(makeCaption("MEASOUT GAIN", p), 0, 1);
    grid->addWidget(MEASOUTG, 0, 2);
    grid->addWidget(makeCaption("I MEAS GAIN", p), 1, 1);
    grid->addWidget(IMEASG, 1, 2);
    grid->addWidget(makeCaption("DIE THERMAL SHUTDOWN", p), 2, 1);
    grid->addWidget(tempset, 2, 2);
    grid->setColumnStretch(3, 1);
    v->addLayout(grid);

    auto* row = new QHBoxLayout;
    cmdWRITESYS = makeButton(QStringLiteral("cmdWRITESYS"), QStringLiteral("WRITE SYSTEM CONTROL REGISTER"), p);
    row->addWidget(cmdWRITESYS);
    row->addStretch(1);
    Command1 = makeButton(QStringLiteral("Command1"), QStringLiteral("Read Silicon Rev"), p);
    Text2 = forms::makeHexBox(QStringLiteral("Text2"), QString(), 8, p);
    Text2->setReadOnly(true);
    row->addWidget(Command1);
    row->addWidget(Text2);
    v->addLayout(row);
    v->addStretch(1);

    for (QComboBox* l : {MEASOUTG, IMEASG, tempset}) forms::swallowKeys(l);
    fields({MEASOUTG, IMEASG, tempset, chkPD, chkFINGND, CPEN});
    forms::onClick(cmdWRITESYS, [this] { cmdWRITESYS_Click(); });
    forms::onClick(Command1, [this] { Command1_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildWriteDPS1Tab() {
    QVBoxLayout* v;
    QWidget* p = makePage(this, v);
    txtPMU = new forms::BitRow(QStringLiteral("txtPMU"), qz::rowCaptions(qz::kDPS1Labels), p);
    v->addWidget(txtPMU, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    chkHWINHB = makeCheck(QStringLiteral("chkHWINHB"), QStringLiteral("/HW-INH"), true, p);
    chkENABLECH = makeCheck(QStringLiteral("chkENABLECH"), QStringLiteral("/SW-INH"), true, p);
    chkMEASOUT = makeCheck(QStringLiteral("chkMEASOUT"), QStringLiteral("MEASOUT ENABLE"), true, p);
    chkCLEN = makeCheck(QStringLiteral("chkCLEN"), QStringLiteral("CL EN (Hardware Pin)"), true, p);
    chkCLAMPEN = makeCheck(QStringLiteral("chkCLAMPEN"), QStringLiteral("CL EN (Software Bit)"), true, p);
    int r = 0;
    for (QCheckBox* c : {chkHWINHB, chkENABLECH, chkMEASOUT, chkCLEN, chkCLAMPEN}) grid->addWidget(c, r++, 0);
    cboCurrent = makeList(QStringLiteral("cboCurrent"), forms::itemsOf(qz::kConsoleRangeNames),
                          QStringLiteral("2.5mA"), p);
    cboMEASURE = forms::makeFieldList("cboMEASURE", QStringLiteral("MEASOUT = VSENSE"), p);
    cboCompare = forms::makeFieldList("cboCompare", QStringLiteral("Compare o/p Hi-Z"), p);
    grid->addWidget(makeCaption("CURRENT RANGE", p), 0, 1);
    grid->addWidget(cboCurrent, 0, 2);
    grid->addWidget(makeCaption("MEASOUT", p), 1, 1);
    grid->addWidget(cboMEASURE, 1, 2);
    grid->addWidget(makeCaption("COMPARATOR", p), 2, 1);
    grid->addWidget(cboCompare, 2, 2);
    grid->setColumnStretch(3, 1);
    v->addLayout(grid);
    cmdWRITEPMU = makeButton(QStringLiteral("cmdWRITEPMU"), QStringLiteral("WRITE DPS1 REGISTER"), p);
    v->addWidget(cmdWRITEPMU, 0, Qt::AlignLeft);
    v->addStretch(1);

    for (QComboBox* l : {cboCurrent, cboMEASURE, cboCompare}) forms::swallowKeys(l);
    fields({cboCurrent, cboMEASURE, cboCompare, chkENABLECH, chkMEASOUT, chkCLAMPEN});
    forms::onClick(chkHWINHB, [this] { chkHWINHB_Click(); });
    forms::onClick(chkCLEN, [this] { chkCLEN_Click(); });
    forms::onClick(cmdWRITEPMU, [this] { cmdWRITEPMU_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildWriteDPS2Tab() {
    QVBoxLayout* v;
    QWidget* p = makePage(this, v);
    txtDPS2 = new forms::BitRow(QStringLiteral("txtDPS2"), qz::rowCaptions(qz::kDPS2Labels), p);
    v->addWidget(txtDPS2, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    cboSlave = forms::makeFieldList("cboSlave", QStringLiteral("MASTER"), p);
    cboSlew = forms::makeFieldList("cboSlew", QStringLiteral("1 V/us"), p);
    cboSysforce = forms::makeFieldList("cboSysforce", QStringLiteral("SYSTEM FORCE/SENSE Disconnected"), p);
    grid->addWidget(makeCaption("GANG MODE", p), 0, 0);
    grid->addWidget(cboSlave, 0, 1);
    grid->addWidget(makeCaption("SLEW RATE", p), 1, 0);
    grid->addWidget(cboSlew, 1, 1);
    grid->addWidget(makeCaption("SYSTEM FORCE/SENSE CONNECTION", p), 2, 0);
    grid->addWidget(cboSysforce, 2, 1);
    chkGPO = makeCheck(QStringLiteral("chkGPO"), QStringLiteral("GPO"), false, p);
    chk10k = makeCheck(QStringLiteral("chk10k"), QStringLiteral("10K Resistor connected between Force/Sense"), false, p);
    Check2 = makeCheck(QStringLiteral("Check2"), QStringLiteral("Bit 7 Guard Disable"), false, p);
    grid->addWidget(chkGPO, 0, 2);
    grid->addWidget(chk10k, 1, 2);
    grid->addWidget(Check2, 2, 2);
    grid->setColumnStretch(3, 1);
    v->addLayout(grid);
    cmdWriteDPS2 = makeButton(QStringLiteral("cmdWriteDPS2"), QStringLiteral("WRITE DPS2 REGISTER"), p);
    v->addWidget(cmdWriteDPS2, 0, Qt::AlignLeft);
    v->addStretch(1);

    forms::swallowKeys(cboSysforce);
    fields({cboSlave, cboSlew, cboSysforce, chkGPO, chk10k, Check2});
    forms::onClick(cmdWriteDPS2, [this] { cmdWriteDPS2_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildAlarmSetupTab() {
    QVBoxLayout* v;
    QWidget* p = makePage(this, v);
    txtWALM = new forms::BitRow(QStringLiteral("txtWALM"), qz::rowCaptions(qz::kAlarmSetupLabels), p);
    for (int k = 0; k < 24; ++k) txtWALM->setDigit(k, '0');
    v->addWidget(txtWALM, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    const char* groups[5] = {"TMPALM", "OSALM", "DUTALM", "CLALM", "GRDALM"};
    for (int a = 0; a < 5; ++a) {
        QGroupBox* g = forms::makeFrame(QString::fromLatin1(groups[a]), p);
        auto* gv = new QVBoxLayout(g);
        for (int j = 0; j < 2; ++j) {
            const int n = 2 * a + 1 + j;  // chk1 latches TMPALM, chk2 disables it, ...
            chk[static_cast<size_t>(n)] = makeCheck(QStringLiteral("chk%1").arg(n),
                                                    j == 0 ? QStringLiteral("LATCH") : QStringLiteral("DISABLE"),
                                                    j == 0, g);
            gv->addWidget(chk[static_cast<size_t>(n)]);
            fields({chk[static_cast<size_t>(n)]});
        }
        grid->addWidget(g, 0, a);
    }
    grid->setColumnStretch(5, 1);
    v->addLayout(grid);
    cmdALAM = makeButton(QStringLiteral("cmdALAM"), QStringLiteral("WRITE ALARM REGISTER"), p);
    v->addWidget(cmdALAM, 0, Qt::AlignLeft);
    v->addStretch(1);
    forms::onClick(cmdALAM, [this] { cmdALAM_Click(); });
    return p;
}

void frmMAINQZ7740::fields(std::initializer_list<QWidget*> controls) {
    forms::onClicks(controls, [this](const QString& name) {
        fieldClick(name);
        return forms::Outcome{};
    });
}

void frmMAINQZ7740::fieldClick(const QString& name) {
    const qz::ControlOps* ops = qz::findControl(name.toStdString());
    QWidget* control = findChild<QWidget*>(name);
    if (!ops || !control) return;
    const int item = forms::itemOf(control);
    if (item < 0) return;

    using qz::FieldEffect;
    if (ops->effect == FieldEffect::GainWarning && item == 1) nav.show(forms::Form::frmMEASOUTGAIN);
    int32_t& word = qz::shadowWord(session.general, ops->shadow);
    word = qz::applyField(word, *ops, item);
    switch (ops->effect) {
    case FieldEffect::CurrentGain: session.general.imeasGain = qz::currentGainOf(item); break;
    case FieldEffect::SendAtOnce: session.SPIout(word); break;
    case FieldEffect::AlarmDigit: txtWALM->setDigit(qz::alarmBitOf(*ops), item == 1 ? '1' : '0'); break;
    default: break;
    }
    if (ops->twin) forms::setTwin(nav, forms::Form::frmMain, name, item);
    showWord(word);
}

void frmMAINQZ7740::cmdWRITESYS_Click() {
    session.SPIout(session.general.SYSreg);
    DecToBinSYS(session.general.SYSreg);
}

void frmMAINQZ7740::cmdWRITEPMU_Click() {
    qz::General& g = session.general;
    g.PMUreg &= 0x2FFF0;
    showWord(g.PMUreg);
    session.SPIout(g.PMUreg);
    DecToBinPMU(g.PMUreg);
}

void frmMAINQZ7740::cmdWriteDPS2_Click() {
    showWord(session.general.DPS2reg);
    session.SPIout(session.general.DPS2reg);
    DecToBinDPS2(session.general.DPS2reg);
}

void frmMAINQZ7740::cmdALAM_Click() {
    qz::General& g = session.general;
    g.ALMreg |= 0x060000;
    // Each box puts its own bit back, so the word is rebuilt from the boxes.
    for (int n = 1; n <= 10; ++n) forms::click(chk[static_cast<size_t>(n)]);
    showWord(g.ALMreg);
    session.SPIout(g.ALMreg);
}

void frmMAINQZ7740::Command1_Click() {
    // Opens the chip's test registers, reads the revision and closes them again.
    for (int32_t key : qz::wire::kRevisionKeys) session.SPIout(key);
    const int32_t revision = session.readWord(qz::wire::kRevisionRead) & 0xFF;
    Text2->setText(forms::hexText(revision, 6));
    session.SPIout(qz::wire::kRevisionClose);
}

void frmMAINQZ7740::chkHWINHB_Click() {
    session.usb.SendRequest(chkHWINHB->isChecked() ? qz::wire::kHwInhibitOff : qz::wire::kHwInhibitOn);
}

void frmMAINQZ7740::chkCLEN_Click() {
    session.usb.SendRequest(chkCLEN->isChecked() ? qz::wire::kClampPinOn : qz::wire::kClampPinOff);
}

void frmMAINQZ7740::DecToBinSYS(int32_t word) { txtSYS->mirror(word, qz::kDecToBinSYS); }
void frmMAINQZ7740::DecToBinPMU(int32_t word) { txtPMU->mirror(word, qz::kDecToBinPMU); }
void frmMAINQZ7740::DecToBinDPS2(int32_t word) { txtDPS2->mirror(word, qz::kDecToBinDPS2); }
