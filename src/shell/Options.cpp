#include "shell/Options.h"

#include <cstdlib>

namespace qz {

Options parseOptions(const std::vector<std::string>& args) {
    Options o;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--simulate") {
            o.simulate = true;
        } else if (a == "--help" || a == "-h") {
            o.help = true;
        } else if (a == "--trace") {
            if (i + 1 >= args.size() || args[i + 1].empty()) {
                o.error = "--trace needs a file name";
                return o;
            }
            o.tracePath = args[++i];
        } else if (a.rfind("--trace=", 0) == 0 && a.size() > 8) {
            o.tracePath = a.substr(8);
        } else {
            o.error = "unknown option " + a;
            return o;
        }
    }
    return o;
}

std::string usageText() {
    return "Usage: qz7740 [--simulate] [--trace FILE] [--help]\n"
           "\n"
           "Evaluation software for the QZ7740 device power supply on its USB board.\n"
           "\n"
           "  --simulate     run on the virtual board instead of a board on USB\n"
           "  --trace FILE   write every call to the board to FILE, one line each\n"
           "  --help         show this text\n"
           "\n"
           "Without --simulate the program looks for the board on USB (vendor 0x0456,\n"
           "product 0xB21F) and loads QZ7740SPI.hex from its own directory into it.\n";
}

std::string displayProblem() {
    auto set = [](const char* name) {
        const char* v = std::getenv(name);
        return v && *v;
    };
    if (set("QT_QPA_PLATFORM") || set("DISPLAY") || set("WAYLAND_DISPLAY")) return {};
#if defined(_WIN32) || defined(__APPLE__)
    return {};
#else
    return "qz7740: no display to open a window on (DISPLAY is not set).\n"
           "Start it under a virtual display instead, for example:\n"
           "  xvfb-run -a qz7740 --simulate\n";
#endif
}

} // namespace qz
