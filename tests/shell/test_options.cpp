#include "shell/Options.h"

#include <QByteArray>
#include <QtGlobal>

#include <gtest/gtest.h>

using qz::parseOptions;

TEST(Options, SimulateTraceAndHelp) {
    qz::Options o = parseOptions({});
    EXPECT_FALSE(o.simulate || o.help);
    EXPECT_TRUE(o.tracePath.empty());
    o = parseOptions({"--simulate", "--trace", "t.log"});
    EXPECT_TRUE(o.simulate);
    EXPECT_EQ(o.tracePath, "t.log");
    EXPECT_TRUE(o.error.empty());
    EXPECT_EQ(parseOptions({"--trace=x.log"}).tracePath, "x.log");
    EXPECT_TRUE(parseOptions({"--help"}).help);
    EXPECT_TRUE(parseOptions({"-h"}).help);
    EXPECT_FALSE(parseOptions({"-h"}).simulate);
}

TEST(Options, BadCommandLinesAreRefused) {
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{"--trace"}, {"--trace", ""}, {"--trace="},
                                               {"--simulat"}, {"board"}, {"-simulate"},
                                               {"--simulate=1"}, {"--help", "--bogus"}})
        EXPECT_FALSE(parseOptions(args).error.empty()) << args.front();
}

TEST(Options, TheUsageTextShowsTheLinesOfTheReadme) {
    const std::string readme =
        "qz7740 [--simulate] [--trace FILE] [--help]\n"
        "  --simulate     run on the virtual board instead of a board on USB\n"
        "  --trace FILE   write every call to the board to FILE, one line each\n"
        "  --help         show the options\n";
    EXPECT_EQ(qz::usageText().substr(0, readme.size()), readme);
}

TEST(Options, NoDisplayIsExplainedWithXvfb) {
    const char* names[] = {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"};
    std::vector<std::pair<const char*, QByteArray>> saved;
    for (const char* n : names) {
        if (qEnvironmentVariableIsSet(n)) saved.emplace_back(n, qgetenv(n));
        qunsetenv(n);
    }
    const std::string why = qz::displayProblem();
    qputenv("DISPLAY", ":99");
    const std::string withDisplay = qz::displayProblem();
    qunsetenv("DISPLAY");
    for (const auto& [n, v] : saved) qputenv(n, v);
    EXPECT_NE(why.find("xvfb-run"), std::string::npos);
    EXPECT_TRUE(withDisplay.empty());
}
