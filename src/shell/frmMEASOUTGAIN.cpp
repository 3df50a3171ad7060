#include "shell/frmMEASOUTGAIN.h"
#include "forms/CrossPanel.h"

#include "forms/Build.h"
#include "shell/Texts.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

frmMEASOUTGAIN::frmMEASOUTGAIN(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : QDialog(parent), session_(s), nav_(n) {
    setObjectName(forms::formName(forms::Form::frmMEASOUTGAIN));
    setWindowTitle(QStringLiteral("QZ7740 MEASOUT GAIN") + QString::fromStdString(s.usb.titleSuffix()));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose);

    auto* g = new QGridLayout(this);
    QLabel* picIcon = forms::makeLabel(QStringLiteral("picIcon"), QString(), this);
    picIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(48, 48));
    g->addWidget(picIcon, 0, 0, 3, 1, Qt::AlignTop);
    QLabel* line1 = forms::makeLabel(
        QStringLiteral("lblLine1"),
        QStringLiteral("YOU HAVE SELECTED TO CHANGE THE MEASOUT GAIN FROM 0.2 TO 1,"), this);
    QLabel* line2 = forms::makeLabel(QStringLiteral("lblLine2"),
                                     QStringLiteral("IF LINK 4 IS INSERTED, PLEASE REMOVE IT NOW"), this);
    QFont bold = line1->font();
    bold.setBold(true);
    line1->setFont(bold);
    line2->setFont(bold);
    g->addWidget(line1, 0, 1);
    g->addWidget(line2, 1, 1);
    g->addWidget(forms::makeLabel(QStringLiteral("lblDescription"), QString::fromLatin1(qz::kUpdateLine), this),
                 2, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOK = forms::makeButton(QStringLiteral("cmdOK"), QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdSysInfo = forms::makeButton(QStringLiteral("cmdSysInfo"), QStringLiteral("Cancel"), this);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdSysInfo);
    g->addLayout(buttons, 3, 0, 1, 2);
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdSysInfo, &QPushButton::clicked, this, [this] { cmdSysInfo_Click(); });
}

void frmMEASOUTGAIN::showOnConsole() {
    if (auto* text1 = forms::controlOf<QLineEdit>(nav_, forms::ref::kConsoleWord))
        text1->setText(forms::hexText(session_.general.SYSreg, 6));
}

void frmMEASOUTGAIN::cmdOK_Click() {
    session_.general.SYSreg &= ~0x20FF;
    showOnConsole();
    nav_.unload(forms::Form::frmMEASOUTGAIN);
}

// "Cancel" puts the gain of 0.2 back in the shadow only; it goes out with the next write.
void frmMEASOUTGAIN::cmdSysInfo_Click() {
    session_.general.SYSreg |= 0x2000;
    showOnConsole();
    nav_.unload(forms::Form::frmMEASOUTGAIN);
}
