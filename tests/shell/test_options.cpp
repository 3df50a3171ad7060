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

TEST(Options, RemoteListenHeadlessAndTheBoard) {
    qz::Options o = parseOptions({"--simulate"});
    EXPECT_EQ(o.remotePort, -1) << "no remote control unless asked";
    EXPECT_EQ(o.listenAddress, "127.0.0.1");
    EXPECT_EQ(o.board, 1);
    EXPECT_EQ(parseOptions({"--remote", "--simulate"}).remotePort, 5025);
    o = parseOptions({"--remote", "0", "--headless", "--listen", "0.0.0.0", "--allow", "10.1.0.0/16", "--board", "2"});
    EXPECT_TRUE(o.error.empty()) << o.error;
    EXPECT_EQ(o.remotePort, 0);
    EXPECT_TRUE(o.headless);
    EXPECT_EQ(o.listenAddress, "0.0.0.0");
    EXPECT_EQ(o.board, 2);
    EXPECT_EQ(parseOptions({"--remote=6000"}).remotePort, 6000);
    EXPECT_TRUE(parseOptions({"--list-boards"}).listBoards);
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"--remote=70000"}, {"--remote=x"}, {"--remote", "--listen", "nowhere"},
             {"--listen", "127.0.0.1"}, {"--board", "0"}, {"--board", "two"}, {"--remote", "65536"}})
        EXPECT_FALSE(parseOptions(args).error.empty()) << args.front() << " " << args.back();
}

TEST(Options, AnyAddressButLoopbackNeedsAllow) {
    EXPECT_EQ(parseOptions({"--remote", "--listen", "::1"}).error, "");
    const std::string why = parseOptions({"--remote", "--listen", "0.0.0.0"}).error;
    EXPECT_EQ(why.rfind("--listen 0.0.0.0 would let other machines connect", 0), 0u) << why;
    EXPECT_NE(why.find("--allow ADDRESS[/PREFIX]"), std::string::npos) << why;
    const qz::Options o = parseOptions({"--remote", "--listen", "::", "--allow", "192.168.1.0/24", "--allow=fd00::/64"});
    EXPECT_EQ(o.allow, (std::vector<std::string>{"192.168.1.0/24", "fd00::/64"})) << o.error;
    for (const char* bad : {"lab-pc", "10.0.0.1/33", "192.168.1"})
        EXPECT_EQ(parseOptions({"--remote", "--allow", bad}).error.rfind("--allow needs an IP address", 0), 0u) << bad;
    EXPECT_EQ(parseOptions({"--allow", "10.0.0.1"}).error, "--allow goes with --remote");
}

TEST(Options, TheUsageTextShowsTheLinesOfTheReadme) {
    const std::string readme =
        "qz7740 [--simulate] [--trace FILE] [--board N] [--list-boards] [--remote [PORT]] "
        "[--listen ADDRESS] [--allow ADDRESS[/PREFIX]] [--headless] [--help]\n"
        "  --simulate        run on the virtual board instead of a board on USB\n"
        "  --trace FILE      write every call to the board to FILE, one line each\n"
        "  --board N         use the N-th board the search finds (1, the first, by default)\n"
        "  --list-boards     print the boards the search finds, one a line, and end\n"
        "  --remote [PORT]   serve remote commands on the TCP port (5025 by default)\n"
        "  --listen ADDRESS  the address the remote control listens on (127.0.0.1)\n"
        "  --allow ADDRESS[/PREFIX]\n"
        "                    let that host or subnet connect to the remote control (repeatable)\n"
        "  --headless        no window: serve until SYST:EXIT, SIGINT or SIGTERM\n"
        "  --help            show the options\n";
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
