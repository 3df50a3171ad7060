// The scripts a recording becomes, PyVISA's and pymeasure's, run by the system's Python
// against the program on the virtual board; and what their literals read back as.

#include "remote/Script.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <tuple>

using qz::remote::Step;
using Kind = Step::Kind;

namespace {

// A cap on each wait, far past what any takes: a hung program or script fails the test,
// which then kills it, instead of being left to CTest's time-out.
constexpr int kCapMs = 60000;

// The PyVISA script (false) or the pymeasure one (true).
auto scriptOf(bool pymeasure) {
    return pymeasure ? &qz::remote::pymeasureScript : &qz::remote::pyvisaScript;
}

Step step(Kind kind, std::string message, std::string note = {}) {
    return {kind, std::move(message), {}, {}, {}, std::move(note)};
}
Step fetch(std::vector<std::string> queries, std::vector<std::string> columns, std::string file) {
    return {Kind::Fetch, {}, std::move(queries), std::move(columns), std::move(file), "a note"};
}

// The exit status (-1 for none), standard output and standard error.
using Ran = std::tuple<int, std::string, std::string>;

void writeFile(const QString& path, const std::string& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.data(), static_cast<qint64>(text.size()));
}

// The next whole line, waited for.
std::string lineOf(QIODevice& device) {
    while (!device.canReadLine() && device.waitForReadyRead(kCapMs))
        continue;
    return device.readLine().trimmed().toStdString();
}

// Runs the system's Python on the arguments; QZ7740_PYTHON names the folder given.
Ran runPython(const QStringList& args, const QString& classDir = QStringLiteral(QZ_PYTHON_DIR)) {
    QProcess python;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QZ7740_PYTHON"), classDir);
    python.setProcessEnvironment(env);
    python.start(QStringLiteral(QZ_PYTHON3), QStringList{QStringLiteral("-B")} + args);
    const bool ended = python.waitForFinished(kCapMs); // a hung one dies with `python`
    EXPECT_TRUE(ended) << "the script did not end";
    return {ended && python.exitStatus() == QProcess::NormalExit ? python.exitCode() : -1,
            python.readAllStandardOutput().toStdString(),
            python.readAllStandardError().toStdString()};
}

class RecordedScript : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override {
        program_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program_.start(QStringLiteral(QZ_PROGRAM), {"--headless", "--simulate", "--remote", "0"});
        const std::string line = lineOf(program_);
        ASSERT_EQ(line.rfind("listening on 127.0.0.1:", 0), 0u) << line;
        port_ = QString::fromStdString(line).section(QLatin1Char(':'), -1);
    }
    void TearDown() override {
        program_.kill();
        program_.waitForFinished(kCapMs);
    }

    Ran run(const std::vector<Step>& steps) {
        const QString script = dir_.filePath(QStringLiteral("recording.py"));
        writeFile(script, scriptOf(GetParam())(steps, {"2026-11-24 23:40", "1.6.0"}));
        return runPython({script, QStringLiteral("TCPIP0::127.0.0.1::%1::SOCKET").arg(port_),
                          QStringLiteral("--results"),
                          dir_.filePath(QStringLiteral("results/bench"))});
    }

    // One line asked through a connection of the test's own, once the script has left.
    std::string ask(const char* line) {
        QTcpSocket s;
        s.connectToHost(QStringLiteral("127.0.0.1"), port_.toUShort());
        EXPECT_TRUE(s.waitForConnected(kCapMs));
        s.write(QByteArray(line) + "\n");
        return lineOf(s);
    }

    QProcess program_;
    QTemporaryDir dir_;
    QString port_;
};

TEST_P(RecordedScript, SendsTheStepsAndWritesTheSweepToCsv) {
    const auto [status, out, err] =
        run({step(Kind::Write, "SWE:STAR 0", "frmMeasure txtStart"),
             step(Kind::Write, "SWE:STOP 1"), step(Kind::Write, "SWE:STEP 0.5"),
             // The quotes of a name, and a note of two lines that must stay a comment.
             step(Kind::Write, "CURR:RANG \"250uA\"", "frmMain cboCurrent\nthe third item"),
             step(Kind::Write, "INIT:SWE"), step(Kind::Wait, "*OPC?"),
             fetch({"FETC:SWE:FORC?", "FETC:SWE?"}, {"forced_V", "reading"}, "sweep-1.csv"),
             step(Kind::Query, "STAT:ALAR?")});
    ASSERT_EQ(status, 0) << out << err;
    EXPECT_NE(out.find("*OPC? -> 1\n"), std::string::npos) << out;
    EXPECT_NE(out.find("STAT:ALAR? -> 0\n"), std::string::npos) << out;
    EXPECT_EQ(ask("CURR:RANG:NAME?"), "\"250uA\"");

    QFile csv(dir_.filePath(QStringLiteral("results/bench/sweep-1.csv")));
    ASSERT_TRUE(csv.open(QIODevice::ReadOnly | QIODevice::Text));
    const QStringList rows =
        QString::fromUtf8(csv.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(rows.size(), 4) << rows.join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(rows[0], QStringLiteral("forced_V,reading"));
    for (int k = 0; k < 3; ++k) // the forced volts, on the DAC's codes
        EXPECT_NEAR(rows[k + 1].section(QLatin1Char(','), 0, 0).toDouble(), 0.5 * k, 1e-3) << k;
}

TEST_P(RecordedScript, StopsAtTheFirstRefusal) {
    const auto [status, out, err] =
        run({step(Kind::Write, "SWE:STEP 0.25"), step(Kind::Write, "VOLT 99", "frmMain txtV"),
             step(Kind::Write, "VOLT 1")});
    EXPECT_EQ(status, 1) << out << err;
    EXPECT_NE(err.find("VOLT 99"), std::string::npos) << err;
    EXPECT_NE(err.find("-222,"), std::string::npos) << err;
    // The step before the refusal ran; the one after it never reached the program.
    EXPECT_EQ(ask("SWE:STEP?;:VOLT?"), "0.25;9.91E+37");
}

INSTANTIATE_TEST_SUITE_P(Both, RecordedScript, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "pymeasure" : "pyvisa"; });

// What the steps' literals read back as in Python, byte for byte, with a stand-in for the
// board that writes each call down; the scripts pass pyflakes, also with nothing recorded.
TEST(RecordedScriptText, LiteralsReadBackExactlyAndTheScriptsAreClean) {
    QTemporaryDir dir;
    const std::vector<Step> steps = {step(Kind::Write, "CURR:RANG \"2.5mA\"", "two\r\nlines"),
                                     step(Kind::Query, "back\\slash\\\\ 'single' \t\x01"),
                                     step(Kind::Wait, "\xc2\xb5\xe2\x86\x92\xf0\x9f\x94\x8c end\n"),
                                     fetch({"FETC:SWE?"}, {}, "a\\b.csv")};
    const std::string expected =
        "write CURR:RANG \"2.5mA\"|query back\\slash\\\\ 'single' \t\x01|"
        "wait \xc2\xb5\xe2\x86\x92\xf0\x9f\x94\x8c end\n|fetch a\\b.csv FETC:SWE? FETC:SWE?|";
    const QString echo = dir.filePath(QStringLiteral("echo.py"));
    writeFile(echo,
              "import runpy, sys\n"
              "class Echo:\n"
              "    def __getattr__(self, name):\n"
              "        return lambda *a: sys.stdout.buffer.write((name + ' ' + ' '.join(\n"
              "            x if isinstance(x, str) else ' '.join(x) for x in a) + '|').encode())\n"
              "runpy.run_path(sys.argv[1], run_name='recorded')['steps'](Echo())\n");
    const bool havePyflakes = std::get<0>(runPython({"-c", "import pyflakes"})) == 0;
    for (const bool pymeasure : {false, true}) {
        SCOPED_TRACE(pymeasure ? "pymeasure" : "pyvisa");
        const QString script = dir.filePath(QStringLiteral("recorded-%1.py").arg(pymeasure));
        writeFile(script,
                  scriptOf(pymeasure)(steps, {"\"\"\" and \\", "1.6.0\\"})); // the docstring holds
        const auto [status, out, err] = runPython({echo, script});
        EXPECT_EQ(status, 0) << err;
        EXPECT_EQ(out, expected);
        const auto [clean, said, why] =
            runPython({"-m", havePyflakes ? "pyflakes" : "py_compile", script});
        EXPECT_EQ(clean, 0) << said << why;
    }
    // Without the class to be found, the pymeasure script says so and ends with status 2.
    const QString alone = dir.filePath(QStringLiteral("alone.py"));
    writeFile(alone, qz::remote::pymeasureScript(steps, {"", ""}));
    const auto [status, out, err] = runPython({alone}, dir.path());
    EXPECT_EQ(status, 2);
    EXPECT_NE(err.find("QZ7740_PYTHON"), std::string::npos) << err;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
