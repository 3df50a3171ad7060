// The two DAC tabs of the console, as the operator sees them: the write page with its
// entry fields for every DAC, the ramp and the reference voltage; the read page with
// its selections. What the fields and buttons do is in DacOperations.cpp.

#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
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
using forms::makeHexBox;

namespace {

QLabel* note(const char* text, QWidget* parent) {
    auto* l = new QLabel(QString::fromLatin1(text), parent);
    l->setWordWrap(true);
    return l;
}

QLabel* head(const char* text, QWidget* parent) {
    auto* l = new QLabel(QString::fromUtf8(text), parent);
    QFont f = l->font();
    f.setBold(true);
    l->setFont(f);
    return l;
}

// An output box: it shows a code and takes no typing.
QLineEdit* outBox(const QString& name, QWidget* parent) {
    QLineEdit* e = makeHexBox(name, QString(), 8, parent);
    e->setReadOnly(true);
    return e;
}

constexpr const char* kMandCNote =
    "NOTE: m and c registers are not loaded until the relevant X1 register is reloaded. After an "
    "M or C update, please also hit enter in the X1 reg text box to update the device.";

} // namespace

QWidget* frmMAINQZ7740::buildWriteDacTab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    v->addWidget(head("DAC INPUT REGISTER", p));
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
    OFFSETx1 = makeHexBox(forms::member("OFFSETx1", 0), QStringLiteral("8000"), 4, p);
    txtDGS = makeHexBox(QStringLiteral("txtDGS"), QStringLiteral("8000"), 4, p);
    codes->addWidget(new QLabel(QStringLiteral("OFFSET DAC CODE"), p), 0, 0);
    codes->addWidget(OFFSETx1, 0, 1);
    codes->addWidget(new QLabel(QStringLiteral("DGS DAC CODE"), p), 1, 0);
    codes->addWidget(txtDGS, 1, 1);
    side->addLayout(codes);

    QGroupBox* vref = forms::makeFrame(QStringLiteral("VREF"), p);
    vref->setObjectName(QStringLiteral("frmVref"));
    auto* rv = new QGridLayout(vref);
    const char* refs[3] = {"5V", "2.5V", "Other"};
    for (int i = 0; i < 3; ++i) {
        optRef[static_cast<size_t>(i)] = forms::makeOption(forms::member("optRef", i), QString::fromLatin1(refs[i]), vref);
        rv->addWidget(optRef[static_cast<size_t>(i)], i, 0);
    }
    optRef[0]->setChecked(true);
    txtVREF = new QLineEdit(QStringLiteral("2"), vref);
    txtVREF->setObjectName(QStringLiteral("txtVREF"));
    txtVREF->setMaximumWidth(70);
    rv->addWidget(txtVREF, 2, 1);
    rv->addWidget(new QLabel(QStringLiteral("V"), vref), 2, 2);
    rv->addWidget(note("NOTE: For correct FV output calculation, VREF selection on eval board must "
                       "match this selection.",
                       vref),
                  3, 0, 1, 3);
    vref->setMaximumWidth(300);
    side->addWidget(vref);
    side->addWidget(head("HIT ENTER TO LOAD DATA", p));
    side->addStretch(1);
    middle->addLayout(side);
    v->addLayout(middle, 1);
    v->addWidget(note(kMandCNote, p));
    return p;
}

QWidget* frmMAINQZ7740::buildRampPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtstart = makeHexBox(QStringLiteral("txtstart"), QStringLiteral("8000"), 4, p);
    txtRAMP = makeHexBox(QStringLiteral("txtRAMP"), QStringLiteral("FFFF"), 4, p);
    txtRampStep = makeHexBox(QStringLiteral("txtRampStep"), QStringLiteral("7F"), 4, p);
    txtRCLKDiv = makeHexBox(QStringLiteral("txtRCLKDiv"), QStringLiteral("7F"), 4, p);
    const char* captions[4] = {"FIN DAC CODE", "RAMP END CODE", "RAMP STEP SIZE", "RCLK DIVIDER"};
    QLineEdit* boxes[4] = {txtstart, txtRAMP, txtRampStep, txtRCLKDiv};
    for (int i = 0; i < 4; ++i) {
        g->addWidget(new QLabel(QString::fromLatin1(captions[i]), p), i, 0);
        g->addWidget(boxes[i], i, 1);
    }
    cmdENRAMP = makeButton(QStringLiteral("cmdENRAMP"), QStringLiteral("ENABLE AND START RAMP"), p);
    cmdINTRAMP = makeButton(QStringLiteral("cmdINTRAMP"), QStringLiteral("INTERRUPT RAMP"), p);
    cmdReadEnableRamp = makeButton(QStringLiteral("cmdReadEnableRamp"), QStringLiteral("Read Ramp Status"), p);
    txtRampStatus = outBox(QStringLiteral("txtRampStatus"), p);
    g->addWidget(cmdENRAMP, 0, 3);
    g->addWidget(cmdINTRAMP, 1, 3);
    g->addWidget(cmdReadEnableRamp, 2, 3);
    g->addWidget(txtRampStatus, 2, 4);
    g->addWidget(note("The Ramp operates from the current FIN DAC Code.", p), 4, 0, 1, 5);
    g->setColumnMinimumWidth(2, 24);
    g->setColumnStretch(5, 1);
    g->setRowStretch(5, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildFinPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtFINx1 = makeHexBox(QStringLiteral("txtFINx1"), QStringLiteral("8000"), 4, p);
    txtFINM = makeHexBox(QStringLiteral("txtFINM"), QStringLiteral("FFFF"), 4, p);
    txtFINC = makeHexBox(QStringLiteral("txtFINC"), QStringLiteral("8000"), 4, p);
    txtOutputV = outBox(QStringLiteral("txtOutputV"), p);
    const char* captions[3] = {"FIN DAC x1", "FIN DAC m", "FIN DAC c"};
    QLineEdit* boxes[3] = {txtFINx1, txtFINM, txtFINC};
    for (int i = 0; i < 3; ++i) {
        g->addWidget(new QLabel(QString::fromLatin1(captions[i]), p), i, 0);
        g->addWidget(boxes[i], i, 1);
    }
    g->addWidget(new QLabel(QStringLiteral("OUTPUT VOLTAGE"), p), 0, 3);
    g->addWidget(txtOutputV, 0, 4);
    g->addWidget(new QLabel(QStringLiteral("V"), p), 0, 5);
    g->setColumnMinimumWidth(2, 24);
    g->setColumnStretch(6, 1);
    g->setRowStretch(3, 1);
    return p;
}

QWidget* frmMAINQZ7740::buildClampPage() {
    auto* p = new QWidget(this);
    auto* g = new QGridLayout(p);
    txtCLLx1 = makeHexBox(forms::member("txtCLLx1", 0), QStringLiteral("0000"), 4, p);
    txtCLLM = makeHexBox(forms::member("txtCLLM", 0), QStringLiteral("FFFF"), 4, p);
    txtCLLC = makeHexBox(forms::member("txtCLLC", 0), QStringLiteral("8000"), 4, p);
    txtCLHx1 = makeHexBox(forms::member("txtCLHx1", 0), QStringLiteral("FFFF"), 4, p);
    txtCLHM = makeHexBox(forms::member("txtCLHM", 0), QStringLiteral("FFFF"), 4, p);
    txtCLHC = makeHexBox(forms::member("txtCLHC", 0), QStringLiteral("8000"), 4, p);
    const char* columns[3] = {"x1", "m", "c"};
    for (int c = 0; c < 3; ++c) g->addWidget(head(columns[c], p), 0, c + 1, Qt::AlignHCenter);
    g->addWidget(head("CLL DAC", p), 1, 0);
    g->addWidget(head("CLH DAC", p), 2, 0);
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
    const char* rows[8] = {"\xC2\xB1" "5uA",  "\xC2\xB1" "25uA",  "\xC2\xB1" "250uA",
                           "\xC2\xB1" "2.5mA", "\xC2\xB1" "25mA", "\xC2\xB1" "Ext 1",
                           "\xC2\xB1" "Ext 2", "Voltage Range"};
    const char* heads[6] = {"CPL x1", "CPL m", "CPL c", "CPH x1", "CPH m", "CPH c"};
    const char* names[6] = {"txtCPLx1", "txtCPLM", "txtCPLC", "txtCPHx1", "txtCPHM", "txtCPHC"};
    const char* starts[6] = {"0000", "FFFF", "8000", "FFFF", "FFFF", "8000"};
    std::array<QLineEdit*, 8>* arrays[6] = {&txtCPLx1, &txtCPLM, &txtCPLC,
                                            &txtCPHx1, &txtCPHM, &txtCPHC};
    for (int c = 0; c < 6; ++c) g->addWidget(head(heads[c], p), 0, c + 1, Qt::AlignHCenter);
    for (int r = 0; r < 8; ++r) {
        g->addWidget(head(rows[r], p), r + 1, 0);
        for (int c = 0; c < 6; ++c) {
            QLineEdit* e = makeHexBox(forms::member(names[c], r), QString::fromLatin1(starts[c]), 4, p);
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
    cboDAC = forms::makeList(QStringLiteral("cboDAC"),
                             {"FIN DAC x1", "FIN DAC m", "FIN DAC c", "OSD DAC", "DGS DAC"},
                             QStringLiteral("FIN DAC"), fin);
    cmdREADDAC = makeButton(QStringLiteral("cmdREADDAC"), QStringLiteral("READ DAC REGISTER"), fin);
    txtDaccode = outBox(QStringLiteral("txtDaccode"), fin);
    txtOFFSET = outBox(QStringLiteral("txtOFFSET"), fin);
    txtRDGS = outBox(QStringLiteral("txtRDGS"), fin);
    fg->addWidget(cboDAC, 0, 0);
    fg->addWidget(cmdREADDAC, 0, 1);
    fg->addWidget(new QLabel(QStringLiteral("DAC CODE"), fin), 1, 0);
    fg->addWidget(txtDaccode, 1, 1);
    fg->addWidget(new QLabel(QStringLiteral("OFFSET DAC CODE"), fin), 2, 0);
    fg->addWidget(txtOFFSET, 2, 1);
    fg->addWidget(new QLabel(QStringLiteral("DGS DAC CODE"), fin), 3, 0);
    fg->addWidget(txtRDGS, 3, 1);
    frames->addWidget(fin, 0, 0);

    QGroupBox* clamps = forms::makeFrame(QStringLiteral("CLAMP DACs"), p);
    auto* cg = new QGridLayout(clamps);
    cboCLAMPS = forms::makeList(QStringLiteral("cboCLAMPS"),
                                {"CLL DAC x1", "CLL DAC m", "CLL DAC c", "CLH DAC x1", "CLH DAC m",
                                 "CLH DAC c"},
                                QStringLiteral("CLL DAC x1"), clamps);
    cmdREADCLAMPDACs = makeButton(QStringLiteral("cmdREADCLAMPDACs"), QStringLiteral("READ CLAMP DACs"), clamps);
    txtDACC = outBox(QStringLiteral("txtDACC"), clamps);
    cg->addWidget(cboCLAMPS, 0, 0);
    cg->addWidget(cmdREADCLAMPDACs, 0, 1);
    cg->addWidget(new QLabel(QStringLiteral("DAC CODE"), clamps), 1, 0);
    cg->addWidget(txtDACC, 1, 1);
    cg->setRowStretch(2, 1);
    frames->addWidget(clamps, 0, 1);

    QGroupBox* comps = forms::makeFrame(QStringLiteral("COMPARATOR DACs"), p);
    auto* kg = new QGridLayout(comps);
    cboCOMPDACs = forms::makeList(QStringLiteral("cboCOMPDACs"), {"CPL", "CPH"}, QStringLiteral("CPL DAC"), comps);
    cboCurrentRange = forms::makeList(QStringLiteral("cboCurrentRange"),
                                      {"5uA", "25uA", "250uA", "2.5mA", "25mA", "Ext1 Range",
                                       "Ext2 Range", "Voltage Range"},
                                      QStringLiteral("5uA"), comps);
    Combo2 = forms::makeList(QStringLiteral("Combo2"), {"x1 ", "m", "c"}, QStringLiteral("x1"), comps);
    cmdREADCOMPDACs = makeButton(QStringLiteral("cmdREADCOMPDACs"), QStringLiteral("READ COMPARATOR DACs"), comps);
    txtDACcomp = outBox(QStringLiteral("txtDACcomp"), comps);
    kg->addWidget(cboCOMPDACs, 0, 0);
    kg->addWidget(cboCurrentRange, 0, 1);
    kg->addWidget(Combo2, 0, 2);
    kg->addWidget(cmdREADCOMPDACs, 1, 0, 1, 2);
    kg->addWidget(new QLabel(QStringLiteral("DAC CODE"), comps), 2, 0);
    kg->addWidget(txtDACcomp, 2, 1);
    frames->addWidget(comps, 1, 0);

    QGroupBox* ramp = forms::makeFrame(QStringLiteral("RAMP FUNCTION"), p);
    auto* rg = new QGridLayout(ramp);
    cmdREADRAMPREGS = makeButton(QStringLiteral("cmdREADRAMPREGS"), QStringLiteral("READ RAMP"), ramp);
    txtRRampEnd = outBox(QStringLiteral("txtRRampEnd"), ramp);
    txtRRCLKDiv = outBox(QStringLiteral("txtRRCLKDiv"), ramp);
    txtRRampStep = outBox(QStringLiteral("txtRRampStep"), ramp);
    rg->addWidget(cmdREADRAMPREGS, 0, 0, 1, 2);
    // The captions stand as the panel has always had them.
    const char* captions[3] = {"RAMP END CODE", "RAMP STEP SIZE", "RCLK DIVIDER"};
    QLineEdit* boxes[3] = {txtRRampEnd, txtRRCLKDiv, txtRRampStep};
    for (int i = 0; i < 3; ++i) {
        rg->addWidget(new QLabel(QString::fromLatin1(captions[i]), ramp), i + 1, 0);
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
