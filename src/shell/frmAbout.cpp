#include "shell/frmAbout.h"

#include "board/Message.h"
#include "forms/Build.h"
#include "forms/MessageBox.h"
#include "shell/Texts.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

frmAbout::frmAbout(qz::Session& s, forms::Navigator& n, QWidget* parent)
    : QDialog(parent), session_(s), nav_(n) {
    setObjectName(forms::formName(forms::Form::frmAbout));
    setModal(false);
    // The frame's close unloads the dialog, as "OK" does.
    setAttribute(Qt::WA_DeleteOnClose);

    auto* g = new QGridLayout(this);
    picIcon = forms::makeLabel(QStringLiteral("picIcon"), QString(), this);
    picIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(48, 48));
    g->addWidget(picIcon, 0, 0, 3, 1, Qt::AlignTop);
    lblTitle = forms::makeLabel(QStringLiteral("lblTitle"), QString(), this);
    QFont big = lblTitle->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.6);
    lblTitle->setFont(big);
    lblVersion = forms::makeLabel(QStringLiteral("lblVersion"), QString(), this);
    lblDescription = forms::makeLabel(QStringLiteral("lblDescription"),
                                      QString::fromLatin1(qz::kUpdateLine), this);
    lblDescription->setWordWrap(true);
    g->addWidget(lblTitle, 0, 1);
    g->addWidget(lblVersion, 1, 1);
    g->addWidget(lblDescription, 2, 1);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    g->addWidget(line, 3, 0, 1, 3);
    lblDisclaimer = forms::makeLabel(QStringLiteral("lblDisclaimer"), QString(), this);
    lblDisclaimer->setWordWrap(true);
    g->addWidget(lblDisclaimer, 4, 0, 1, 2);

    auto* buttons = new QVBoxLayout;
    cmdOK = forms::makeButton(QStringLiteral("cmdOK"), QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    cmdSysInfo = forms::makeButton(QStringLiteral("cmdSysInfo"), QStringLiteral("&System Info..."), this);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdSysInfo);
    buttons->addStretch(1);
    g->addLayout(buttons, 0, 2, 5, 1);
    g->setColumnStretch(1, 1);
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdSysInfo, &QPushButton::clicked, this, [this] { cmdSysInfo_Click(); });
}

void frmAbout::Form_Load() {
    const QString title = QString::fromLatin1(qz::kAppTitle);
    setWindowTitle(QStringLiteral("About ") + title + QString::fromStdString(session_.usb.titleSuffix()));
    lblVersion->setText(QStringLiteral("Version %1.%2.%3")
                            .arg(QZ_VERSION_MAJOR)
                            .arg(QZ_VERSION_MINOR)
                            .arg(QZ_VERSION_PATCH));
    lblTitle->setText(title);
}

void frmAbout::cmdOK_Click() { nav_.unload(forms::Form::frmAbout); }

void frmAbout::cmdSysInfo_Click() { StartSysInfo(); }

void frmAbout::StartSysInfo() {
    if (!qz::StartSysInfo(system_))
        forms::message(qz::kAppTitle, qz::kSysInfoUnavailable, qz::MsgIcon::None);
}
