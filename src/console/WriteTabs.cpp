// The four write tabs of the console: system control, DPS1, DPS2 and alarm setup. A
// control changes its field in the shadow word and shows the word; a control with a twin
// on the front panel sets the twin, whose own operation sends the word at once.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "registers/BitMirror.h"
#include "registers/FieldOps.h"
#include "registers/HexText.h"
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
using forms::makeList;

namespace {

QWidget* page(QWidget* parent, QVBoxLayout*& v) {
    auto* p = new QWidget(parent);
    v = new QVBoxLayout(p);
    return p;
}

QLabel* caption(const char* text, QWidget* parent) {
    return new QLabel(QString::fromLatin1(text), parent);
}

} // namespace

QWidget* frmMAINQZ7740::buildWriteSystemTab() {
    QVBoxLayout* v;
    QWidget* p = page(this, v);
    txtSYS = new forms::BitRow(QStringLiteral("txtSYS"), qz::rowCaptions(qz::kSystemControlLabels), p);
    v->addWidget(txtSYS, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    chkPD = makeCheck(QStringLiteral("chkPD"), QStringLiteral("/POWER DOWN"), true, p);
    chkFINGND = makeCheck(QStringLiteral("chkFINGND"), QStringLiteral("FIN connected to GND"), false, p);
    CPEN = makeCheck(QStringLiteral("CPEN"), QStringLiteral("ENABLE COMPARATOR AS WINDOW"), false, p);
    grid->addWidget(chkPD, 0, 0);
    grid->addWidget(chkFINGND, 1, 0);
    grid->addWidget(CPEN, 2, 0);
    MEASOUTG = makeList(QStringLiteral("MEASOUTG"), {"MEASOUT GAIN =0.2", "MEASOUT GAIN = 1"},
                        QStringLiteral("MEASOUT GAIN = 0.2"), p);
    IMEASG = makeList(QStringLiteral("IMEASG"), {"I MEAS GAIN = 20", "I MEAS GAIN = 10"},
                      QStringLiteral("I MEAS GAIN =20"), p);
    tempset = makeList(QStringLiteral("tempset"),
                       {"TJ = 130degC", "TJ = 120degC", "TJ = 110degC", "TJ = 100degC"},
                       QStringLiteral("ENABLED AT 130degC"), p);
    grid->addWidget(caption("MEASOUT GAIN", p), 0, 1);
    grid->addWidget(MEASOUTG, 0, 2);
    grid->addWidget(caption("I MEAS GAIN", p), 1, 1);
    grid->addWidget(IMEASG, 1, 2);
    grid->addWidget(caption("DIE THERMAL SHUTDOWN", p), 2, 1);
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

    for (QComboBox* l : {MEASOUTG, IMEASG, tempset}) {
        forms::swallowKeys(l);
        field(l);
    }
    for (QCheckBox* c : {chkPD, chkFINGND, CPEN}) field(c);
    connect(cmdWRITESYS, &QPushButton::clicked, this, [this] { cmdWRITESYS_Click(); });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildWriteDPS1Tab() {
    QVBoxLayout* v;
    QWidget* p = page(this, v);
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
    cboCurrent = makeList(QStringLiteral("cboCurrent"),
                          {"\xC2\xB1" "5uA", "\xC2\xB1" "25uA", "\xC2\xB1" "250uA", "\xC2\xB1" "2.5mA",
                           "\xC2\xB1" "25mA", "\xC2\xB1" "Ext Range 2", "\xC2\xB1" "Ext Range1"},
                          QStringLiteral("2.5mA"), p);
    cboMEASURE = makeList(QStringLiteral("cboMEASURE"),
                          {"MEASOUT Hi-Z ", "MEASOUT = ISENSE", "MEASOUT = VSENSE", "MEASOUT = KSENSE",
                           "MEASOUT = TSENSE", "MEASOUT = DUTGND SENSE", "MEASOUT = DIAG A",
                           "MEASOUT = DIAG B"},
                          QStringLiteral("MEASOUT = VSENSE"), p);
    cboCompare = makeList(QStringLiteral("cboCompare"),
                          {"Compare o/p Hi-Z", "Compare o/p Hi-Z", "Compare Current", "Compare Voltage"},
                          QStringLiteral("Compare o/p Hi-Z"), p);
    grid->addWidget(caption("CURRENT RANGE", p), 0, 1);
    grid->addWidget(cboCurrent, 0, 2);
    grid->addWidget(caption("MEASOUT", p), 1, 1);
    grid->addWidget(cboMEASURE, 1, 2);
    grid->addWidget(caption("COMPARATOR", p), 2, 1);
    grid->addWidget(cboCompare, 2, 2);
    grid->setColumnStretch(3, 1);
    v->addLayout(grid);
    cmdWRITEPMU = makeButton(QStringLiteral("cmdWRITEPMU"), QStringLiteral("WRITE DPS1 REGISTER"), p);
    v->addWidget(cmdWRITEPMU, 0, Qt::AlignLeft);
    v->addStretch(1);

    for (QComboBox* l : {cboCurrent, cboMEASURE, cboCompare}) {
        forms::swallowKeys(l);
        field(l);
    }
    for (QCheckBox* c : {chkENABLECH, chkMEASOUT, chkCLAMPEN}) field(c);
    forms::onClick(chkHWINHB, [this] { chkHWINHB_Click(); });
    forms::onClick(chkCLEN, [this] { chkCLEN_Click(); });
    connect(cmdWRITEPMU, &QPushButton::clicked, this, [this] { cmdWRITEPMU_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildWriteDPS2Tab() {
    QVBoxLayout* v;
    QWidget* p = page(this, v);
    txtDPS2 = new forms::BitRow(QStringLiteral("txtDPS2"), qz::rowCaptions(qz::kDPS2Labels), p);
    v->addWidget(txtDPS2, 0, Qt::AlignLeft);

    auto* grid = new QGridLayout;
    cboSlave = makeList(QStringLiteral("cboSlave"),
                        {"MASTER - Copy Voltage", "MASTER - Copy Current", "SLAVE - FV", "SLAVE - F1"},
                        QStringLiteral("MASTER"), p);
    cboSlew = makeList(QStringLiteral("cboSlew"),
                       {"1 V/us", "0.875 V/us", "0.75 V/us", "0.625 V/us", "0.5 V/us", "0.4375 V/us",
                        "0.35 V/us", "0.3125 V/us"},
                       QStringLiteral("1 V/us"), p);
    cboSysforce = makeList(QStringLiteral("cboSysforce"),
                           {"Hi-Z SYS_FORCE & SENSE", "CONNECT TO FOHx MEASVHx"},
                           QStringLiteral("SYSTEM FORCE/SENSE Disconnected"), p);
    grid->addWidget(caption("GANG MODE", p), 0, 0);
    grid->addWidget(cboSlave, 0, 1);
    grid->addWidget(caption("SLEW RATE", p), 1, 0);
    grid->addWidget(cboSlew, 1, 1);
    grid->addWidget(caption("SYSTEM FORCE/SENSE CONNECTION", p), 2, 0);
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
    for (QComboBox* l : {cboSlave, cboSlew, cboSysforce}) field(l);
    for (QCheckBox* c : {chkGPO, chk10k, Check2}) field(c);
    connect(cmdWriteDPS2, &QPushButton::clicked, this, [this] { cmdWriteDPS2_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildAlarmSetupTab() {
    QVBoxLayout* v;
    QWidget* p = page(this, v);
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
            field(chk[static_cast<size_t>(n)]);
        }
        grid->addWidget(g, 0, a);
    }
    grid->setColumnStretch(5, 1);
    v->addLayout(grid);
    cmdALAM = makeButton(QStringLiteral("cmdALAM"), QStringLiteral("WRITE ALARM REGISTER"), p);
    v->addWidget(cmdALAM, 0, Qt::AlignLeft);
    v->addStretch(1);
    connect(cmdALAM, &QPushButton::clicked, this, [this] { cmdALAM_Click(); });
    return p;
}

void frmMAINQZ7740::field(QComboBox* list) {
    const QString name = list->objectName();
    forms::onClick(list, [this, name] { fieldClick(name); });
}

void frmMAINQZ7740::field(QCheckBox* box) {
    const QString name = box->objectName();
    forms::onClick(box, [this, name] { fieldClick(name); });
}

int32_t& frmMAINQZ7740::shadowOf(const QString& control) {
    qz::General& g = session.general;
    switch (qz::findControl(control.toStdString())->shadow) {
    case qz::Shadow::SYS: return g.SYSreg;
    case qz::Shadow::PMU: return g.PMUreg;
    case qz::Shadow::DPS2: return g.DPS2reg;
    case qz::Shadow::ALM: return g.ALMreg;
    }
    return g.SYSreg;
}

void frmMAINQZ7740::fieldClick(const QString& name) {
    const qz::ControlOps* ops = qz::findControl(name.toStdString());
    QWidget* control = findChild<QWidget*>(name);
    if (!ops || !control) return;
    const auto* list = qobject_cast<QComboBox*>(control);
    const auto* box = qobject_cast<QCheckBox*>(control);
    const int item = list ? list->currentIndex() : (box->isChecked() ? 1 : 0);
    if (item < 0) return;

    if (name == QLatin1String("MEASOUTG") && item == 1) nav.show(QStringLiteral("frmMEASOUTGAIN"));
    int32_t& word = shadowOf(name);
    word = qz::applyField(word, *ops, item);
    if (name == QLatin1String("IMEASG")) session.general.imeasGain = item == 0 ? 20.0f : 10.0f;
    if (name == QLatin1String("cboSlave")) session.SPIout(word);
    if (ops->shadow == qz::Shadow::ALM) {
        const int bit = 16 - name.mid(3).toInt();
        txtWALM->setDigit(bit, item == 1 ? '1' : '0');
    }
    if (ops->twin) setTwin(name, item);
    showWord(word);
}

void frmMAINQZ7740::setTwin(const QString& control, int item) {
    QWidget* front = nav.load(QStringLiteral("frmMain"));
    if (!front) return;
    if (auto* list = front->findChild<QComboBox*>(control)) forms::setListIndex(list, item);
    else if (auto* box = front->findChild<QCheckBox*>(control)) forms::setChecked(box, item == 1);
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
    session.SPIout(0x56A7C2);
    session.SPIout(0x56B1D8);
    session.SPIout(0x52C4E8);
    session.SPIout(0xD30000);
    const int32_t revision = session.usb.ReadSPIWord() & 0xFF;
    Text2->setText(QString::fromStdString(qz::NumberToHex(revision, 6)));
    session.SPIout(0x56B1DA);
}

void frmMAINQZ7740::chkHWINHB_Click() { session.usb.SendRequest(chkHWINHB->isChecked() ? 226 : 227); }

void frmMAINQZ7740::chkCLEN_Click() { session.usb.SendRequest(chkCLEN->isChecked() ? 234 : 235); }

void frmMAINQZ7740::DecToBinSYS(int32_t word) { txtSYS->mirror(word, qz::kDecToBinSYS); }
void frmMAINQZ7740::DecToBinPMU(int32_t word) { txtPMU->mirror(word, qz::kDecToBinPMU); }
void frmMAINQZ7740::DecToBinDPS2(int32_t word) { txtDPS2->mirror(word, qz::kDecToBinDPS2); }
