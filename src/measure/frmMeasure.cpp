// The measurement panel as the operator sees it: the three tabs on the left, with the
// sweep's and the time run's fields above their list and chart, and the stimuli; beside
// them the reference, the range, the measure and delay lists, and the words.

#include "measure/frmMeasure.h"

#include "forms/Build.h"
#include "forms/Reference.h"
#include "forms/Menus.h"
#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "forms/TabControl.h"
#include "levels/Ranges.h"
#include "forms/RunPass.h"

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
using forms::makeFrame;
using forms::makeList;

namespace {

constexpr const char* kSweepHelp =
    "Force a range of voltages by entering the start and end voltages. Start must always be "
    "less than end. Enter the Voltage step required, bearing in mind that the smaller the "
    "step, the longer it will take. Select the appropriate measure and current range and if a "
    "delay is required, then choose now too. To Start the measurements click :";
constexpr const char* kTimeHelp =
    "Measure currents or voltages versus time. Simply select the different parameters, then "
    "click :";
constexpr const char* kCopyHelp =
    "At the end of the readings, the list data may be copied to clipboard and brought to "
    "another program for analysis. ";

QGroupBox* namedFrame(const char* name, const char* title, QWidget* parent) {
    QGroupBox* f = makeFrame(QString::fromLatin1(title), parent);
    if (name) f->setObjectName(QString::fromLatin1(name));
    return f;
}

// The names and captions of what both run tabs have beside their own fields.
struct RunHeadNames {
    const char *plot, *stop, *min, *max, *delta;
    const char *x, *xCaption, *y, *yCaption;
    const char *copy, *save, *help;
};
struct RunHead {
    QPushButton *plot, *stop;
    QLineEdit *min, *max, *delta, *x, *y;
    QPushButton *copy, *save, *help;
};

// PLOT and STOP, the Min/Max frame, the cursor's read-out and the list's buttons with the
// help link, in that order along the tab's top row.
RunHead addRunHead(QHBoxLayout* top, QWidget* page, const RunHeadNames& n) {
    RunHead h{};
    auto* buttons = new QVBoxLayout;
    h.plot = makeButton(QString::fromLatin1(n.plot), QStringLiteral("PLOT"), page);
    h.plot->setMinimumHeight(48);
    h.stop = makeButton(QString::fromLatin1(n.stop), QStringLiteral("STOP"), page);
    buttons->addWidget(h.plot);
    buttons->addWidget(h.stop);
    buttons->addStretch(1);
    top->addLayout(buttons);

    QGroupBox* range = makeFrame(QStringLiteral("Min/Max"), page);
    auto* mg = new QGridLayout(range);
    h.min = forms::makeReadingBox(n.min, range, 110);
    h.max = forms::makeReadingBox(n.max, range, 110);
    h.delta = forms::makeReadingBox(n.delta, range, 110);
    forms::addRow(mg, 0, "Min", {h.min});
    forms::addRow(mg, 1, "Max", {h.max});
    forms::addRow(mg, 2, "Delta", {h.delta});
    top->addWidget(range, 0, Qt::AlignTop);

    QGroupBox* xy = makeFrame(QStringLiteral("PLOT XY Coordinates"), page);
    auto* xg = new QGridLayout(xy);
    h.x = forms::makeReadingBox(n.x, xy, 130);
    h.y = forms::makeReadingBox(n.y, xy, 130);
    forms::addRow(xg, 0, n.xCaption, {h.x});
    forms::addRow(xg, 1, n.yCaption, {h.y});
    top->addWidget(xy, 0, Qt::AlignTop);

    auto* right = new QVBoxLayout;
    h.copy = makeButton(QString::fromLatin1(n.copy), QStringLiteral("COPY DATA TO CLIPBOARD"), page);
    h.save = makeButton(QString::fromLatin1(n.save), QStringLiteral("SAVE DATA..."), page);
    h.help = forms::makeLink(QString::fromLatin1(n.help), QStringLiteral("HELP!?"), page);
    right->addWidget(h.copy);
    right->addWidget(h.save);
    right->addWidget(h.help, 0, Qt::AlignLeft);
    right->addStretch(1);
    top->addLayout(right);
    top->addStretch(1);
    return h;
}

} // namespace

frmMeasure::frmMeasure(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, forms::Form::frmMeasure,
                   QStringLiteral("QZ7740 Voltage Measurements & CV1640"), parent),
      clock_(&qz::steadyClock()), run_(std::make_unique<forms::RunPass>(this, s.usb, s.runs)) {
    using forms::Form;
    using forms::Menu;
    using forms::MenuAction;
    forms::buildMenuBar(
        *this,
        {
            {Menu::File, "mnuClose", "Close", MenuAction::Unload},
            {Menu::File, "menuExit", "Exit", MenuAction::Exit},
            {Menu::View, "mnuMain", "QZ7740 Main Menu", MenuAction::Show, Form::frmMAINQZ7740},
            {Menu::View, "mnuDiag", "Diagnostic Functions", MenuAction::Show, Form::frmDIAG},
            {Menu::View, "mnuComp", "Compensation Registers", MenuAction::Show,
             Form::frmCompensation},
            {Menu::Help, "menuAbout", "About", MenuAction::Show, Form::frmAbout},
        });

    auto* central = new QWidget(this);
    auto* h = new QHBoxLayout(central);
    SSTab1 = new forms::TabControl(QStringLiteral("SSTab1"), 3, central);
    SSTab1->addTab(buildSweepTab(), QStringLiteral("SWEEP VOLTAGE MEASURE CURRENT/VOLTAGE"));
    SSTab1->addTab(buildTimeTab(), QStringLiteral("MEASURE CURRENT/VOLTAGE VERSUS TIME"));
    SSTab1->addTab(buildStimulusTab(), QStringLiteral("SETTLING TIMES/RANGE CHANGE TRANSIENTS"));
    h->addWidget(SSTab1, 1);
    h->addWidget(buildSide());
    setCentralWidget(central);
    resize(1460, 860);
    wire();
}

frmMeasure::~frmMeasure() = default;

QWidget* frmMeasure::buildSide() {
    auto* side = new QWidget(this);
    auto* v = new QVBoxLayout(side);
    v->setContentsMargins(0, 0, 0, 0);

    frmVref = forms::buildReferenceFrame(side, optRef, txtVREF,
                                         "NOTE: VREF selection must match eval board selection.");
    v->addWidget(frmVref);

    Frame1 = namedFrame("Frame1", "CURRENT RANGE", side);
    cboSweepI = makeList(QStringLiteral("cboSweepI"),
                         forms::itemsOf(qz::kSenseRanges, &qz::SenseRange::item),
                         QStringLiteral("\u00B15uA"), Frame1);
    (new QVBoxLayout(Frame1))->addWidget(cboSweepI);
    v->addWidget(Frame1);

    Frame16 = namedFrame("Frame16", "MEASURE VOLTAGE/CURRENT", side);
    cboMeasureVI =
        makeList(QStringLiteral("cboMeasureVI"),
                 forms::itemsOf(qz::kMeasureChoices, &qz::MeasureChoice::item), QString(), Frame16);
    (new QVBoxLayout(Frame16))->addWidget(cboMeasureVI);
    v->addWidget(Frame16);

    Frame2 = namedFrame("Frame2", "FORCE/MEASURE CYCLE DELAY", side);
    cboDela =
        makeList(QStringLiteral("cboDela"), forms::itemsOf(qz::kCycleDelays, &qz::CycleDelay::item),
                 QStringLiteral("No Delay"), Frame2);
    (new QVBoxLayout(Frame2))->addWidget(cboDela);
    v->addWidget(Frame2);

    Frame3 = namedFrame("Frame3", "SAMPLE DELAY", side);
    cboMDelay = makeList(QStringLiteral("cboMDelay"), forms::itemsOf(qz::kSampleDelayItems),
                         QStringLiteral("No Delay"), Frame3);
    (new QVBoxLayout(Frame3))->addWidget(cboMDelay);
    v->addWidget(Frame3);

    Check1 = forms::makeCheck(QStringLiteral("Check1"), QStringLiteral("No Handles"), false, side);
    v->addWidget(Check1);

    auto* words = namedFrame(nullptr, "", side);
    auto* wg = new QGridLayout(words);
    lblREADSPI = forms::addCaptionedBox(wg, 0, 0, "READ", QStringLiteral("lblREADSPI"), 6);
    Text1 = forms::addCaptionedBox(wg, 0, 1, "WRITE", QStringLiteral("Text1"), 6);
    v->addWidget(words);
    v->addStretch(1);

    cmdEXIT = makeButton(QStringLiteral("cmdEXIT"), QStringLiteral("EXIT"), side);
    v->addWidget(cmdEXIT);
    side->setFixedWidth(210);
    return side;
}

QWidget* frmMeasure::buildHelp(const QString& name, const char* text, QPushButton*& close) {
    auto* help = new QFrame;
    help->setObjectName(name);
    help->setFrameShape(QFrame::Box);
    help->setAutoFillBackground(true);
    help->setStyleSheet(
        QStringLiteral("#%1 { background: #fffbe6; border: 1px solid #b0a060; }").arg(name));
    help->setMaximumWidth(380);
    auto* v = new QVBoxLayout(help);
    auto* top = new QHBoxLayout;
    top->addWidget(forms::makeHead("HELP!?", help));
    top->addStretch(1);
    close = forms::makeLink(QString::fromLatin1(name == QLatin1String("FrmHELP") ? "Label30" : "Label17"), QStringLiteral("Close X"), help);
    top->addWidget(close);
    v->addLayout(top);
    v->addWidget(forms::makeNote(text, help));
    // Pictures of the buttons the text speaks of: they do nothing.
    v->addWidget(makeButton(QStringLiteral("helpPlot"), QStringLiteral("PLOT"), help), 0,
                 Qt::AlignLeft);
    v->addWidget(forms::makeNote(kCopyHelp, help));
    v->addWidget(
        makeButton(QStringLiteral("helpCopy"), QStringLiteral("COPY PLOT DATA TO CLIPBOARD"), help),
        0, Qt::AlignLeft);
    return help;
}

QWidget* frmMeasure::buildSweepTab() {
    QVBoxLayout* column = nullptr;
    QWidget* page = forms::makePage(this, column);
    auto* top = new QHBoxLayout;

    QGroupBox* force = makeFrame(QStringLiteral("FORCE VOLTAGE"), page);
    auto* fg = new QGridLayout(force);
    txtstartV = forms::makeNumberBox("txtstartV", "-5", force, 80);
    txtendV = forms::makeNumberBox("txtendV", "5", force, 80);
    txtstep = forms::makeNumberBox("txtstep", "1000", force, 80);
    txtstart = forms::makeReadingBox("txtstart", force, 60);
    txtend = forms::makeReadingBox("txtend", force, 60);
    txtstepcode = forms::makeReadingBox("txtstepcode", force, 60);
    forms::addRow(fg, 0, "Start Voltage (V)", {txtstartV, txtstart});
    forms::addRow(fg, 1, "End Voltage (V)", {txtendV, txtend});
    forms::addRow(fg, 2, "Voltage Step (mV)", {txtstep, txtstepcode});
    top->addWidget(force);

    const RunHead head = addRunHead(top, page,
                                    {"cmdPlot", "cmdStop", "txtmin", "txtMax", "txtdifff", "Text2", "Measured",
                                     "Text3", "Code", "cmdCOPYTOCLIP", "cmdSave", "Label16"});
    cmdPlot = head.plot;
    cmdStop = head.stop;
    txtmin = head.min;
    txtMax = head.max;
    txtdifff = head.delta;
    Text2 = head.x;
    Text3 = head.y;
    cmdCOPYTOCLIP = head.copy;
    cmdSave = head.save;
    Label16 = head.help;
    column->addLayout(top);

    auto* bottom = new QHBoxLayout;
    List1 = new forms::ResultList(QStringLiteral("List1"), page);
    bottom->addWidget(List1, 4);
    SSTab2 = new forms::TabControl(QStringLiteral("SSTab2"), 1, page);
    auto* chartPage = new QWidget;
    auto* cg = new QGridLayout(chartPage);
    Strip1 = new forms::StripChart(QStringLiteral("Strip1"), chartPage);
    FrmHELP = buildHelp(QStringLiteral("FrmHELP"), kSweepHelp, Label30);
    cg->addWidget(Strip1, 0, 0);
    // The help stands over the chart until it is closed.
    cg->addWidget(FrmHELP, 0, 0, Qt::AlignLeft | Qt::AlignTop);
    cg->addWidget(makeCaption("Code", chartPage), 1, 0, Qt::AlignHCenter);
    SSTab2->addTab(chartPage, QStringLiteral("Measout vs Code"));
    bottom->addWidget(SSTab2, 6);
    column->addLayout(bottom, 1);
    return page;
}

QWidget* frmMeasure::buildTimeTab() {
    QVBoxLayout* column = nullptr;
    QWidget* page = forms::makePage(this, column);
    auto* top = new QHBoxLayout;

    QGroupBox* force = makeFrame(QStringLiteral("FORCE VOLTAGE"), page);
    auto* fg = new QGridLayout(force);
    txtForceV = forms::makeNumberBox("txtForceV", "5", force, 80);
    txtForceC = forms::makeReadingBox("txtForceC", force, 60);
    forms::addRow(fg, 0, "Voltage (V)", {txtForceV, txtForceC});
    top->addWidget(force, 0, Qt::AlignTop);

    const RunHead head = addRunHead(top, page,
                                    {"cmdPlotit", "cmdStopit", "txtmin1", "txtmax1", "txtdiff", "txtX", "Time (s)",
                                     "txtY", "Measured", "cmdCopy", "cmdSaveit", "Label29"});
    cmdPlotit = head.plot;
    cmdStopit = head.stop;
    txtmin1 = head.min;
    txtmax1 = head.max;
    txtdiff = head.delta;
    txtX = head.x;
    txtY = head.y;
    cmdCopy = head.copy;
    cmdSaveit = head.save;
    Label29 = head.help;
    column->addLayout(top);

    auto* bottom = new QHBoxLayout;
    List2 = new forms::ResultList(QStringLiteral("List2"), page);
    bottom->addWidget(List2, 4);
    auto* chartArea = new QWidget(page);
    auto* cg = new QGridLayout(chartArea);
    cg->setContentsMargins(0, 0, 0, 0);
    Strip2 = new forms::StripChart(QStringLiteral("Strip2"), chartArea);
    Frame9 = buildHelp(QStringLiteral("Frame9"), kTimeHelp, Label17);
    cg->addWidget(Strip2, 0, 0);
    cg->addWidget(Frame9, 0, 0, Qt::AlignLeft | Qt::AlignTop);
    bottom->addWidget(chartArea, 6);
    column->addLayout(bottom, 1);
    return page;
}

QWidget* frmMeasure::buildStimulusTab() {
    QVBoxLayout* column = nullptr;
    QWidget* page = forms::makePage(this, column);
    auto* row = new QHBoxLayout;
    const QStringList ranges = forms::itemsOf(qz::kConsoleRangeNames);

    QGroupBox* settling = makeFrame(QStringLiteral("SETTLING TIMES"), page);
    auto* sv = new QVBoxLayout(settling);
    QGroupBox* fin = makeFrame(QStringLiteral("FIN DAC X1"), settling);
    auto* fg = new QGridLayout(fin);
    cboFINREG = makeList(QStringLiteral("cboFINREG"), ranges, QString(), fin);
    txtFINSET1 = forms::makeHexBox(QStringLiteral("txtFINSET1"), QStringLiteral("0000"), 4, fin);
    txtFINSET2 = forms::makeHexBox(QStringLiteral("txtFINSET2"), QStringLiteral("8000"), 4, fin);
    forms::addRow(fg, 0, "Current Range", {cboFINREG});
    forms::addRow(fg, 1, "first code", {txtFINSET1});
    forms::addRow(fg, 2, "second code", {txtFINSET2});
    cmdWRITESET = makeButton(QStringLiteral("cmdWRITESET"), QStringLiteral("WRITE DAC CODES"), fin);
    fg->addWidget(cmdWRITESET, 3, 0, 1, 2);
    fg->addWidget(forms::makeNote("Delay of about 200ms between writes.", fin), 4, 0, 1, 2);
    sv->addWidget(fin);
    sv->addStretch(1);
    row->addWidget(settling);

    QGroupBox* change = makeFrame(QStringLiteral("RANGE CHANGE TRANSIENTS"), page);
    auto* cv = new QVBoxLayout(change);
    QGroupBox* ranged = makeFrame(QStringLiteral("Current Range Change"), change);
    auto* rg = new QGridLayout(ranged);
    cboCurrent1 = makeList(QStringLiteral("cboCurrent1"), ranges, QString(), ranged);
    cboCurrent2 = makeList(QStringLiteral("cboCurrent2"), ranges, QString(), ranged);
    txtdin = forms::makeHexBox(QStringLiteral("txtdin"), QStringLiteral("0000"), 4, ranged);
    txtrange1 = forms::makeOutBox(QStringLiteral("txtrange1"), ranged, 6);
    txtrange2 = forms::makeOutBox(QStringLiteral("txtrange2"), ranged, 6);
    txtfincode = forms::makeOutBox(QStringLiteral("txtfincode"), ranged, 6);
    forms::addRow(rg, 0, "1st Range", {cboCurrent1});
    forms::addRow(rg, 1, "2nd Range", {cboCurrent2});
    forms::addRow(rg, 2, "FORCE VOLTAGE DAC CODE", {txtdin});
    cmdRangeChange = makeButton(QStringLiteral("cmdRangeChange"), QStringLiteral("UPDATE"), ranged);
    rg->addWidget(cmdRangeChange, 3, 0, 1, 2);
    forms::addRow(rg, 4, "1st WRITE", {txtrange1});
    forms::addRow(rg, 5, "2nd WRITE", {txtrange2});
    forms::addRow(rg, 6, "FIN DAC CODE", {txtfincode});
    rg->addWidget(forms::makeNote("Delay of about 200ms between writes.", ranged), 7, 0, 1, 2);
    cv->addWidget(ranged);
    cv->addStretch(1);
    row->addWidget(change);
    row->addStretch(1);
    column->addLayout(row);
    column->addStretch(1);
    return page;
}
