#include "shell/Start.h"

#include "board/Wire.h"
#include "forms/Forms.h"
#include "registers/RegisterMap.h"

#include <vector>

namespace qz {

std::unique_ptr<frmMAINQZ7740> startConsole(forms::Navigator& nav, Session& session, bool search) {
    auto console = std::make_unique<frmMAINQZ7740>(session, nav);
    nav.adopt(forms::Form::frmMAINQZ7740, console.get());
    if (search)
        console->Form_Load();
    else
        console->PowerOn();
    return console;
}

namespace {
// Every panel goes; the console as the others do, once the events in hand are done with it.
void unloadAll(forms::Navigator& nav, std::unique_ptr<frmMAINQZ7740>& console) {
    for (forms::Form form : forms::kAllForms)
        if (form != forms::Form::frmMAINQZ7740) nav.unload(form);
    (void)console.release();
    nav.unload(forms::Form::frmMAINQZ7740);
}
} // namespace

void resetProgram(forms::Navigator& nav, Session& session, std::unique_ptr<frmMAINQZ7740>& console) {
    std::vector<forms::Form> shown;
    for (forms::Form form : forms::kAllForms)
        if (QWidget* w = nav.loaded(form); w && w->isVisible() && form != forms::Form::frmMain &&
                                           form != forms::Form::frmMAINQZ7740)
            shown.push_back(form);
    session.usb.SendRequest(wire::kChipReset);
    session.SPIout(readCommandOf(reg::kAlarmStatusClear));
    unloadAll(nav, console);
    const bool busy = session.general.entryBusy;
    session.general = General{};
    session.general.entryBusy = busy;
    console = startConsole(nav, session, false);
    for (forms::Form form : shown) nav.show(form);
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
    unloadAll(nav_, console_);
    console_ = startConsole(nav_, session_);
}

} // namespace qz
