// Remote messages on the real panels and the virtual board, read on the trace: the words
// are the operator's, the panels show the new state, a line's units answer on one line,
// numbers come in SI units with their limits, refusals land in the queue in the panel's
// own words with nothing sent and set the status bits of their class, *RST brings the
// program to its start, and ten thousand random lines leave it standing.

#include "diagnostics/frmDIAG.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "measure/frmMeasure.h"
#include "remote/Exchange.h"
#include "shell/Start.h"
#include "support/ConsoleFixture.h"
#include "support/RunTools.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <cstring>
#include <random>

using qz::remote::Exchange;
using qz::remote::Instrument;

namespace {

class Remote : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        in = std::make_unique<Instrument>(*h.session, h.nav,
                                          Instrument::Config{"9.8.7", [this] { ++exits; },
                                                             [this] { reset(); }});
        ex = std::make_unique<Exchange>(*in);
    }
    void TearDown() override {
        ex.reset();
        in.reset();
    }
    void reset() {
        if (!fullReset) return m->cmdRESET_Click();
        qz::resetProgram(h.nav, *h.session, f);
        m = static_cast<frmMain*>(h.nav.loaded(forms::Form::frmMain));
    }
    // The answer line of a line that asks.
    std::string ask(const std::string& line) {
        ex->addLine(line);
        std::string out = ex->run();
        EXPECT_TRUE(!out.empty() && out.back() == '\n' && std::count(out.begin(), out.end(), '\n') == 1) << line;
        if (!out.empty()) out.pop_back();
        return out;
    }
    void send(const std::string& line) {
        ex->addLine(line);
        EXPECT_EQ(ex->run(), "") << line;
    }
    std::string error() { return in->errors().pop(); }
    frmMeasure* measure() { return static_cast<frmMeasure*>(h.nav.load(forms::Form::frmMeasure)); }

    std::unique_ptr<Instrument> in;
    std::unique_ptr<Exchange> ex;
    int exits = 0;
    bool fullReset = true;
};

constexpr int PMU = 0x029950;

} // namespace

TEST_F(Remote, TheForceVoltageGoesThroughTxtVAndAQueryAnswersTheValueInForce) {
    EXPECT_EQ(ask("*IDN?"), "QZ7740,QZ7740 evaluation board,virtual board,9.8.7");
    EXPECT_EQ(ask("VOLT?"), "9.91E+37") << "nothing forced yet";
    send("SOUR:VOLT 1");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x0889FE}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("01.000"));
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("89FE"));
    send(":source1:voltage:level:immediate:amplitude 2000 mV");
    EXPECT_EQ(h.board->reg(0x08), 0x93FB);
    m->txtV->setText(QStringLiteral("7.")); // typed, no Enter
    EXPECT_EQ(ask("VOLT?"), "2") << "never the half-typed box";
    // F/S is the panel's 12.812 V, Z/S -12.8125 V; at F/S itself the law has no code left.
    EXPECT_EQ(m->txtOutputVh->text(), QStringLiteral("12.812"));
    const std::string limits = ask("VOLT? MAX;VOLT? MIN");
    EXPECT_EQ(limits.substr(limits.find(';')), ";-12.8125");
    EXPECT_NEAR(std::stod(limits), 12.812, 0.0005);
    send("VOLT MAX");
    EXPECT_EQ(ask("VOLT?"), limits.substr(0, limits.find(';'))) << "MAX is a value the panel takes";
    EXPECT_EQ(sent().back(), 0x08FFFF);
    send("REG:WRITE #H0889FE");
    EXPECT_EQ(ask("REG:READ? 8"), "0889FE");
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Remote, ALinesUnitsAnswerOnOneLineAndAnErrorEndsItsLine) {
    EXPECT_EQ(ask("*RST;*OPC?"), "1");
    sent();
    const std::string reading = ask("SOUR:VOLT 1;:MEAS:VOLT?");
    EXPECT_NEAR(std::stod(reading), 1.0, 0.01) << reading;
    EXPECT_EQ(ask("*IDN?;SOUR:VOLTS 1;*OPC?"), "QZ7740,QZ7740 evaluation board,virtual board,9.8.7;")
        << "the skipped query keeps its empty place";
    EXPECT_EQ(error(), "-113,\"Undefined header\"");
    send("OUTP OFF;BAD;OUTP ON");
    EXPECT_FALSE(m->chkENABLECH->isChecked()) << "nothing after the error runs";
    EXPECT_EQ(error(), "-113,\"Undefined header\"");
    send("SOUR:CLAM:HIGH 2MA;LOW -2MA;STAT 0");
    EXPECT_EQ(m->txtClampl->text(), QStringLiteral("-2")) << "LOW is SOUR:CLAM:LOW";
    EXPECT_FALSE(m->chkCLAMPEN->isChecked());
    send("CURR:RANG 2MA;CURR:RANG 2MA");
    EXPECT_EQ(error(), "-113,\"Undefined header\"") << "the second is SOUR:CURR:CURR:RANG";
    EXPECT_EQ(ask("OUTP1?;OUTP2?;*IDN?"), "0;;");
    EXPECT_EQ(ask("SYST:ERR?;ERR?"), "-114,\"Header suffix out of range\";0,\"No error\"");
}

TEST_F(Remote, RefusalsCarryThePanelsWordsSendNothingAndSetTheirClassesBit) {
    const std::tuple<const char*, const char*, int> refusals[] = {
        {"SOUR:VOLT 12.9", "-222,\"Number too large. Please reenter voltage between Z/S and F/S.\"", 16},
        {"SOUR:CLAM:HIGH 3.3MA",
         "-222,\"Requested clamp level outside of Irange. Please reenter current suited to the Irange.\"", 16},
        {"SOUR:VREF 1.4",
         "-222,\"Number outside Reference range. Please reenter reference voltage between 2V and +5V.\"", 16},
        {"REG:WRITE #H1000000", "-222,\"Data out of range\"", 16},
        {"REG:WRITE 1.5", "-224,\"Illegal parameter value\"", 16},
        {"SENS:CURR:GAIN 15", "-224,\"Illegal parameter value; one of 20, 10\"", 16},
        {"SOUR:CURR:RANG 2", "-222,\"Data out of range; the largest range's full scale is 1.25 A\"", 16},
        {"FETC:SWE?", "-230,\"Data corrupt or stale; no sweep has ended yet\"", 16},
        {"REG:WRITE volts", "-104,\"Data type error\"", 32},
        {"SOUR:VOLT 2 MA", "-131,\"Invalid suffix\"", 32},
        {"REG:WRITE 5 V", "-138,\"Suffix not allowed\"", 32},
        {"REG:WRITE", "-109,\"Missing parameter\"", 32},
        {"OUTP 1,2", "-108,\"Parameter not allowed\"", 32},
        {"SOUR:CURR:RANG \"3mA\"", "-224,\"Illegal parameter value\"", 16},
        {"SOUR:VOLTS 1", "-113,\"Undefined header\"", 32},
    };
    for (const auto& [line, queued, bit] : refusals) {
        ex->addLine(line);
        ex->run();
        EXPECT_EQ(error(), queued) << line;
        EXPECT_EQ(ask("*ESR?"), std::to_string(bit)) << line;
        EXPECT_TRUE(sent().empty()) << line;
    }
    for (int i = 0; i < 21; ++i) send("NOPE");
    EXPECT_EQ(ask("*ESR?;*STB?"), "32;20") << "the queue is not empty and an answer waits";
    in->errors().clear();
    in->raise(qz::remote::standardError(-350));
    EXPECT_EQ(ask("*ESR?"), "8") << "a device error";
    EXPECT_TRUE(h.boxes.empty()) << "no message box for a remote command";
    EXPECT_EQ(g.VREF, 5.0f);
    qztest::Harness::enter(m->txtV, QStringLiteral("x"));
    EXPECT_EQ(h.boxes.size(), 1u) << "outside a remote command the panels' boxes are back";
}

TEST_F(Remote, RangesAndClampsInAmperesWhateverTheRange) {
    send("CURR:RANG 25UA");
    EXPECT_EQ(m->cboCurrent->currentIndex(), 1);
    EXPECT_EQ(f->cboCurrent->currentIndex(), 1) << "the twin follows";
    EXPECT_EQ(ask("CURR:RANG?;RANG:NAME?"), "2.5E-05;\"25uA\"");
    send("CURR:RANG \"EXT1\"");
    EXPECT_EQ(ask("CURR:RANG?;RANG? MAX;RANG? MIN"), "1.25;1.25;5E-06") << "0.5 V over the 0.4 ohm box";
    // 2 mA in the 2.5 mA range and 200 uA in the 250 uA range put the same volts across
    // their resistors: the same code, typed in each range's own unit.
    send("CURR:RANG 2MA");
    sent();
    send("CLAM:HIGH 2MA");
    EXPECT_EQ(sent(), std::vector<int>{0x10CFEC});
    send("CURR:RANG 250UA;:CLAM:HIGH 200 ua");
    EXPECT_EQ(m->txtclamph->text(), QStringLiteral("200"));
    EXPECT_EQ(m->lblmA->text(), QStringLiteral("uA"));
    EXPECT_EQ(sent().back(), 0x10CFEC);
    EXPECT_EQ(ask("CLAM:HIGH?"), "0.0002");
    send("CURR:RANG 2.5MA");
    EXPECT_EQ(ask("CLAM:HIGH?"), "0.002") << "the chip's code stands for ten times the current now";
    EXPECT_EQ(ask("CLAM:HIGH? MAX;LOW? MIN;HIGH? MIN"), "0.0032;-0.0032;0");
    qztest::Harness::enter(m->txtClampl, QStringLiteral("-3.2"));
    const std::vector<int> byHand = sent();
    send("CLAM:LOW MIN");
    EXPECT_EQ(sent(), std::vector<int>{byHand.back()}) << "MIN is the limit the operator may type";
    send("SWE:STEP 250MV;DEL 200MS;FUNC CURR;RANG 25MA");
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
    send("SENS:CURR:GAIN 10"); // at VREF 5 the panel warns that the ranges stay as rated
    EXPECT_EQ(m->IMEASG->currentIndex(), 1);
    frmMeasure* meas = measure();
    EXPECT_EQ(meas->txtstep->text(), QStringLiteral("250")) << "the box takes millivolts";
    EXPECT_EQ(meas->cboDela->currentIndex(), 2);
    EXPECT_EQ(meas->cboMeasureVI->currentIndex(), 1);
    EXPECT_EQ(meas->cboSweepI->currentIndex(), 4);
    EXPECT_EQ(ask("SWE:STEP?;DEL?;FUNC?;RANG?;:SENS:CURR:GAIN?"), "0.25;0.2;CURR;0.025;10");
    EXPECT_EQ(ask("SWE:STAR? MIN;STOP? MAX;STEP? MAX"), "-12;12;1") << "the whole volts of Z/S and F/S";
}

TEST_F(Remote, ResetBringsEverySettingBackToTheStartOfTheProgram) {
    send("OUTP 0;:VOLT 2;:CURR:RANG 20UA;:CLAM:HIGH 10UA;:GANG 2;:SLEW 5E5;:SYST:TSH 100;:MEASO:SOUR 4");
    send("SWE:STAR -1;STOP 2;STEP 0.5;FUNC CURR;DEL 0.3;SDEL 0.5;:TIME:VOLT 1;:FORM REAL,32;:FORM:BORD SWAP");
    send("VREF 2.5;OFFS #H7000;:DIAG:NODE:A 3");
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
    h.trace.fresh();
    send("*RST");
    const std::vector<std::string> lines = h.trace.fresh();
    ASSERT_GT(lines.size(), 2u);
    EXPECT_EQ(lines[0].rfind("VR 219 ", 0), 0u) << "the chip's reset first";
    EXPECT_EQ(qztest::wordsSent(lines),
              (std::vector<int>{0xC40000, 0x012200, 0x012200, PMU, 0x030000, 0x06AA80, PMU}))
        << "then the power-on words, as at the start";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(ask("VOLT?;CURR:RANG?;RANG:NAME?;:CLAM:HIGH?;LOW?;STAT?;:OUTP?;:POW?;OFFS?;VREF?;GANG?;SLEW?;"
                  "COMP?;GPO?;RTEN?"),
              "9.91E+37;0.0025;\"2.5mA\";9.91E+37;9.91E+37;1;1;1;32768;5;0;1000000;0;0;0");
    EXPECT_EQ(ask("SYST:FORC?;TSH?;:MEASO:SOUR?;GAIN?;:SENS:CURR:GAIN?"), "0;130;2;0.2;20");
    EXPECT_EQ(ask("SWE:STAR?;STOP?;STEP?;RANG?;FUNC?;DEL?;SDEL?;:TIME:VOLT?;:FORM?;:FORM:BORD?"),
              "-5;5;1;5E-06;VOLT;0;0;5;ASC,0;NORM");
    EXPECT_EQ(m->cboCurrent->currentIndex(), 3) << "the panel shows it";
    EXPECT_EQ(g.PMUreg, PMU);
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
}

TEST_F(Remote, FetchAnswersTheLastRunThatEndedWhoeverStartedItAndNothingDuringOne) {
    frmMeasure* meas = measure();
    send("SWE:RANG 2.5MA;STAR -1;STOP 1;STEP 0.5");
    meas->cmdPlot_Click(); // the operator's sweep
    const std::string readings = ask("FETC:SWE?");
    EXPECT_EQ(std::count(readings.begin(), readings.end(), ',') + 1, 5) << readings;
    EXPECT_NEAR(std::stod(readings), -1.0, 0.01);
    const std::string forced = ask("FETC:SWE:FORC?");
    EXPECT_NEAR(std::stod(forced.substr(forced.rfind(',') + 1)), 1.0, 0.01) << forced;
    EXPECT_EQ(ask("FETC:TIME?"), "");
    EXPECT_EQ(error(), "-230,\"Data corrupt or stale; no time run has ended yet\"");

    qztest::ActingClock clock;
    meas->useClock(clock);
    std::string during;
    clock.at(3, [&] {
        ex->addLine("FETC:SWE?;*IDN?");
        during = ex->run();
        during += error();
        ex->addLine("STAT:OPER:COND?;*OPC?;:FETC:SWE?");
        during += ex->run();
    });
    send("SWE:DEL 0.1");
    meas->cmdPlot_Click();
    EXPECT_EQ(during, ";\n-230,\"Data corrupt or stale; a run is in progress\"") << "*OPC? waits through the run";
    const std::string after = ex->run();
    EXPECT_EQ(after.substr(0, 5), "16;1;") << "the waiting line answers once the run is over";
    EXPECT_EQ(std::count(after.begin(), after.end(), ','), 4) << after;
    send("FORM REAL,32");
    const std::string block = ask("FETC:SWE?");
    EXPECT_EQ(block.substr(0, 4), "#220");
    float first = 0.0f;
    const uint32_t bits = (uint32_t(uint8_t(block[4])) << 24) | (uint32_t(uint8_t(block[5])) << 16) |
                          (uint32_t(uint8_t(block[6])) << 8) | uint8_t(block[7]);
    std::memcpy(&first, &bits, 4);
    EXPECT_NEAR(first, -1.0f, 0.01f) << "the most significant byte first";
}

TEST_F(Remote, TenThousandRandomLinesSendOnlyWhatAcceptedCommandsAskFor) {
    const char* heads[] = {"*IDN?", "*RST", "*CLS", "SYST:ERR?", "REG:WRITE", "REG:READ?", "SOUR:VOLT", "VOLT?",
                           "SOUR:CURR:RANG", "CLAM:HIGH", "SOUR:CLAM:LOW", "OUTP", "OUTP2", "MEAS:VOLT?",
                           "STAT:ALAR?", "SOUR:VREF", "MEASO:SOUR", "sour:gang", "SOUR:OFFS", "DIAG:NODE:A",
                           "SWE:STEP", "ABOR", "FETC:SWE?", "xyz", "REG:WRITE?", ":", "**", "*ESR?", "*STB?"};
    const char* params[] = {"MIN", "MAX", "DEF", "2mA", "2 MV", "1 V", "25UA", "\"25mA\"", "abc", "1,2", "#HFF"};
    fullReset = false; // the panels made afresh a few hundred times would only cost time
    std::mt19937 rng(7740);
    auto pickOne = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    auto unit = [&] {
        std::string u = heads[pickOne(std::size(heads))];
        switch (pickOne(5)) {
        case 0: return u;
        case 1: return u + " " + std::to_string(pickOne(30) - 8);
        case 2: return u + " " + std::to_string((pickOne(4000) - 2000) / 100.0);
        case 3: return u + " #H" + QString::number(rng() % 0x2000000, 16).toStdString();
        }
        return u + " " + params[pickOne(std::size(params))];
    };
    // The panels open, and the operator's hand between the lines: an entry or a pick.
    h.nav.load(forms::Form::frmMeasure);
    h.nav.load(forms::Form::frmDIAG);
    QWidget* targets[] = {m->txtV, m->txtclamph, m->OFFSETx1, m->cboCurrent, m->cboMEASURE, m->IMEASG, m->chkGPO};
    auto operatorAction = [&] {
        QWidget* w = targets[pickOne(std::size(targets))];
        if (auto* box = qobject_cast<QLineEdit*>(w)) box->setText(QString::fromLatin1(params[pickOne(std::size(params))]));
        if (auto* list = qobject_cast<QComboBox*>(w)) list->setCurrentIndex(pickOne(list->count()));
        if (auto* box = qobject_cast<QCheckBox*>(w)) box->setChecked(!box->isChecked());
        if (auto* box = qobject_cast<QLineEdit*>(w)) forms::pressEnter(box);
        else forms::click(w);
        sent();
    };
    for (int i = 0; i < 10000; ++i) {
        if (i % 7 == 0) operatorAction();
        const size_t shown = h.boxes.size();
        std::string line = unit();
        for (int more = pickOne(3); more > 0; --more) line += ";" + unit();
        if (!pickOne(10))
            line.insert(static_cast<size_t>(pickOne(static_cast<int>(line.size()) + 1)), 1, static_cast<char>(rng() % 256));
        in->errors().clear();
        ex->addLine(line);
        const std::string out = ex->run();
        EXPECT_LE(std::count(out.begin(), out.end(), '\n'), 1) << line;
        const std::vector<int> words = sent();
        const int code = std::stoi(in->errors().pop());
        if (line.find(';') == std::string::npos && code <= -100 && code > -200) {
            EXPECT_TRUE(words.empty()) << line;
        } else if (code == 0 && line.rfind("REG:WRITE ", 0) == 0 && line.find(';') == std::string::npos) {
            EXPECT_EQ(words, std::vector<int>{static_cast<int>(*qz::remote::parseWhole(line.substr(10)))}) << line;
        }
        EXPECT_EQ(h.boxes.size(), shown) << "a box for the line " << line;
    }
    EXPECT_EQ(ask("*IDN?"), "QZ7740,QZ7740 evaluation board,virtual board,9.8.7");
}

TEST_F(Remote, AReadingPutsMeasoutBackAWarningStandsAndAnOverlongNumberIsRefused) {
    send("MEASO:SOUR 3;GAIN 1");
    sent();
    EXPECT_NEAR(std::stod(ask("VOLT 1;:MEAS:VOLT?")), 1.0, 0.01);
    const std::vector<int> words = sent();
    ASSERT_GE(words.size(), 2u);
    // The source, then the gain, each by its list's word as it stood before the reading.
    const std::vector<int> back(words.end() - 2, words.end());
    send("MEASO:SOUR 3;GAIN 1");
    EXPECT_EQ(sent(), back);
    EXPECT_EQ(ask("MEASO:SOUR?;GAIN?"), "3;1");

    // The range note at MI gain 10 with VREF 5 is a warning: the gain is set.
    send("SENS:CURR:GAIN 10");
    EXPECT_EQ(ask("SENS:CURR:GAIN?"), "10");
    const std::string warning = error();
    EXPECT_EQ(warning.substr(0, 3), "1,\"") << warning;
    EXPECT_TRUE(h.boxes.empty());

    // A number the box cannot hold is refused, never cut to 0 V.
    sent();
    send("VOLT 1E-30");
    EXPECT_EQ(error().substr(0, 5), "-120,");
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(ask("VOLT?"), "1");
}
