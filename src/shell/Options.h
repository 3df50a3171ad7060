#pragma once
// The command line: --simulate, --trace FILE, --help.

#include <string>
#include <vector>

namespace qz {

struct Options {
    bool simulate = false;
    bool help = false;
    std::string tracePath;
    std::string error;  // not empty: the command line was refused
};

Options parseOptions(const std::vector<std::string>& args);  // without the program name
std::string usageText();

// Why the program cannot open a window here, or empty when it can. Reads the display
// variables of the environment.
std::string displayProblem();

} // namespace qz
