#pragma once
// The operator's own actions on the panels, told to whoever records them: a control's
// operation run by the operator's hand (a pick, a click, an Enter), and a panel loaded or
// unloaded by the operator's navigation. An operation that code runs (a twin's, the
// remote control's) is not an action of its own: it is part of the action it runs in, or
// of no action at all while the remote control works the panels.

#include "forms/Forms.h"
#include "forms/MessageBox.h"

#include <QObject>

#include <functional>

class QWidget;

namespace forms {

struct Action {
    enum class Kind { Control, Open, Close };
    Kind kind = Kind::Control;
    QWidget* control = nullptr; // Control: the control operated
    Form form = Form::frmMain;  // Open, Close: the panel
};

class Recording : public QObject {
    Q_OBJECT
public:
    // Told before and after each action of the operator's.
    std::function<void(const Action&)> began;
    std::function<void(const Action&, const Outcome&)> ended;

    // Runs op as the action; the watchers are told around it. While the remote control
    // works the panels, nothing is told.
    Outcome act(const Action& action, const std::function<Outcome()>& op);

    // Whether a recording is on: every panel's status bar shows it.
    bool active() const { return active_; }
    void setActive(bool active);
    // The File menu's "Record..." opens the recorder's window through this.
    std::function<void()> showWindow;
    void openWindow() {
        if (showWindow) showWindow();
    }

    // Held while the remote control runs a command or a run: what happens then is the
    // client's, not the operator's.
    class RemoteScope {
    public:
        RemoteScope();
        ~RemoteScope();
        RemoteScope(const RemoteScope&) = delete;
        RemoteScope& operator=(const RemoteScope&) = delete;
    };
    bool remoteAtWork() const { return remoteDepth_ > 0; }

signals:
    void changed();

private:
    friend class RemoteScope;
    int remoteDepth_ = 0;
    bool active_ = false;
};

// The program's one recording state.
Recording& recording();

} // namespace forms
