#pragma once
// Remote and local, as on a bench instrument. While a client works the program, every
// panel shows "REMOTE" with the client's address, and the controls of the panels take no
// input from the operator, who still sees each change the client makes. The Local key in
// the status bar hands the panels back until the client's next command, unless the client
// has locked it out. The remote control drives the panels by events sent from code, which
// always pass; only the operator's own mouse, keys and wheel are held back.

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class QWidget;

namespace forms {

class RemoteLocal : public QObject {
    Q_OBJECT
public:
    enum class State {
        Local,         // the operator has the panels
        Remote,        // the client has them; the Local key hands them back
        RemoteLockout, // the client has them and the Local key is locked too
    };

    // A client's command came from this address: Remote, with the address shown. From
    // Local too: the Local key hands the panels back only until the client's next command.
    // A lockout in force stays.
    void clientCommand(const QString& address);
    // The client went: Local, the lockout cleared.
    void clientGone();
    // The client hands the panels back: Local, the lockout cleared.
    void goLocal();
    // The client takes the panels: Remote, without lockout.
    void goRemote();
    // The client takes the panels and locks the Local key: Remote with lockout.
    void lockout();
    // The operator's Local key: Local until the client's next command. Refused (false)
    // under lockout.
    bool pressLocal();
    // The operator chose "Disconnect client": onDisconnectAsked runs.
    void askDisconnect();

    State state() const { return state_; }
    bool isRemote() const { return state_ != State::Local; }
    bool isLockedOut() const { return state_ == State::RemoteLockout; }
    // The address of the client whose command came last; empty before any.
    QString address() const { return address_; }
    // What the panels show while Remote: "REMOTE 127.0.0.1".
    QString remoteText() const;

    // The operator chose "Disconnect client" on a panel.
    std::function<void()> onDisconnectAsked;

    // An operator's modal message box or dialog is open.
    bool operatorBusy() const;
    // Runs once the last modal box or dialog has gone, from the event loop: never from
    // inside the closing box's own loop, so that the code that opened the box has
    // finished with it first.
    std::function<void()> onOperatorFree;

    // Watches the application's events once there is an application; remoteLocal() sees
    // to it on every call.
    void hook();

signals:
    // The state or the address changed: the panels show it anew.
    void changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void set(State state);
    bool heldBack(QWidget* target, QEvent* event) const;
    void modalShown(QWidget* window);
    void checkFree();
    void postCheck();

    State state_ = State::Local;
    QString address_;
    QPointer<QObject> hookedTo_;
    // The event-loop level the first of the open modal boxes was shown at: the operator
    // is free when none is open and the program is back at that level, out of the boxes'
    // own loops.
    int baseLevel_ = 0;
    bool waitingFree_ = false;
    bool checkPosted_ = false;
};

// The one instance of the program.
RemoteLocal& remoteLocal();

// The control (and everything inside it) takes the operator's input even while Remote:
// for controls that change no setting, such as the buttons that only go to another panel.
void keepLocal(QWidget* control);

} // namespace forms
