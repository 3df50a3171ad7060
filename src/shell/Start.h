#pragma once
// The start of the program on its session, and the start again on a board that was lost
// and came back: the status bars offer "Reconnect" while it is on the bus, and it does
// what the start does (search, firmware, power-on words) with every panel made afresh.

#include "console/frmMAINQZ7740.h"
#include "forms/Navigator.h"
#include "registers/Session.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace qz {

// The console made, known by name and loaded: it loads the panels it needs. Without the
// search the board is taken as it is, and only the power-on words go out.
std::unique_ptr<frmMAINQZ7740> startConsole(forms::Navigator& nav, Session& session, bool search = true);

// The remote control's reset: the chip reset as "RESET QZ7740" does, then every panel
// made afresh and the power-on words sent, as at the program's start but for the board's
// search; the shared variables back at their start. The panels that were open show again.
void resetProgram(forms::Navigator& nav, Session& session, std::unique_ptr<frmMAINQZ7740>& console);

class BoardWatch : public QObject {
  public:
    BoardWatch(forms::Navigator& nav, Session& session, std::unique_ptr<frmMAINQZ7740>& console);
    // One look at the bus, as the watch's timer makes it every second while the board is lost.
    void poll();
    // Every panel goes, and the program starts again on the board.
    void restart();

  private:
    forms::Navigator& nav_;
    Session& session_;
    std::unique_ptr<frmMAINQZ7740>& console_;
    QTimer timer_;
};

} // namespace qz
