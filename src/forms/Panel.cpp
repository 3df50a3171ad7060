#include "forms/Panel.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>

namespace forms {

Panel::Panel(qz::Session& s, Navigator& n, Form f, const QString& title, QWidget* parent)
    : QMainWindow(parent), session(s), nav(n), form(f) {
    setObjectName(formName(f));
    setWindowTitle(title + QString::fromStdString(s.usb.titleSuffix()));
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

} // namespace forms
