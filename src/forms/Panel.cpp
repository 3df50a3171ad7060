#include "forms/Panel.h"

#include "forms/Recording.h"
#include "forms/RemoteLocal.h"

#include <QAction>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>

namespace forms {

Panel::Panel(qz::Session& s, Navigator& n, Form f, const QString& title, QWidget* parent)
    : QMainWindow(parent), session(s), nav(n), form(f) {
    setObjectName(formName(f));
    setWindowTitle(title + QString::fromStdString(s.usb.titleSuffix()));
    // Remote: who has the program, and the key that hands it back. Right-click on the
    // indication offers to send the client away.
    remote_ = new QLabel(this);
    remote_->setObjectName(QStringLiteral("lblRemote"));
    remote_->setStyleSheet(
        QStringLiteral("QLabel { font-weight: bold; color: #6b3d00; background: #ffe7a8;"
                       " border: 1px solid #c08a1e; border-radius: 2px; padding: 0px 6px; }"));
    remote_->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* disconnectClient = new QAction(QStringLiteral("Disconnect client"), remote_);
    disconnectClient->setObjectName(QStringLiteral("actDisconnectClient"));
    remote_->addAction(disconnectClient);
    connect(disconnectClient, &QAction::triggered, this, [] { remoteLocal().askDisconnect(); });
    statusBar()->addPermanentWidget(remote_);
    local_ = new QPushButton(QStringLiteral("Local"), this);
    local_->setObjectName(QStringLiteral("cmdLocal"));
    // The key takes no focus: a box the operator left must not see its focus go.
    local_->setFocusPolicy(Qt::NoFocus);
    statusBar()->addPermanentWidget(local_);
    connect(local_, &QPushButton::clicked, this, [] { remoteLocal().pressLocal(); });
    connect(&remoteLocal(), &RemoteLocal::changed, this, &Panel::showRemote);
    showRemote();
    // Recording: a mark while the operator's actions are being recorded; a click on it
    // opens the recorder.
    recording_ = new QPushButton(QStringLiteral("\u25CF REC"), this);
    recording_->setObjectName(QStringLiteral("lblRecording"));
    recording_->setFlat(true);
    recording_->setFocusPolicy(Qt::NoFocus);
    recording_->setToolTip(QStringLiteral("Recording what is done on the panels as remote commands: "
                                          "click to open the recorder."));
    recording_->setStyleSheet(QStringLiteral("QPushButton { font-weight: bold; color: #b00000; padding: 0px 6px; }"));
    forms::keepLocal(recording_);
    statusBar()->addPermanentWidget(recording_);
    recording_->setVisible(recording().active());
    connect(recording_, &QPushButton::clicked, this, [] { recording().openWindow(); });
    connect(&recording(), &Recording::changed, this, [this] { recording_->setVisible(recording().active()); });
    link_ = new QLabel(this);
    link_->setObjectName(QStringLiteral("linkStatus"));
    link_->setText(QString::fromLatin1(qz::linkText(s.usb.linkState())));
    statusBar()->addPermanentWidget(link_);
    QPointer<QLabel> label = link_;
    s.addLinkListener([label](qz::LinkState state) {
        if (label) label->setText(QString::fromLatin1(qz::linkText(state)));
    });
    // A lost board back on the bus: the way to start it afresh stands beside the link.
    reconnect_ = new QPushButton(QStringLiteral("Reconnect"), this);
    reconnect_->setObjectName(QStringLiteral("cmdReconnect"));
    reconnect_->setVisible(s.boardBack());
    statusBar()->addPermanentWidget(reconnect_);
    connect(reconnect_, &QPushButton::clicked, this, [&s = session] {
        if (s.reconnect) s.reconnect();
    });
    QPointer<QPushButton> button = reconnect_;
    s.addBackListener([button](bool back) {
        if (button) button->setVisible(back);
    });
}

void Panel::showRemote() {
    const RemoteLocal& rl = remoteLocal();
    remote_->setVisible(rl.isRemote());
    local_->setVisible(rl.isRemote());
    if (!rl.isRemote()) return;
    remote_->setText(rl.remoteText());
    const QString who = rl.address().isEmpty() ? QStringLiteral("a client")
                                               : QStringLiteral("the client at ") + rl.address();
    remote_->setToolTip(
        QStringLiteral("Under remote control by %1: the panels show its settings and "
                       "take none from the keyboard or mouse.\nRight-click to "
                       "disconnect the client.")
            .arg(who));
    local_->setEnabled(!rl.isLockedOut());
    local_->setToolTip(
        rl.isLockedOut() ? QStringLiteral("The client has locked the Local key.")
                         : QStringLiteral("Take the panels back until the client's next command."));
}

} // namespace forms
