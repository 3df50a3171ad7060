// The compensation panel as the engineer sees it: register 1 on the first page, register
// 2 with its drawn network on the second, the word boxes and the ways out under both.

#include "compensation/frmCompensation.h"

#include "compensation/CompDrawings.h"
#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Menus.h"
#include "forms/TabControl.h"
#include "registers/BitLabels.h"
#include "registers/Compensation.h"
#include "registers/RegisterMap.h"

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
using forms::makeLabel;
using forms::makeList;

namespace {

QStringList itemsOf(std::span<const qz::CompItem> items) {
    return forms::itemsOf(items, &qz::CompItem::text);
}

} // namespace

frmCompensation::frmCompensation(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : forms::Panel(s, n, forms::Form::frmCompensation,
                   QStringLiteral("QZ7740 COMPENSATION REGISTERS"), parent) {
    using forms::Form;
    using forms::Menu;
    using forms::MenuAction;
    forms::buildMenuBar(
        *this,
        {
            {Menu::File, "mnuClose", "Close", MenuAction::Unload},
            {Menu::File, "mnuEnd", "Exit", MenuAction::Exit},
            {Menu::View, "mnuSweepM", "Sweep Voltage Measurements", MenuAction::Show,
             Form::frmMeasure},
            {Menu::View, "mnuDiag", "Diagnostic Functions", MenuAction::Show, Form::frmDIAG},
            {Menu::View, "mnuMain", "QZ7740 Main Menu", MenuAction::Show, Form::frmMAINQZ7740},
            {Menu::Help, "mnuAbout", "About", MenuAction::Show, Form::frmAbout},
        });

    auto* central = new QWidget(this);
    auto* v = new QVBoxLayout(central);
    SSTab1 = new forms::TabControl(QStringLiteral("SSTab1"), 2, central);
    SSTab1->addTab(buildRegister1Page(), QStringLiteral("COMPENSATION REGISTER 1"));
    SSTab1->addTab(buildRegister2Page(), QStringLiteral("COMPENSATION REGISTER 2"));
    v->addWidget(SSTab1, 1);
    v->addWidget(buildWordBar());
    setCentralWidget(central);
    wire();
}

QWidget* frmCompensation::buildRegister1Page() {
    QVBoxLayout* v;
    QWidget* p = forms::makePage(this, v);
    txtCP1 = new forms::BitRow(QStringLiteral("txtCP1"), qz::rowCaptions(qz::kComp1Labels), qz::kComp1Groups, p);
    v->addWidget(txtCP1, 0, Qt::AlignLeft);

    auto* frames = new QHBoxLayout;
    QGroupBox* mode = forms::makeFrame(QStringLiteral("COMPENSATION MODE"), p);
    auto* mv = new QVBoxLayout(mode);
    QGroupBox* lists = forms::makeFrame(QStringLiteral("AUTO COMPENSATION"), p);
    autoComp = forms::makeAutoComp(mode, lists);
    for (QRadioButton* option : autoComp.Option2) mv->addWidget(option);
    mv->addStretch(1);
    frames->addWidget(mode);

    auto* g = new QGridLayout(lists);
    g->addWidget(makeCaption("ESR", lists), 0, 0);
    g->addWidget(autoComp.cboRC, 0, 1);
    g->addLayout(autoComp.milliohm, 0, 2);
    g->addWidget(makeCaption("LOAD CAPACITANCE", lists), 1, 0);
    g->addWidget(autoComp.cboCR, 1, 1);
    g->addWidget(autoComp.Label9, 1, 2);
    frames->addWidget(lists);
    frames->addStretch(1);
    v->addLayout(frames);
    v->addWidget(new CompLoad(p), 0, Qt::AlignLeft);

    auto* buttons = new QHBoxLayout;
    cmdWriteCOMP1 = makeButton(QStringLiteral("cmdWriteCOMP1"), QStringLiteral("LOAD COMP 1"), p);
    cmdREADC1 = makeButton(QStringLiteral("cmdREADC1"), QStringLiteral("READ COMP1"), p);
    buttons->addWidget(cmdWriteCOMP1);
    buttons->addWidget(cmdREADC1);
    buttons->addStretch(1);
    v->addLayout(buttons);
    v->addStretch(1);
    return p;
}

QWidget* frmCompensation::buildRegister2Page() {
    QVBoxLayout* v;
    QWidget* p = forms::makePage(this, v);
    txtCP2 = new forms::BitRow(QStringLiteral("txtCP2"), qz::rowCaptions(qz::kComp2Labels), qz::kComp2Groups, p);
    v->addWidget(txtCP2, 0, Qt::AlignLeft);
    chkManualMode = forms::makeCheck(QStringLiteral("chkManualMode"),
                                     QString::fromLatin1(qz::kManualItem.text), false, p);
    v->addWidget(chkManualMode);

    auto* lists = new QGridLayout;
    cboRZ =
        makeList(QStringLiteral("cboRZ"), itemsOf(qz::kRzItems), QStringLiteral("Choose Rz"), p);
    cboRp =
        makeList(QStringLiteral("cboRp"), itemsOf(qz::kRpItems), QStringLiteral("Choose Rp"), p);
    cboGM =
        makeList(QStringLiteral("cboGM"), itemsOf(qz::kGmItems), QStringLiteral("Choose gm"), p);
    const std::pair<const char*, QComboBox*> columns[] = {
        {"Rz", cboRZ}, {"Rp", cboRp}, {"gm", cboGM}};
    for (int c = 0; c < 3; ++c) {
        lists->addWidget(makeCaption(columns[c].first, p), 0, c);
        lists->addWidget(columns[c].second, 1, c);
    }
    lists->setColumnStretch(3, 1);
    v->addLayout(lists);

    network = new CompNetwork(p);
    for (int k = 0; k < 7; ++k) {
        auto* option = forms::makeOption(forms::member("Option1", k),
                                         QString::fromLatin1(qz::kCfRows[k].text), network);
        Option1[static_cast<size_t>(k)] = option;
        network->placeOption(k, option);
    }
    for (int i = 0; i < 3; ++i) {
        chkCc[static_cast<size_t>(i)] =
            forms::makeCheck(QString::fromLatin1(qz::kchkCc[i].control), QString(), false, network);
        chkCc[static_cast<size_t>(i)]->setToolTip(QString::fromLatin1(qz::kCcSwitches[i].text));
        network->placeCheck(i + 1, chkCc[static_cast<size_t>(i)]);
    }
    v->addWidget(network, 0, Qt::AlignLeft);

    auto* buttons = new QHBoxLayout;
    cmdWriteCOMP2 = makeButton(QStringLiteral("cmdWriteCOMP2"), QStringLiteral("LOAD COMP 2"), p);
    cmdREADC2 = makeButton(QStringLiteral("cmdREADC2"), QStringLiteral("READ COMP2"), p);
    buttons->addWidget(cmdWriteCOMP2);
    buttons->addWidget(cmdREADC2);
    buttons->addStretch(1);
    v->addLayout(buttons);
    v->addStretch(1);
    return p;
}

QWidget* frmCompensation::buildWordBar() {
    auto* bar = new QWidget(this);
    auto* g = new QGridLayout(bar);
    g->setContentsMargins(0, 0, 0, 0);
    Text1 = forms::addCaptionedBox(g, 0, 0, "WRITE", QStringLiteral("Text1"));
    lblREADSPI = forms::addCaptionedBox(g, 0, 1, "READ", QStringLiteral("lblREADSPI"));
    cmdRESET = makeButton(QStringLiteral("cmdRESET"), QStringLiteral("RESET QZ7740"), bar);
    cmdEXIT = makeButton(QStringLiteral("cmdEXIT"), QStringLiteral("EXIT"), bar);
    g->addWidget(cmdRESET, 1, 3);
    g->addWidget(cmdEXIT, 1, 4);
    g->setColumnStretch(2, 1);
    return bar;
}
