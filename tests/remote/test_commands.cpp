// Remote commands on the real panels and the virtual board, read on the trace: the words
// are the operator's, the panels show the new state, refusals land in the queue in the
// panel's own words with nothing sent, and ten thousand random lines leave it standing.

#include "diagnostics/frmDIAG.h"
#include "forms/ResultList.h"
#include "support/RunTools.h"
#include "measure/frmMeasure.h"
#include "remote/Instrument.h"
#include "support/ConsoleFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <random>

using qz::remote::Instrument;
using Kind = Instrument::Reply::Kind;

namespace {

class Remote : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        in = std::make_unique<Instrument>(*h.session, h.nav,
                                          Instrument::Config{"9.8.7", h.session->usb.messageBox, [this] { ++exits; }});
    }
    std::string ask(const std::string& line) {
        const Instrument::Reply r = in->execute(line);
        EXPECT_EQ(r.kind, Kind::Line) << line;
        return r.text;
    }
    void send(const std::string& line) { EXPECT_EQ(in->execute(line).kind, Kind::None) << line; }
    std::string error() { return in->errors().pop(); }

    std::unique_ptr<Instrument> in;
    int exits = 0;
};

constexpr int PMU = 0x029950;

} // namespace

TEST_F(Remote, TheForceVoltageGoesThroughTxtVWithTheRangeWordsFirst) {
    EXPECT_EQ(ask("*IDN?"), "QZ7740,QZ7740 evaluation board,virtual board,9.8.7");
    send("SOUR:VOLT 1");
    EXPECT_EQ(sent(), (std::vector<int>{PMU, PMU, 0x0889FE}));
    EXPECT_EQ(m->txtOutputV->text(), QStringLiteral("01.000"));
    EXPECT_EQ(f->txtFINx1->text(), QStringLiteral("89FE"));
    send(":source:voltage #H2");
    EXPECT_EQ(ask("SOUR:VOLT?"), "2");
    EXPECT_EQ(h.board->reg(0x08), 0x93FB);
    send("REG:WRITE #H0889FE");
    EXPECT_EQ(sent().back(), 0x0889FE);
    EXPECT_EQ(ask("REG:READ? 8"), "0889FE");
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
    EXPECT_TRUE(h.boxes.empty());
}

TEST_F(Remote, RefusalsCarryThePanelsWordsAndSendNothing) {
    const std::pair<const char*, const char*> refusals[] = {
        {"SOUR:VOLT 12.9", "-222,\"Number too large. Please reenter voltage between Z/S and F/S.\""},
        {"SOUR:CLAM:HIGH 3.3",
         "-222,\"Requested clamp level outside of Irange. Please reenter current suited to the Irange.\""},
        {"SOUR:VREF 1.4",
         "-222,\"Number outside Reference range. Please reenter reference voltage between 2V and +5V.\""},
        {"REG:WRITE #H1000000", "-222,\"Data out of range\""},
        {"REG:WRITE 1.5", "-224,\"Illegal parameter value\""},
        {"REG:WRITE volts", "-120,\"Numeric data error\""},
        {"REG:WRITE", "-109,\"Missing parameter\""},
        {"OUTP 1,2", "-108,\"Parameter not allowed\""},
        {"SOUR:CURR:RANG 7", "-222,\"Data out of range\""},
        {"SOUR:CURR:RANG \"3mA\"", "-224,\"Illegal parameter value\""},
        {"SOUR:VOLTS 1", "-113,\"Undefined header\""},
    };
    for (const auto& [line, queued] : refusals) {
        send(line);
        EXPECT_EQ(error(), queued) << line;
        EXPECT_TRUE(sent().empty()) << line;
    }
    EXPECT_EQ(ask("REG:READ? 200"), "") << "a refused query still answers one line";
    EXPECT_EQ(error(), "-222,\"Data out of range\"");
    EXPECT_TRUE(h.boxes.empty()) << "no message box for a remote command";
    EXPECT_EQ(h.session->general.VREF, 5.0f);

    // Outside a remote command the panels' boxes are back.
    qztest::Harness::enter(m->txtV, QStringLiteral("x"));
    EXPECT_EQ(h.boxes.size(), 1u);
}

TEST_F(Remote, ListsAreTheOperatorsPicksAndCheckBoxesTheirClicks) {
    send("SOUR:CURR:RANG 0");
    EXPECT_EQ(sent(), std::vector<int>{0x028150});
    EXPECT_EQ(m->lblmA->text(), QStringLiteral("uA"));
    EXPECT_EQ(f->cboCurrent->currentIndex(), 0) << "the twin follows";
    qztest::pick(m->cboCurrent, 3);
    const std::vector<int> byHand = sent();
    send("sour:curr:rang \"25mA\"");
    EXPECT_EQ(ask("SOUR:CURR:RANG?"), "4");
    sent();
    send("SOUR:CURR:RANG 3");
    EXPECT_EQ(sent(), byHand) << "the operator's words";
    send("SOUR:CURR:RANG 3");
    EXPECT_EQ(sent(), byHand) << "a list's pick resends, as the operator's does";

    send("OUTP OFF");
    EXPECT_FALSE(m->chkENABLECH->isChecked());
    EXPECT_EQ(sent().size(), 1u);
    send("OUTP 0");
    EXPECT_TRUE(sent().empty()) << "a box already clear takes no click";
    EXPECT_EQ(ask("OUTP?"), "0");
    send("SOUR:SLEW 7");
    EXPECT_EQ(m->cboSlew->currentText(), QStringLiteral("0.3125 V/us"));
    EXPECT_EQ(sent(), std::vector<int>{0x037000});
    send("*RST");
    const std::vector<std::string> reset = h.trace.fresh();
    ASSERT_FALSE(reset.empty());
    EXPECT_EQ(reset.front().rfind("VR 219 ", 0), 0u) << reset.front();
}

TEST_F(Remote, MeasurementsAndARunStartedByInitServedWhileItRuns) {
    send("SOUR:VOLT 2");
    EXPECT_NEAR(std::stod(ask("MEAS:VOLT?")), 2.0, 0.01);
    EXPECT_EQ(m->cboMEASURE->currentIndex(), 2) << "MEASOUT shows VSENSE";
    EXPECT_EQ(ask("STAT:ALAR?"), "0");
    send("SWE:RANG 3"); // 2.5 mA into the board's load: no clamp
    send("SWE:STAR -1");
    send("SWE:STOP 1");
    send("SWE:STEP 500");
    send("SWE:STAR 99");
    EXPECT_EQ(error().rfind("-222,\"Number outside possible voltage range", 0), 0u);
    EXPECT_EQ(ask("SWE:STAR?"), "-1");

    bool ended = false;
    in->onRunEnd = [&] { ended = true; };
    send("INIT:SWE");
    EXPECT_EQ(ask("STAT:OPER?"), "1");
    EXPECT_EQ(in->execute("*OPC?").kind, Kind::AfterRun);
    send("INIT:TIME");
    EXPECT_EQ(error(), "-213,\"Init ignored; a run is in progress\"");
    send("REG:WRITE 0");
    EXPECT_EQ(error(), "-221,\"Settings conflict; a run is in progress\"");
    ASSERT_TRUE(QTest::qWaitFor([&] { return ended; }, 10000));
    EXPECT_EQ(ask("STAT:OPER?"), "0");
    const std::string values = ask("FETC:SWE?");
    EXPECT_EQ(std::count(values.begin(), values.end(), ',') + 1, 5) << values;
    EXPECT_NEAR(std::stod(values), -1.0, 0.01) << values;
    EXPECT_NEAR(std::stod(values.substr(values.rfind(',') + 1)), 1.0, 0.01) << values;
    auto* measure = static_cast<frmMeasure*>(h.nav.loaded(forms::Form::frmMeasure));
    EXPECT_EQ(measure->txtstart->text().isEmpty(), false) << "the panel shows the run";
    EXPECT_EQ(ask("SYST:ERR?"), "0,\"No error\"");
    send("SYST:EXIT");
    EXPECT_EQ(exits, 1);
}

TEST_F(Remote, AborTicksTheTemperatureRunsStopAndALeavingClientLeavesTheOperatorsRun) {
    auto* d = static_cast<frmDIAG*>(h.nav.show(forms::Form::frmDIAG));
    qztest::ActingClock clock;
    d->useClock(clock);
    clock.at(5, [&] {
        in->clientLeft();
        EXPECT_FALSE(d->Check1->isChecked()) << "the operator's own run goes on";
        send("ABOR");
    });
    d->cmdPLOTTEMP_Click();
    EXPECT_TRUE(d->Check1->isChecked());
    EXPECT_LT(d->List2->count(), 10);
}

TEST_F(Remote, TenThousandRandomLinesSendOnlyWhatAcceptedCommandsAskFor) {
    const char* heads[] = {"*IDN?", "*RST", "*CLS", "SYST:ERR?", "REG:WRITE", "REG:READ?", "SOUR:VOLT",
                           "SOUR:VOLT?", "SOUR:CURR:RANG", "SOUR:CLAM:HIGH", "SOUR:CLAM:LOW", "OUTP",
                           "MEAS:VOLT?", "STAT:ALAR?", "SOUR:VREF", "MEASO:SOUR", "sour:gang", "SOUR:OFFS",
                           "DIAG:NODE:A", "SWE:STEP", "ABOR", "FETC:SWE?", "xyz", "REG:WRITE?", ":", "**"};
    std::mt19937 rng(7740);
    auto pickOne = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    auto param = [&]() -> std::string {
        switch (pickOne(7)) {
        case 0: return std::to_string(pickOne(30) - 8);
        case 1: return std::to_string((pickOne(4000) - 2000) / 100.0);
        case 2: return "#H" + QString::number(rng() % 0x2000000, 16).toStdString();
        case 3: return "\"25mA\"";
        case 4: return "abc";
        case 5: return std::string(1, static_cast<char>(rng() % 256));
        }
        return "1,2";
    };
    for (int i = 0; i < 10000; ++i) {
        std::string line = heads[pickOne(std::size(heads))];
        if (pickOne(4)) line += " " + param();
        if (!pickOne(10)) line.insert(static_cast<size_t>(pickOne(static_cast<int>(line.size()) + 1)), 1,
                                      static_cast<char>(rng() % 256));
        in->errors().clear();
        in->execute(line);
        const std::string first = in->errors().pop();
        const std::vector<int> words = sent();
        const int code = std::stoi(first);
        if (code <= -100 && code > -200) {
            EXPECT_TRUE(words.empty()) << line;
        } else if (code <= -210) {
            for (int w : words) EXPECT_TRUE(w & 0x800000) << line << ": only reads before a refusal";
        } else if (code == 0 && line.rfind("REG:WRITE ", 0) == 0) {
            EXPECT_EQ(words, std::vector<int>{static_cast<int>(*qz::remote::parseWhole(line.substr(10)))}) << line;
        }
    }
    EXPECT_EQ(ask("*IDN?"), "QZ7740,QZ7740 evaluation board,virtual board,9.8.7");
    EXPECT_TRUE(h.boxes.empty());
}
