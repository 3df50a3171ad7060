// The diagnostics panel as the operator sees it: the word boxes, the write mirror and the
// thermal array beside the pages; the node, stage and path choices on the first page; the
// read mirror on the second.

#include "diagnostics/frmDIAG.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Controls.h"
#include "forms/Menus.h"
#include "forms/ResultList.h"
#include "forms/StripChart.h"
#include "forms/RunPass.h"
#include "forms/TabControl.h"
#include "registers/BitLabels.h"
#include "registers/Diagnostics.h"
#include "registers/RegisterMap.h"

#include <QAction>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using forms::makeButton;
using forms::makeCaption;
using forms::makeFrame;
using forms::makeNote;

namespace {

// A drawn lead: a bus along the left edge that gathers the options beside it, and an
// arrow from its middle to the pin it leads to.
class Lead : public QWidget {
public:
    Lead(const QString& pin, QWidget* parent) : QWidget(parent), pin_(pin) {
        setMinimumWidth(QFontMetrics(font()).horizontalAdvance(pin_) + 48);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(palette().color(QPalette::WindowText), 1.5));
        const int x = 4, mid = height() / 2, tip = width() - QFontMetrics(font()).horizontalAdvance(pin_) - 10;
        p.drawLine(x, 10, x, height() - 10);
        p.drawLine(x, mid, tip, mid);
        const QPointF head[3] = {{double(tip), double(mid)}, {tip - 8.0, mid - 4.0}, {tip - 8.0, mid + 4.0}};
        p.setBrush(palette().color(QPalette::WindowText));
        p.drawPolygon(head, 3);
        p.drawText(QRect(tip + 4, mid - 10, width() - tip - 4, 20), Qt::AlignLeft | Qt::AlignVCenter, pin_);
    }

private:
    QString pin_;
};

} // namespace

frmDIAG::frmDIAG(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, forms::Form::frmDIAG, QStringLiteral("QZ7740 DIAGNOSTIC REGISTER & TH2260"), parent),
      clock_(&qz::steadyClock()), run_(std::make_unique<forms::RunPass>(this, s.usb, s.runs)) {
    using forms::Form;
    using forms::Menu;
    using forms::MenuAction;
    forms::buildMenuBar(*this, {
        {Menu::File, "mnuClose", "Close", MenuAction::Unload},
        {Menu::File, "menuExit", "Exit", MenuAction::Exit},
        {Menu::View, "mnuSweep", "Sweep Voltage Measurements", MenuAction::Show, Form::frmMeasure},
        {Menu::View, "mnuMain", "QZ7740 Main Menu", MenuAction::Show, Form::frmMAINQZ7740},
        {Menu::View, "mnuComp", "Compensation Registers", MenuAction::Show, Form::frmCompensation},
        {Menu::Help, "menuAbout", "About", MenuAction::Show, Form::frmAbout},
    });
    // "Close" is the frame's close, which waits for a temperature run to end.
    if (auto* close = findChild<QAction*>(QStringLiteral("mnuClose"))) {
        disconnect(close, &QAction::triggered, this, nullptr);
        connect(close, &QAction::triggered, this, [this] { this->close(); });
    }

    auto* central = new QWidget(this);
    auto* v = new QVBoxLayout(central);
    auto* top = new QHBoxLayout;
    top->addWidget(buildRegisterFrame(), 1);
    top->addWidget(buildWordFrame());
    v->addLayout(top);
    auto* middle = new QHBoxLayout;
    SSTab2 = new forms::TabControl(QStringLiteral("SSTab2"), 3, central);
    SSTab2->addTab(buildSelectPage(), QStringLiteral("DIAGNOSTIC REGISTER"));
    SSTab2->addTab(buildReadPage(), QStringLiteral("READ DIAGNOSTIC REGISTER"));
    SSTab2->addTab(buildSensorPage(), QStringLiteral("TH2260 TEMP SENSOR"));
    SSTab2->onClick([this](int previous) { SSTab2_Click(previous); });
    middle->addWidget(SSTab2, 1);
    middle->addWidget(buildThermalFrame());
    v->addLayout(middle, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdRESET = makeButton(QStringLiteral("cmdRESET"), QStringLiteral("RESET QZ7740"), central);
    cmdEXIT = makeButton(QStringLiteral("cmdEXIT"), QStringLiteral("EXIT"), central);
    buttons->addWidget(cmdRESET);
    buttons->addWidget(cmdEXIT);
    v->addLayout(buttons);
    setCentralWidget(central);

    forms::onClick(cmdRESET, [this] { cmdRESET_Click(); });
    forms::onClick(cmdEXIT, [this] { cmdEXIT_Click(); });
    wireSensorPage();
}

frmDIAG::~frmDIAG() = default;

QWidget* frmDIAG::buildWordFrame() {
    frmwrite = makeFrame(QString(), this);
    frmwrite->setObjectName(QStringLiteral("frmwrite"));
    auto* g = new QGridLayout(frmwrite);
    Text1 = forms::addCaptionedBox(g, 0, 0, "WRITE", QStringLiteral("Text1"));
    lblREADSPI = forms::addCaptionedBox(g, 0, 1, "READ", QStringLiteral("lblREADSPI"));
    return frmwrite;
}

QWidget* frmDIAG::buildRegisterFrame() {
    frmDiagREG = makeFrame(QStringLiteral("DIAGNOSTIC REGISTER"), this);
    frmDiagREG->setObjectName(QStringLiteral("frmDiagREG"));
    auto* l = new QVBoxLayout(frmDiagREG);
    txtCP1 = new forms::BitRow(QStringLiteral("txtCP1"), qz::rowCaptions(qz::kDiagLabels), qz::kDiagGroups, frmDiagREG);
    for (int k = 0; k < 24; ++k) txtCP1->setDigit(k, '0');
    l->addWidget(txtCP1, 0, Qt::AlignLeft);
    return frmDiagREG;
}

QWidget* frmDIAG::buildThermalFrame() {
    frmDIAGA = makeFrame(QStringLiteral("TSENSE SELECT"), this);
    frmDIAGA->setObjectName(QStringLiteral("frmDIAGA"));
    auto* h = new QHBoxLayout(frmDIAGA);
    auto* column = new QVBoxLayout;
    optTSENSE[0] = forms::makeOption(forms::member("optTSENSE", 0), QStringLiteral("DISABLED"), frmDIAGA);
    column->addWidget(optTSENSE[0]);
    auto* blocks = new QHBoxLayout;
    for (const auto& block : qz::diag::kPointBlocks) {
        QGroupBox* frame = makeFrame(QString::fromLatin1(block.caption), frmDIAGA);
        auto* bv = new QVBoxLayout(frame);
        bv->setSpacing(2);
        for (int i = 0; i < 8; ++i) {
            const int index = block.first + i;
            // The cool block's points have no captions of their own.
            const QString caption = block.first == 1 ? QString() : QString::fromLatin1(qz::diag::kPointCaptions[static_cast<size_t>(i)]);
            optTSENSE[static_cast<size_t>(index)] = forms::makeOption(forms::member("optTSENSE", index), caption, frame);
            bv->addWidget(optTSENSE[static_cast<size_t>(index)]);
        }
        blocks->addWidget(frame);
    }
    column->addLayout(blocks);
    h->addLayout(column);
    h->addWidget(new Lead(QStringLiteral("GPO"), frmDIAGA));
    // One TSENSE code in the word: one point chosen, whichever block it is drawn in.
    forms::groupOptions(frmDIAGA, optTSENSE);
    for (int i = 0; i < qz::diag::kPoints; ++i)
        forms::onClick(optTSENSE[static_cast<size_t>(i)], [this, i] { optTSENSE_Click(i); });
    return frmDIAGA;
}

QWidget* frmDIAG::buildNodeFrame(const char* title, const char* name,
                                 std::array<QRadioButton*, 12>& options, bool bankB) {
    QGroupBox* frame = makeFrame(QString::fromLatin1(title), this);
    auto* v = new QVBoxLayout(frame);
    v->setSpacing(2);
    for (int index : qz::diag::kNodeOrder) {
        const qz::diag::Node& node = qz::diag::kNodeRows[static_cast<size_t>(index)];
        options[static_cast<size_t>(index)] =
            forms::makeOption(forms::member(name, index), QString::fromLatin1(bankB ? node.diagB : node.diagA), frame);
        v->addWidget(options[static_cast<size_t>(index)]);
    }
    options[kStartNode]->setChecked(true);
    return frame;
}

QWidget* frmDIAG::buildStageFrame() {
    QGroupBox* frame = makeFrame(QStringLiteral("TEST FORCE AMP"), this);
    frame->setObjectName(QStringLiteral("Frame4"));
    auto* v = new QVBoxLayout(frame);
    v->setSpacing(2);
    for (const auto& stage : qz::diag::kStages) {
        auto* o = forms::makeOption(forms::member("optTESTFORCE", stage.index), QString::fromLatin1(stage.caption), frame);
        optTESTFORCE[static_cast<size_t>(stage.index)] = o;
        v->addWidget(o);
        const int index = stage.index;
        forms::onClick(o, [this, index] { optTESTFORCE_Click(index); });
    }
    optTESTFORCE[0]->setChecked(true);
    v->addStretch(1);
    return frame;
}

QWidget* frmDIAG::buildPathFrame() {
    QGroupBox* frame = makeFrame(QString(), this);
    frame->setObjectName(QStringLiteral("Frame8"));
    auto* h = new QHBoxLayout(frame);
    auto* options = new QVBoxLayout;
    const char* captions[2] = {"DIAG A", "DIAG B"};
    for (int i = 0; i < 2; ++i) {
        optMEASAB[static_cast<size_t>(i)] = forms::makeOption(forms::member("optMEASAB", i), QString::fromLatin1(captions[i]), frame);
        options->addWidget(optMEASAB[static_cast<size_t>(i)]);
        forms::onClick(optMEASAB[static_cast<size_t>(i)], [this, i] { optMEASAB_Click(i); });
    }
    h->addLayout(options);
    auto* lead = new Lead(QStringLiteral("MEASOUT"), frame);
    lead->setMinimumHeight(60);
    h->addWidget(lead, 1);
    return frame;
}

QWidget* frmDIAG::buildSelectPage() {
    QVBoxLayout* v;
    QWidget* p = forms::makePage(this, v);
    auto* row = new QHBoxLayout;
    QWidget* a = buildNodeFrame("DIAG A", "optDIAGA", optDIAGA, false);
    a->setObjectName(QStringLiteral("Frame2"));
    QWidget* b = buildNodeFrame("DIAG B", "optDIAGB", optDIAGB, true);
    b->setObjectName(QStringLiteral("Frame3"));
    row->addWidget(a);
    row->addWidget(b);
    auto* right = new QVBoxLayout;
    right->addWidget(buildStageFrame());
    right->addWidget(buildPathFrame());
    cmdWRITEDIAGREG = makeButton(QStringLiteral("cmdWRITEDIAGREG"), QStringLiteral("WRITE DIAG REG"), p);
    right->addWidget(cmdWRITEDIAGREG);
    right->addStretch(1);
    row->addLayout(right);
    v->addLayout(row);
    for (const char* text :
         {"DIAG A/DIAG B bring different internal nodes onto the MEASOUT  path. ",
          "TEST FORCE AMP: Allows for each stage to be turned on/off to ensure correct operation. "
          "Intended only as a diagnositic function, all stages should be enabled for operation. ",
          "INTERNAL TEMP ARRAY : different internal point of Thermal array can be brought out to "
          "the GPO pin, where the TH2260 may be used to monitor the QZ7740 die temperature - this "
          "function is disabled by default. "})
        v->addWidget(makeNote(text, p));
    v->addStretch(1);
    for (int i = 0; i < qz::diag::kNodes; ++i) {
        forms::onClick(optDIAGA[static_cast<size_t>(i)], [this, i] { optDIAGA_Click(i); });
        forms::onClick(optDIAGB[static_cast<size_t>(i)], [this, i] { optDIAGB_Click(i); });
    }
    forms::onClick(cmdWRITEDIAGREG, [this] { cmdWRITEDIAGREG_Click(); });
    return p;
}

QWidget* frmDIAG::buildReadPage() {
    QVBoxLayout* v;
    QWidget* p = forms::makePage(this, v);
    cmdREADDIAG = makeButton(QStringLiteral("cmdREADDIAG"), QStringLiteral("READ DIAG REG"), p);
    v->addWidget(cmdREADDIAG, 0, Qt::AlignLeft);
    QGroupBox* frame = makeFrame(QStringLiteral("DIAGNOSTIC REGISTER"), p);
    frame->setObjectName(QStringLiteral("Frame5"));
    auto* fl = new QVBoxLayout(frame);
    txtRD1 = new forms::BitRow(QStringLiteral("txtRD1"), qz::rowCaptions(qz::kDiagLabels), qz::kDiagGroups, frame);
    for (int k = 0; k < 24; ++k) txtRD1->setDigit(k, '0');
    fl->addWidget(txtRD1, 0, Qt::AlignLeft);
    v->addWidget(frame);
    v->addStretch(1);
    forms::onClick(cmdREADDIAG, [this] { cmdREADDIAG_Click(); });
    return p;
}
