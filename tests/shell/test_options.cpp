#include "shell/Options.h"

#include <gtest/gtest.h>

#include <cstdlib>

using qz::parseOptions;

TEST(Options, SimulateTraceAndHelp) {
    qz::Options o = parseOptions({});
    EXPECT_FALSE(o.simulate);
    EXPECT_TRUE(o.tracePath.empty());
    o = parseOptions({"--simulate", "--trace", "t.log"});
    EXPECT_TRUE(o.simulate);
    EXPECT_EQ(o.tracePath, "t.log");
    EXPECT_TRUE(o.error.empty());
    EXPECT_EQ(parseOptions({"--trace=x.log"}).tracePath, "x.log");
    EXPECT_TRUE(parseOptions({"--help"}).help);
}

TEST(Options, BadCommandLinesAreRefused) {
    EXPECT_FALSE(parseOptions({"--trace"}).error.empty());
    EXPECT_FALSE(parseOptions({"--trace", ""}).error.empty());
    EXPECT_FALSE(parseOptions({"--simulat"}).error.empty());
    EXPECT_FALSE(parseOptions({"board"}).error.empty());
    EXPECT_NE(qz::usageText().find("--simulate"), std::string::npos);
    EXPECT_NE(qz::usageText().find("--trace FILE"), std::string::npos);
}

TEST(Options, NoDisplayIsExplainedWithXvfb) {
    const char* names[] = {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"};
    std::vector<std::pair<std::string, std::string>> saved;
    for (const char* n : names) {
        if (const char* v = std::getenv(n)) saved.emplace_back(n, v);
        unsetenv(n);
    }
    const std::string why = qz::displayProblem();
    setenv("DISPLAY", ":99", 1);
    const std::string withDisplay = qz::displayProblem();
    unsetenv("DISPLAY");
    for (const auto& [n, v] : saved) setenv(n.c_str(), v.c_str(), 1);
    EXPECT_NE(why.find("xvfb-run"), std::string::npos);
    EXPECT_TRUE(withDisplay.empty());
}
