#include "shell/Options.h"

#include "remote/Server.h"

#include <QCommandLineParser>
#include <QHostAddress>
#include <QStringList>

#include <algorithm>
#include <cctype>

namespace qz {

namespace {

// The options, once: the parser and the usage text both read this table.
struct OptionRow {
    const char* name;
    const char* value;  // the value's name, or empty for a switch
    const char* help;
    bool optionalValue = false; // [VALUE]: read before the parser, which has no such option
};
constexpr OptionRow kOptionRows[] = {
    {"simulate", "", "run on the virtual board instead of a board on USB"},
    {"trace", "FILE", "write every call to the board to FILE, one line each"},
    {"board", "N", "use the N-th board the search finds (1, the first, by default)"},
    {"list-boards", "", "print the boards the search finds, one a line, and end"},
    {"remote", "PORT", "serve remote commands on the TCP port (5025 by default)", true},
    {"listen", "ADDRESS", "the address the remote control listens on (127.0.0.1)"},
    {"allow", "ADDRESS[/PREFIX]", "let that host or subnet connect to the remote control (repeatable)"},
    {"headless", "", "no window: serve until SYST:EXIT, SIGINT or SIGTERM"},
    {"help", "", "show the options"},
};
constexpr size_t kFlagColumn = 18;

std::string flagOf(const OptionRow& row) {
    if (!*row.value) return std::string("--") + row.name;
    const std::string value = row.optionalValue ? "[" + std::string(row.value) + "]" : row.value;
    return std::string("--") + row.name + " " + value;
}

bool allDigits(const std::string& s) {
    return !s.empty() && s.size() <= 5 &&
           std::all_of(s.begin(), s.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); });
}

// --remote, --remote PORT and --remote=PORT, taken out of the arguments; the port or -1,
// or the error.
int takeRemote(std::vector<std::string>& args, std::string& error) {
    int port = -1;
    for (size_t i = 0; i < args.size();) {
        std::string value;
        size_t used = 1;
        if (args[i] == "--remote") {
            value = "5025";
            if (i + 1 < args.size() && allDigits(args[i + 1])) {
                value = args[i + 1];
                used = 2;
            }
        } else if (args[i].rfind("--remote=", 0) == 0) {
            value = args[i].substr(9);
        } else {
            ++i;
            continue;
        }
        if (!allDigits(value) || std::stoi(value) > 65535) error = "--remote needs a port from 0 to 65535";
        else port = std::stoi(value);
        args.erase(args.begin() + static_cast<std::ptrdiff_t>(i), args.begin() + static_cast<std::ptrdiff_t>(i + used));
    }
    return port;
}

} // namespace

Options parseOptions(const std::vector<std::string>& given) {
    Options o;
    std::vector<std::string> args = given;
    o.remotePort = takeRemote(args, o.error);
    if (!o.error.empty()) return o;
    QCommandLineParser parser;
    for (const OptionRow& row : kOptionRows) {
        if (row.optionalValue) continue;
        QStringList names{QString::fromLatin1(row.name)};
        if (names.front() == QLatin1String("help")) names.prepend(QStringLiteral("h"));
        parser.addOption(QCommandLineOption(names, QString::fromLatin1(row.help),
                                            QString::fromLatin1(row.value)));
    }
    // The arguments come as the platform gives them to main, after the program's name.
    QStringList argv{QStringLiteral("qz7740")};
    for (const std::string& a : args) argv << QString::fromLocal8Bit(a.c_str());

    if (!parser.parse(argv)) {
        o.error = parser.errorText().toStdString();
    } else if (!parser.positionalArguments().isEmpty()) {
        o.error = "unknown argument " + parser.positionalArguments().front().toStdString();
    } else if (parser.isSet(QStringLiteral("trace")) &&
               parser.value(QStringLiteral("trace")).isEmpty()) {
        o.error = "--trace needs a file name";
    } else {
        o.simulate = parser.isSet(QStringLiteral("simulate"));
        o.help = parser.isSet(QStringLiteral("help"));
        o.tracePath = parser.value(QStringLiteral("trace")).toLocal8Bit().toStdString();
        o.headless = parser.isSet(QStringLiteral("headless"));
        o.listBoards = parser.isSet(QStringLiteral("list-boards"));
        if (parser.isSet(QStringLiteral("board"))) {
            bool ok = false;
            o.board = parser.value(QStringLiteral("board")).toInt(&ok);
            if (!ok || o.board < 1) o.error = "--board needs a number from 1";
        }
        if (parser.isSet(QStringLiteral("listen"))) {
            const QString address = parser.value(QStringLiteral("listen"));
            if (QHostAddress().setAddress(address))
                o.listenAddress = address.toStdString();
            else
                o.error = "--listen needs an IP address, for example 0.0.0.0";
            if (o.error.empty() && o.remotePort < 0) o.error = "--listen goes with --remote";
        }
        for (const QString& text : parser.values(QStringLiteral("allow"))) {
            if (o.error.empty() && !remote::parseAllowed(text))
                o.error = "--allow needs an IP address, or one with a prefix length such as 192.168.1.0/24 "
                          "or fd00::/64, not " + text.toStdString();
            o.allow.push_back(text.toStdString());
        }
        if (o.error.empty() && !o.allow.empty() && o.remotePort < 0) o.error = "--allow goes with --remote";
        // Whoever reaches the port drives the board: no other host does unless named.
        if (o.error.empty() && o.remotePort >= 0 && o.allow.empty() &&
            !QHostAddress(QString::fromStdString(o.listenAddress)).isLoopback())
            o.error = "--listen " + o.listenAddress +
                      " would let other machines connect, and whoever connects drives the board (every "
                      "register write, the runs, SYST:EXIT) with no password; name the hosts that may "
                      "with --allow ADDRESS[/PREFIX], or keep 127.0.0.1 and reach it through an SSH tunnel";
    }
    return o;
}

std::string usageText() {
    std::string synopsis = "qz7740";
    std::string lines;
    for (const OptionRow& row : kOptionRows) {
        const std::string flag = flagOf(row);
        synopsis += " [" + flag + "]";
        // A flag too long for its column has its help on the next line.
        const std::string gap = flag.size() < kFlagColumn ? std::string(kFlagColumn - flag.size(), ' ')
                                                          : "\n" + std::string(kFlagColumn + 2, ' ');
        lines += "  " + flag + gap + row.help + "\n";
    }
    return synopsis + "\n" + lines +
           "\n"
           "Evaluation software for the QZ7740 device power supply on its USB board.\n"
           "Without --simulate the program looks for the board on USB (vendor 0x0456,\n"
           "product 0xB21F) and loads QZ7740SPI.hex from its own directory into it.\n"
           "With --remote it prints \"listening on ADDRESS:PORT\" once it serves (--remote 0\n"
           "takes a free port); the commands are in the README. Whoever connects drives the\n"
           "board without a password: listening on any address but loopback needs --allow.\n";
}

std::string displayProblem() {
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        if (!qEnvironmentVariableIsEmpty(name)) return {};
#if defined(_WIN32) || defined(__APPLE__)
    return {};
#else
    return "qz7740: no display to open a window on (DISPLAY is not set).\n"
           "Start it under a virtual display instead, for example:\n"
           "  xvfb-run -a qz7740 --simulate\n";
#endif
}

} // namespace qz
