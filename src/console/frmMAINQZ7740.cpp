#include "console/frmMAINQZ7740.h"

#include "forms/BitRow.h"
#include "forms/Entry.h"
#include "forms/MessageBox.h"
#include "forms/TabControl.h"
#include "levels/EntryField.h"
#include "registers/HexText.h"
#include "registers/ReadDecoders.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QLabel* named(QLabel* l, const char* name) {
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

QPushButton* button(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

QLineEdit* wordBox(const char* name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(name));
    e->setFont(forms::hexFont());
    e->setFixedWidth(QFontMetrics(e->font()).horizontalAdvance(QStringLiteral("00000000")) + 16);
    return e;
}

} // namespace

frmMAINQZ7740::frmMAINQZ7740(qz::Session& s, QWidget* parent)
    : forms::Panel(s, QStringLiteral("frmMAINQZ7740"), QStringLiteral("QZ7740 MAIN MENU"), parent) {
    auto* central = new QWidget(this);
    auto* v = new QVBoxLayout(central);
    QZ7740 = new forms::TabControl(QStringLiteral("QZ7740"), 5, central);
    QZ7740->addTab(buildReadSystemTab(), QStringLiteral("READ SYSTEM CONTROL REG"));
    v->addWidget(QZ7740, 1);
    v->addWidget(buildWordBar());
    setCentralWidget(central);

    session.showWordSent = [this](const std::string& hex) {
        Text1->setText(QString::fromStdString(hex));
    };
}

QWidget* frmMAINQZ7740::buildWordBar() {
    auto* bar = new QWidget(this);
    auto* h = new QHBoxLayout(bar);
    auto* write = new QVBoxLayout;
    write->addWidget(new QLabel(QStringLiteral("WRITE"), bar));
    Text1 = wordBox("Text1", bar);
    write->addWidget(Text1);
    h->addLayout(write);
    auto* read = new QVBoxLayout;
    read->addWidget(new QLabel(QStringLiteral("READ"), bar));
    lblREADSPI = wordBox("lblREADSPI", bar);
    lblREADSPI->setReadOnly(true);
    lblREADSPI->setFocusPolicy(Qt::NoFocus);
    read->addWidget(lblREADSPI);
    h->addLayout(read);
    cmdREADADC = button("cmdREADADC", "READ ADC", bar);
    h->addWidget(cmdREADADC, 0, Qt::AlignBottom);
    h->addStretch(1);
    cmdEXIT = button("cmdEXIT", "EXIT", bar);
    h->addWidget(cmdEXIT, 0, Qt::AlignBottom);

    forms::onEnter(Text1, [this] { Text1_KeyPress(13); });
    forms::onLeave(Text1, [this] { Text1_LostFocus(); });
    connect(cmdREADADC, &QPushButton::clicked, this, [this] { cmdREADADC_Click(); });
    connect(cmdEXIT, &QPushButton::clicked, this, [this] { cmdEXIT_Click(); });
    return bar;
}

QWidget* frmMAINQZ7740::buildReadSystemTab() {
    auto* page = new QWidget(this);
    auto* v = new QVBoxLayout(page);
    readSYS = button("readSYS", "READ SYSTEM CONTROL REGISTER", page);
    readSYS->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    v->addWidget(readSYS);

    auto* status = new QGroupBox(page);
    auto* g = new QGridLayout(status);
    lbltemp = named(new QLabel(QStringLiteral("130degC"), status), "lbltemp");
    lblGAIN1 = named(new QLabel(QStringLiteral("MEASOUT GAIN = "), status), "lblGAIN1");
    lblGAIN0 = named(new QLabel(QStringLiteral("ISENSE GAIN = "), status), "lblGAIN0");
    lblfin = named(new QLabel(QStringLiteral("FIN GND or DAC"), status), "lblfin");
    lblcpo = named(new QLabel(QStringLiteral("COMPARATOR"), status), "lblcpo");
    lblPD = named(new QLabel(QStringLiteral("/POWER DOWN"), status), "lblPD");
    QLabel* rows[] = {lbltemp, lblGAIN1, lblGAIN0, lblfin, lblcpo, lblPD};
    for (int i = 0; i < 6; ++i) {
        rows[i]->setFrameShape(QFrame::Panel);
        rows[i]->setFrameShadow(QFrame::Sunken);
        rows[i]->setMinimumWidth(320);
        g->addWidget(rows[i], i, 0);
    }
    v->addWidget(status);

    txtRSYS = new forms::BitRow(QStringLiteral("txtRSYS"), qz::rowCaptions(qz::kSystemControlLabels), page);
    v->addWidget(txtRSYS, 0, Qt::AlignLeft);
    v->addStretch(1);
    connect(readSYS, &QPushButton::clicked, this, [this] { readSYS_Click(); });
    return page;
}

void frmMAINQZ7740::Form_Load() { session.usb.LoadUSB(); }

void frmMAINQZ7740::Text1_KeyPress(int keyAscii) {
    if (keyAscii != 13 || session.general.entryBusy) return;
    const qz::FieldCheck c = qz::checkWordEntry(Text1->text().toStdString());
    if (!c.ok) {
        forms::refuseEntry(Text1, c.message);
        return;
    }
    Text1->setText(QString::fromStdString(c.text));
    session.SPIout(c.value);
}

void frmMAINQZ7740::Text1_LostFocus() {
    // An empty box has nothing to check: leaving it must not trap the focus in it.
    if (Text1->text().isEmpty()) return;
    const qz::FieldCheck c = qz::checkWordOnLeave(Text1->text().toStdString());
    if (!c.ok) {
        forms::refuseEntry(Text1, c.message);
        return;
    }
    Text1->setText(QString::fromStdString(c.text));
}

void frmMAINQZ7740::cmdREADADC_Click() {
    session.usb.SendRequest(232);
    const int32_t code = session.usb.ReadADCWord();
    lblREADSPI->setText(QString::fromStdString(qz::NumberToHex(code, 6)));
}

void frmMAINQZ7740::cmdEXIT_Click() { forms::endProgram(); }

void frmMAINQZ7740::readSYS_Click() {
    session.SPIout(0x810000);
    int32_t r = session.usb.ReadSPIWord();
    lblREADSPI->setText(QString::fromStdString(qz::NumberToHex(r, 6)));
    const qz::SystemControlReadback d = qz::decodeSystemControl(r);
    if (d.temp) lbltemp->setText(QString::fromStdString(*d.temp));
    lblGAIN1->setText(QString::fromStdString(d.gain1));
    lblGAIN0->setText(QString::fromStdString(d.gain0));
    lblfin->setText(QString::fromStdString(d.fin));
    lblcpo->setText(QString::fromStdString(d.cpo));
    lblPD->setText(QString::fromStdString(d.pd));
    txtRSYS->mirror(r, qz::kDecToBinRSYS);
}
