#include "shell/Options.h"

#include <QCommandLineParser>
#include <QStringList>

namespace qz {

namespace {

// The options, once: the parser and the usage text both read this table.
struct OptionRow {
    const char* name;
    const char* value;  // the value's name, or empty for a switch
    const char* help;
};
constexpr OptionRow kOptionRows[] = {
    {"simulate", "", "run on the virtual board instead of a board on USB"},
    {"trace", "FILE", "write every call to the board to FILE, one line each"},
    {"help", "", "show the options"},
};

std::string flagOf(const OptionRow& row) {
    return std::string("--") + row.name + (*row.value ? std::string(" ") + row.value : "");
}

} // namespace

Options parseOptions(const std::vector<std::string>& args) {
    QCommandLineParser parser;
    for (const OptionRow& row : kOptionRows) {
        QStringList names{QString::fromLatin1(row.name)};
        if (names.front() == QLatin1String("help")) names.prepend(QStringLiteral("h"));
        parser.addOption(QCommandLineOption(names, QString::fromLatin1(row.help),
                                            QString::fromLatin1(row.value)));
    }
    // The arguments come as the platform gives them to main, after the program's name.
    QStringList argv{QStringLiteral("qz7740")};
    for (const std::string& a : args) argv << QString::fromLocal8Bit(a.c_str());

    Options o;
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
    }
    return o;
}

std::string usageText() {
    std::string synopsis = "qz7740";
    std::string lines;
    for (const OptionRow& row : kOptionRows) {
        const std::string flag = flagOf(row);
        synopsis += " [" + flag + "]";
        lines += "  " + flag + std::string(15 - flag.size(), ' ') + row.help + "\n";
    }
    return synopsis + "\n" + lines +
           "\n"
           "Evaluation software for the QZ7740 device power supply on its USB board.\n"
           "Without --simulate the program looks for the board on USB (vendor 0x0456,\n"
           "product 0xB21F) and loads QZ7740SPI.hex from its own directory into it.\n";
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
