// The two DAC tabs of the console, as the operator sees them: the write page with its
// entry fields for every DAC, the ramp and the reference voltage; the read page with
// its selections. What the fields and buttons do is in DacOperations.cpp.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Reference.h"
#include "forms/TabControl.h"
#include "registers/RegisterMap.h"

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
using forms::makeHead;
using forms::makeNote;
using forms::makeOutBox;

namespace {

constexpr const char* kMandCNote =
    "NOTE: m and c registers are not loaded until the relevant X1 register is reloaded. After an "
    "M or C update, please also hit enter in the X1 reg text box to update the device.";

using qz::HexFieldId;

QLineEdit* entryBox(HexFieldId id, QWidget* parent, int member = -1) {
    return forms::makeEntryBox(qz::hexField(id), parent, member);
}

const char* registerName(int address) { return qz::findRegister(address)->name; }

} // namespace

QWidget* frmMAINQZ7740::buildWriteDacTab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    v->addWidget(makeHead("DAC INPUT REGISTER", p));
    txtDAC = new forms::BitRow(QStringLiteral("txtDAC"), qz::rowCaptions(qz::kDacLabels), p);
    v->addWidget(txtDAC, 0, Qt::AlignLeft);

    auto* middle = new QHBoxLayout;
    tabDACS = new forms::TabControl(QStringLiteral("tabDACS"), 4, p);
    tabDACS->addTab(buildRampPage(), QStringLiteral("RAMP FIN DAC"));
    tabDACS->addTab(buildFinPage(), QStringLiteral("FIN DAC"));
    tabDACS->addTab(buildClampPage(), QStringLiteral("CLL + CLH DACs"));
    tabDACS->addTab(buildComparatorPage(), QStringLiteral("CPL + CPH DACs"));
    tabDACS->onClick([this](int previous) { tabDACS_Click(previous); });
    middle->addWidget(tabDACS, 1);

    auto* side = new QVBoxLayout;
    auto* codes = new QGridLayout;
    OFFSETx1 = entryBox(HexFieldId::OFFSETx1, p, 0);
    txtDGS = entryBox(HexFieldId::txtDGS, p);
    codes->addWidget(makeCaption("OFFSET DAC CODE", p), 0, 0);
    codes->addWidget(OFFSETx1, 0, 1);
    codes->addWidget(makeCaption("DGS DAC CODE", p), 1, 0);
    codes->addWidget(txtDGS, 1, 1);
    side->addLayout(codes);

    QGroupBox* vref = forms::buildReferenceFrame(
        p, optRef, txtVREF,
        "NOTE: For correct FV output calculation, VREF selection on eval board must match this "
        "selection.");
    vref->setMaximumWidth(300);
    side->addWidget(vref);
    side->addWidget(makeHead("HIT ENTER TO LOAD DATA", p));
    side->addStretch(1);
    middle->addLayout(side);
    v->addLayout(middle, 1);
    v->addWidget(makeNote(kMandCNote, p));
    return p;
}

QWidget* frmMAINQZ7740::buildRampPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtstart = entryBox(HexFieldId::txtstart, p);
    txtRAMP = entryBox(HexFieldId::txtRAMP, p);
    txtRampStep = entryBox(HexFieldId::txtRampStep, p);
    txtRCLKDiv = entryBox(HexFieldId::txtRCLKDiv, p);
    const char* captions[4] = {"FIN DAC CODE", "RAMP END CODE", "RAMP STEP SIZE", "RCLK DIVIDER"};
    QLineEdit* boxes[4] = {txtstart, txtRAMP, txtRampStep, txtRCLKDiv};
    for (int i = 0; i < 4; ++i) {
        g->addWidget(makeCaption(captions[i], p), i, 0);
        g->addWidget(boxes[i], i, 1);
    }
    cmdENRAMP = makeButton(QStringLiteral("cmdENRAMP"), QStringLiteral("ENABLE AND START RAMP"), p);
    cmdINTRAMP = makeButton(QStringLiteral("cmdINTRAMP"), QStringLiteral("INTERRUPT RAMP"), p);
    cmdReadEnableRamp = makeButton(QStringLiteral("cmdReadEnableRamp"), QStringLiteral("Read Ramp Status"), p);
    txtRampStatus = makeOutBox(QStringLiteral("txtRampStatus"), p);
    g->addWidget(cmdENRAMP, 0, 3);
    g->addWidget(cmdINTRAMP, 1, 3);
    g->addWidget(cmdReadEnableRamp, 2, 3);
    g->addWidget(txtRampStatus, 2, 4);
    g->addWidget(makeNote("The Ramp operates from the current FIN DAC Code.", p), 4, 0, 1, 5);
    g->setColumnMinimumWidth(2, 24);
    g->setColumnStretch(5, 1);
    g->setRowStretch(5, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildFinPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtFINx1 = entryBox(HexFieldId::txtFINx1, p);
    txtFINM = entryBox(HexFieldId::txtFINM, p);
    txtFINC = entryBox(HexFieldId::txtFINC, p);
    txtOutputV = makeOutBox(QStringLiteral("txtOutputV"), p);
    const char* captions[3] = {"FIN DAC x1", "FIN DAC m", "FIN DAC c"};
    QLineEdit* boxes[3] = {txtFINx1, txtFINM, txtFINC};
    for (int i = 0; i < 3; ++i) {
        g->addWidget(makeCaption(captions[i], p), i, 0);
        g->addWidget(boxes[i], i, 1);
    }
    g->addWidget(makeCaption("OUTPUT VOLTAGE", p), 0, 3);
    g->addWidget(txtOutputV, 0, 4);
    g->addWidget(makeCaption("V", p), 0, 5);
    g->setColumnMinimumWidth(2, 24);
    g->setColumnStretch(6, 1);
    g->setRowStretch(3, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildClampPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtCLLx1 = entryBox(HexFieldId::txtCLLx1, p, 0);
    txtCLLM = entryBox(HexFieldId::txtCLLM, p, 0);
    txtCLLC = entryBox(HexFieldId::txtCLLC, p, 0);
    txtCLHx1 = entryBox(HexFieldId::txtCLHx1, p, 0);
    txtCLHM = entryBox(HexFieldId::txtCLHM, p, 0);
    txtCLHC = entryBox(HexFieldId::txtCLHC, p, 0);
    const char* columns[3] = {"x1", "m", "c"};
    for (int c = 0; c < 3; ++c) g->addWidget(makeHead(columns[c], p), 0, c + 1, Qt::AlignHCenter);
    g->addWidget(makeHead("CLL DAC", p), 1, 0);
    g->addWidget(makeHead("CLH DAC", p), 2, 0);
    QLineEdit* row[2][3] = {{txtCLLx1, txtCLLM, txtCLLC}, {txtCLHx1, txtCLHM, txtCLHC}};
    for (int r = 0; r < 2; ++r)
        for (int c = 0; c < 3; ++c) g->addWidget(row[r][c], r + 1, c + 1);
    g->setColumnStretch(4, 1);
    g->setRowStretch(3, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildComparatorPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    g->setVerticalSpacing(2);
    const char* heads[6] = {"CPL x1", "CPL m", "CPL c", "CPH x1", "CPH m", "CPH c"};
    const HexFieldId ids[6] = {HexFieldId::txtCPLx1, HexFieldId::txtCPLM, HexFieldId::txtCPLC,
                               HexFieldId::txtCPHx1, HexFieldId::txtCPHM, HexFieldId::txtCPHC};
    std::array<QLineEdit*, 8>* arrays[6] = {&txtCPLx1, &txtCPLM, &txtCPLC,
                                            &txtCPHx1, &txtCPHM, &txtCPHC};
    for (int c = 0; c < 6; ++c) g->addWidget(makeHead(heads[c], p), 0, c + 1, Qt::AlignHCenter);
    for (int r = 0; r < qz::kComparatorRows; ++r) {
        g->addWidget(makeHead(qz::kComparatorRowNames[r].caption, p), r + 1, 0);
        for (int c = 0; c < 6; ++c) {
            QLineEdit* e = entryBox(ids[c], p, r);
            (*arrays[c])[static_cast<size_t>(r)] = e;
            g->addWidget(e, r + 1, c + 1);
        }
    }
    g->setColumnStretch(7, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildReadDacTab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    auto* frames = new QGridLayout;

    QGroupBox* fin = forms::makeFrame(QStringLiteral("FIN + AUX DACS"), p);
    auto* fg = new QGridLayout(fin);
    cboDAC = forms::makeList(QStringLiteral("cboDAC"), forms::itemsOf(qz::kFinAuxDacs, registerName),
                             QStringLiteral("FIN DAC"), fin);
    cmdREADDAC = makeButton(QStringLiteral("cmdREADDAC"), QStringLiteral("READ DAC REGISTER"), fin);
    txtDaccode = makeOutBox(QStringLiteral("txtDaccode"), fin);
    txtOFFSET = makeOutBox(QStringLiteral("txtOFFSET"), fin);
    txtRDGS = makeOutBox(QStringLiteral("txtRDGS"), fin);
    fg->addWidget(cboDAC, 0, 0);
    fg->addWidget(cmdREADDAC, 0, 1);
    fg->addWidget(makeCaption("DAC CODE", fin), 1, 0);
    fg->addWidget(txtDaccode, 1, 1);
    fg->addWidget(makeCaption("OFFSET DAC CODE", fin), 2, 0);
    fg->addWidget(txtOFFSET, 2, 1);
    fg->addWidget(makeCaption("DGS DAC CODE", fin), 3, 0);
    fg->addWidget(txtRDGS, 3, 1);
    frames->addWidget(fin, 0, 0);

    QGroupBox* clamps = forms::makeFrame(QStringLiteral("CLAMP DACs"), p);
    auto* cg = new QGridLayout(clamps);
    cboCLAMPS = forms::makeList(QStringLiteral("cboCLAMPS"), forms::itemsOf(qz::kClampDacs, registerName),
                                QStringLiteral("CLL DAC x1"), clamps);
    cmdREADCLAMPDACs = makeButton(QStringLiteral("cmdREADCLAMPDACs"), QStringLiteral("READ CLAMP DACs"), clamps);
    txtDACC = makeOutBox(QStringLiteral("txtDACC"), clamps);
    cg->addWidget(cboCLAMPS, 0, 0);
    cg->addWidget(cmdREADCLAMPDACs, 0, 1);
    cg->addWidget(makeCaption("DAC CODE", clamps), 1, 0);
    cg->addWidget(txtDACC, 1, 1);
    cg->setRowStretch(2, 1);
    frames->addWidget(clamps, 0, 1);

    QGroupBox* comps = forms::makeFrame(QStringLiteral("COMPARATOR DACs"), p);
    auto* kg = new QGridLayout(comps);
    cboCOMPDACs = forms::makeList(QStringLiteral("cboCOMPDACs"), forms::itemsOf(qz::kComparatorItems),
                                  QStringLiteral("CPL DAC"), comps);
    cboCurrentRange = forms::makeList(QStringLiteral("cboCurrentRange"),
                                      forms::itemsOf(qz::kComparatorRowNames, &qz::ComparatorRowName::item),
                                      QStringLiteral("5uA"), comps);
    Combo2 = forms::makeList(QStringLiteral("Combo2"), forms::itemsOf(qz::kDacMemberItems), QStringLiteral("x1"), comps);
    cmdREADCOMPDACs = makeButton(QStringLiteral("cmdREADCOMPDACs"), QStringLiteral("READ COMPARATOR DACs"), comps);
    txtDACcomp = makeOutBox(QStringLiteral("txtDACcomp"), comps);
    kg->addWidget(cboCOMPDACs, 0, 0);
    kg->addWidget(cboCurrentRange, 0, 1);
    kg->addWidget(Combo2, 0, 2);
    kg->addWidget(cmdREADCOMPDACs, 1, 0, 1, 2);
    kg->addWidget(makeCaption("DAC CODE", comps), 2, 0);
    kg->addWidget(txtDACcomp, 2, 1);
    frames->addWidget(comps, 1, 0);

    QGroupBox* ramp = forms::makeFrame(QStringLiteral("RAMP FUNCTION"), p);
    auto* rg = new QGridLayout(ramp);
    cmdREADRAMPREGS = makeButton(QStringLiteral("cmdREADRAMPREGS"), QStringLiteral("READ RAMP"), ramp);
    txtRRampEnd = makeOutBox(QStringLiteral("txtRRampEnd"), ramp);
    txtRRCLKDiv = makeOutBox(QStringLiteral("txtRRCLKDiv"), ramp);
    txtRRampStep = makeOutBox(QStringLiteral("txtRRampStep"), ramp);
    rg->addWidget(cmdREADRAMPREGS, 0, 0, 1, 2);
    // The captions stand as the panel has always had them.
    const char* captions[3] = {"RAMP END CODE", "RAMP STEP SIZE", "RCLK DIVIDER"};
    QLineEdit* boxes[3] = {txtRRampEnd, txtRRCLKDiv, txtRRampStep};
    for (int i = 0; i < 3; ++i) {
        rg->addWidget(makeCaption(captions[i], ramp), i + 1, 0);
        rg->addWidget(boxes[i], i + 1, 1);
    }
    frames->addWidget(ramp, 1, 1);
    v->addLayout(frames);

    QGroupBox* reg = forms::makeFrame(QStringLiteral("DAC REGISTER"), p);
    auto* regLayout = new QVBoxLayout(reg);
    txtRDAC = new forms::BitRow(QStringLiteral("txtRDAC"), qz::rowCaptions(qz::kDacLabels), reg);
    regLayout->addWidget(txtRDAC, 0, Qt::AlignLeft);
    v->addWidget(reg);
    v->addStretch(1);
    return p;
}
