// The read tabs of the console: a read of a register, its reply decoded into status
// texts, lamps and a bit row. Nothing here changes a shadow word.

#include "console/frmMAINQZ7740.h"
#include "forms/Controls.h"

#include "forms/BitRow.h"
#include "forms/Build.h"
#include "forms/Lamp.h"
#include "registers/BitMirror.h"
#include "registers/ReadDecoders.h"
#include "registers/RegisterMap.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using forms::makeButton;
using forms::makeStatus;

using forms::qtext;

QWidget* frmMAINQZ7740::buildReadSystemTab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    readSYS = makeButton(QStringLiteral("readSYS"), QStringLiteral("READ SYSTEM CONTROL REGISTER"), p);
    v->addWidget(readSYS, 0, Qt::AlignLeft);
    auto* g = new QGridLayout;
    lbltemp = makeStatus(QStringLiteral("lbltemp"), QStringLiteral("130degC"), p);
    lblGAIN1 = makeStatus(QStringLiteral("lblGAIN1"), QStringLiteral("MEASOUT GAIN = "), p);
    lblGAIN0 = makeStatus(QStringLiteral("lblGAIN0"), QStringLiteral("ISENSE GAIN = "), p);
    lblfin = makeStatus(QStringLiteral("lblfin"), QStringLiteral("FIN GND or DAC"), p);
    lblcpo = makeStatus(QStringLiteral("lblcpo"), QStringLiteral("COMPARATOR"), p);
    lblPD = makeStatus(QStringLiteral("lblPD"), QStringLiteral("/POWER DOWN"), p);
    const char* heads[] = {"DIE THERMAL SHUTDOWN", "MEASOUT GAIN", "ISENSE GAIN",
                           "FORCE AMP INPUT",      "COMPARATOR",   "POWER"};
    QLabel* rows[] = {lbltemp, lblGAIN1, lblGAIN0, lblfin, lblcpo, lblPD};
    for (int i = 0; i < 6; ++i) {
        g->addWidget(forms::makeCaption(heads[i], p), i, 0);
        g->addWidget(rows[i], i, 1);
    }
    g->setColumnStretch(2, 1);
    v->addLayout(g);
    txtRSYS = new forms::BitRow(QStringLiteral("txtRSYS"), qz::rowCaptions(qz::kSystemControlLabels), p);
    v->addWidget(txtRSYS, 0, Qt::AlignLeft);
    v->addStretch(1);
    forms::onClick(readSYS, [this] { readSYS_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildReadDPS1Tab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    READPMU = makeButton(QStringLiteral("READPMU"), QStringLiteral("READ DPS1 REGISTER"), p);
    v->addWidget(READPMU, 0, Qt::AlignLeft);
    auto* g = new QGridLayout;
    const char* captions[6] = {"CHANNEL DISABLED", "CURENT RANGE", "COMPARE ?", "",
                               "CLAMP DISABLED",   "MEASURE MODE"};
    const char* heads[6] = {"FORCE AMPLIFIER", "CURRENT RANGE", "COMPARATOR", "MEASOUT",
                            "CLAMPS",          "MEASOUT SOURCE"};
    for (int i = 0; i < 6; ++i) {
        RPMU[static_cast<size_t>(i)] = makeStatus(forms::member("RPMU", i), QString::fromLatin1(captions[i]), p);
        g->addWidget(forms::makeCaption(heads[i], p), i, 0);
        g->addWidget(RPMU[static_cast<size_t>(i)], i, 1);
    }
    g->setColumnStretch(2, 1);
    v->addLayout(g);
    txtRPMU = new forms::BitRow(QStringLiteral("txtRPMU"), qz::rowCaptions(qz::kDPS1Labels), p);
    v->addWidget(txtRPMU, 0, Qt::AlignLeft);
    v->addStretch(1);
    forms::onClick(READPMU, [this] { READPMU_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildReadDPS2Tab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    cmdReadDPS2 = makeButton(QStringLiteral("cmdReadDPS2"), QStringLiteral("READ DPS2 REGISTER"), p);
    v->addWidget(cmdReadDPS2, 0, Qt::AlignLeft);
    txtRDPS2 = new forms::BitRow(QStringLiteral("txtRDPS2"), qz::rowCaptions(qz::kDPS2Labels), p);
    v->addWidget(txtRDPS2, 0, Qt::AlignLeft);
    v->addStretch(1);
    forms::onClick(cmdReadDPS2, [this] { cmdReadDPS2_Click(); });
    return p;
}

QWidget* frmMAINQZ7740::buildReadAlarmTab() {
    auto* p = new QWidget(this);
    auto* v = new QVBoxLayout(p);
    auto* buttons = new QHBoxLayout;
    READCOMP = makeButton(QStringLiteral("READCOMP"), QStringLiteral("READ ALARM STATUS REGISTER"), p);
    READALARM = makeButton(QStringLiteral("READALARM"), QStringLiteral("READ ALARM STATUS AND CLEAR"), p);
    buttons->addWidget(READCOMP);
    buttons->addWidget(READALARM);
    buttons->addStretch(1);
    v->addLayout(buttons);
    auto* lamps = new QGridLayout;
    const char* names[2] = {"LTALM", "TMPALM"};
    for (int i = 0; i < 2; ++i) {
        cmdTEMP[static_cast<size_t>(i)] = new forms::Lamp(forms::member("cmdTEMP", i), p);
        lamps->addWidget(forms::makeCaption(names[i], p), 0, i);
        lamps->addWidget(cmdTEMP[static_cast<size_t>(i)], 1, i);
    }
    lamps->setColumnStretch(2, 1);
    v->addLayout(lamps);
    v->addWidget(forms::makeCaption("BITS in BOLD are ACTIVE LOW", p));
    txtALM = new forms::BitRow(QStringLiteral("txtALM"), qz::rowCaptions(qz::kAlarmStatusLabels), p,
                               0xFFC0);
    v->addWidget(txtALM, 0, Qt::AlignLeft);
    v->addStretch(1);
    forms::onClick(READCOMP, [this] { READCOMP_Click(); });
    forms::onClick(READALARM, [this] { READALARM_Click(); });
    return p;
}

int32_t frmMAINQZ7740::readRegister(int32_t command) {
    const int32_t r = session.readWord(command);
    lblREADSPI->setText(forms::hexText(r, 6));
    return r;
}

void frmMAINQZ7740::readSYS_Click() {
    int32_t r = readRegister(qz::readCommandOf(qz::reg::kSystemControl));
    const qz::SystemControlReadback d = qz::decodeSystemControl(r);
    if (d.temp) lbltemp->setText(qtext(*d.temp));
    lblGAIN1->setText(qtext(d.gain1));
    lblGAIN0->setText(qtext(d.gain0));
    lblfin->setText(qtext(d.fin));
    lblcpo->setText(qtext(d.cpo));
    lblPD->setText(qtext(d.pd));
    txtRSYS->mirror(r, qz::kDecToBinRSYS);
}

void frmMAINQZ7740::READPMU_Click() {
    int32_t r = readRegister(qz::readCommandOf(qz::reg::kDPS1));
    const qz::DPS1Readback d = qz::decodeDPS1(r);
    RPMU[0]->setText(qtext(d.channel));
    if (d.range) RPMU[1]->setText(qtext(*d.range));
    RPMU[2]->setText(qtext(d.compare));
    RPMU[3]->setVisible(d.measoutHiZ);
    if (d.measoutHiZ) RPMU[3]->setText(QStringLiteral("MEASOUT Hi-Z"));
    RPMU[5]->setText(qtext(d.source));
    RPMU[4]->setText(qtext(d.clamps));
    txtRPMU->mirror(r, qz::kDecToBinRPMU);
}

void frmMAINQZ7740::cmdReadDPS2_Click() {
    int32_t r = readRegister(qz::readCommandOf(qz::reg::kDPS2));
    txtRDPS2->mirror(r, qz::kDecToBinRDPS2);
}

void frmMAINQZ7740::READCOMP_Click() { alarmRead(qz::readCommandOf(qz::reg::kAlarmStatus)); }

void frmMAINQZ7740::READALARM_Click() { alarmRead(qz::readCommandOf(qz::reg::kAlarmStatusClear)); }

void frmMAINQZ7740::alarmRead(int32_t command) {
    int32_t r = session.readAlarmStatus(command);
    lblREADSPI->setText(forms::hexText(r, 6));
    forms::showAlarms(this, r);
    txtALM->mirror(r, qz::kDecToBinALM);
}
