#include "forms/RemoteLocal.h"

#include "forms/Panel.h"

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QThread>
#include <QTimer>
#include <QToolTip>
#include <QWidget>

#include <algorithm>

namespace forms {

namespace {

constexpr const char* kKeepLocal = "qzKeepLocal";
// A box that closes inside another loop (a menu held open, say) is looked at again
// this often until that loop too has ended.
constexpr int kRecheckMs = 20;

int loopLevel() {
    return QThread::currentThread()->loopLevel();
}

// The operator's own input: the kinds the panels hold back while Remote.
bool operatorInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop: return true;
    default: return false;
    }
}

// Whether the widget stands inside the central widget of a panel, and so is held. A
// list's open list and a box's menu are windows of their own, but belong to the control
// under them; any other window (a message box, a dialog) is the operator's.
bool insidePanel(QWidget* w) {
    for (; w != nullptr; w = w->parentWidget()) {
        if (w->property(kKeepLocal).toBool()) return false;
        auto* panel = dynamic_cast<Panel*>(w->parentWidget());
        if (panel != nullptr && panel->centralWidget() == w) return true;
        if (w->isWindow() && w->windowType() != Qt::Popup) return false;
    }
    return false;
}

} // namespace

QString RemoteLocal::remoteText() const {
    return address_.isEmpty() ? QStringLiteral("REMOTE") : QStringLiteral("REMOTE ") + address_;
}

void RemoteLocal::set(State state) {
    if (state_ == state) return;
    state_ = state;
    emit changed();
}

void RemoteLocal::clientCommand(const QString& address) {
    hook();
    const bool moved = address_ != address;
    address_ = address;
    if (state_ == State::Local)
        set(State::Remote);
    else if (moved)
        emit changed();
}

void RemoteLocal::clientGone() {
    hook();
    address_.clear();
    if (state_ == State::Local) return;
    set(State::Local);
}

void RemoteLocal::goLocal() {
    hook();
    set(State::Local);
}

void RemoteLocal::goRemote() {
    hook();
    set(State::Remote);
}

void RemoteLocal::lockout() {
    hook();
    set(State::RemoteLockout);
}

bool RemoteLocal::pressLocal() {
    if (state_ == State::RemoteLockout) return false;
    set(State::Local);
    return true;
}

void RemoteLocal::askDisconnect() {
    if (auto ask = onDisconnectAsked) ask();
}

bool RemoteLocal::operatorBusy() const {
    return QApplication::activeModalWidget() != nullptr;
}

void RemoteLocal::hook() {
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr || hookedTo_ == app) return;
    app->installEventFilter(this);
    hookedTo_ = app;
}

bool RemoteLocal::eventFilter(QObject* watched, QEvent* e) {
    const QEvent::Type type = e->type();
    if (type == QEvent::Show || type == QEvent::Hide) {
        if (!watched->isWidgetType()) return false;
        auto* w = static_cast<QWidget*>(watched);
        if (!w->isWindow()) return false;
        if (type == QEvent::Show && w->isModal())
            modalShown(w);
        else if (type == QEvent::Hide && waitingFree_)
            postCheck();
        return false;
    }
    if (state_ == State::Local || !watched->isWidgetType()) return false;
    // A mnemonic's shortcut and the text of an input method reach the control as events
    // sent from code, but they are the operator's keys all the same.
    if (type == QEvent::Shortcut || type == QEvent::InputMethod)
        return insidePanel(static_cast<QWidget*>(watched));
    if (!operatorInput(type) || !e->spontaneous()) return false;
    return heldBack(static_cast<QWidget*>(watched), e);
}

bool RemoteLocal::heldBack(QWidget* target, QEvent* e) const {
    if (!insidePanel(target)) return false;
    // The controls are not greyed (the operator reads them): a press says why it does
    // nothing.
    if (e->type() == QEvent::MouseButtonPress || e->type() == QEvent::MouseButtonDblClick) {
        const QString why =
            state_ == State::RemoteLockout
                ? QStringLiteral("Under remote control: the client has locked the Local key.")
                : QStringLiteral("Under remote control: press Local in the status bar to "
                                 "use the panel.");
        QToolTip::showText(static_cast<QMouseEvent*>(e)->globalPosition().toPoint(), why, target);
    }
    return true;
}

void RemoteLocal::modalShown(QWidget* window) {
    // The box's own loop has not begun yet: the level now is the one to come back to.
    const int level = loopLevel();
    baseLevel_ = waitingFree_ ? std::min(baseLevel_, level) : level;
    waitingFree_ = true;
    // A box deleted while open sends no Hide.
    connect(window, &QObject::destroyed, this, &RemoteLocal::postCheck, Qt::UniqueConnection);
}

void RemoteLocal::postCheck() {
    if (checkPosted_) return;
    checkPosted_ = true;
    QMetaObject::invokeMethod(this, &RemoteLocal::checkFree, Qt::QueuedConnection);
}

void RemoteLocal::checkFree() {
    checkPosted_ = false;
    if (!waitingFree_ || operatorBusy()) return; // a box still open says so when it closes
    if (loopLevel() > baseLevel_) {
        QTimer::singleShot(kRecheckMs, this, &RemoteLocal::postCheck);
        return;
    }
    waitingFree_ = false;
    if (auto run = onOperatorFree) run();
}

RemoteLocal& remoteLocal() {
    static RemoteLocal instance;
    instance.hook();
    return instance;
}

void keepLocal(QWidget* control) {
    control->setProperty(kKeepLocal, true);
}

} // namespace forms
