#include "shell/Start.h"

#include "forms/Forms.h"

namespace qz {

std::unique_ptr<frmMAINQZ7740> startConsole(forms::Navigator& nav, Session& session) {
    auto console = std::make_unique<frmMAINQZ7740>(session, nav);
    nav.adopt(forms::Form::frmMAINQZ7740, console.get());
    console->Form_Load();
    return console;
}

BoardWatch::BoardWatch(forms::Navigator& nav, Session& session, std::unique_ptr<frmMAINQZ7740>& console)
    : nav_(nav), session_(session), console_(console) {
    timer_.setInterval(1000);
    connect(&timer_, &QTimer::timeout, this, [this] { poll(); });
    timer_.start();
    // The panels' button asks; the start runs once the click's handler has returned.
    session_.reconnect = [this] { QTimer::singleShot(0, this, [this] { restart(); }); };
}

void BoardWatch::poll() {
    // Only a lost board is looked for: a search costs a request of the stack, not of the board.
    if (session_.usb.linkState() != LinkState::Lost) return session_.setBoardBack(false);
    if (!session_.boardBack() && session_.usb.boardOnBus()) session_.setBoardBack(true);
}

void BoardWatch::restart() {
    if (!session_.boardBack()) return;
    session_.setBoardBack(false);
    for (forms::Form form : forms::kAllForms)
        if (form != forms::Form::frmMAINQZ7740) nav_.unload(form);
    // The console goes as the others do, once the events in hand are done with it.
    console_.release();
    nav_.unload(forms::Form::frmMAINQZ7740);
    console_ = startConsole(nav_, session_);
}

} // namespace qz
