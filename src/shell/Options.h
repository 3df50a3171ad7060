#pragma once
// The command line: the board (--simulate, --board N, --list-boards), the trace, the
// remote control (--remote [PORT], --listen ADDRESS, --allow ADDRESS[/PREFIX], --headless)
// and --help.

#include <string>
#include <vector>

namespace qz {

struct Options {
    bool simulate = false;
    bool help = false;
    std::string tracePath;
    int remotePort = -1;                     // -1: no remote control
    std::string listenAddress = "127.0.0.1"; // loopback unless asked otherwise
    // The hosts and subnets besides loopback that may connect, as given; listening on
    // any address but loopback needs one.
    std::vector<std::string> allow;
    bool headless = false;                   // no window: Qt's offscreen platform
    int board = 1;                           // the N-th board the search finds
    bool listBoards = false;
    std::string error;  // not empty: the command line was refused
};

Options parseOptions(const std::vector<std::string>& args);  // without the program name
std::string usageText();

// Why the program cannot open a window here, or empty when it can. Reads the display
// variables of the environment.
std::string displayProblem();

} // namespace qz
