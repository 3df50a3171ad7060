// The run engines of the measurement panel on a board whose readings the test chooses, with
// a clock that moves only when waited on: the scaling, the lists' words and delays, the
// sweep's codes, points and columns, the deviation table, the time run and the stimuli.

#include "runs/RunBoard.h"
#include "levels/Ranges.h"
#include "registers/Session.h"
#include "runs/ChartRules.h"
#include "runs/Progress.h"
#include "runs/SavedRun.h"
#include "runs/Stimuli.h"
#include "runs/Sweep.h"
#include "runs/TimeRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>

using qztest::RunBoard;

namespace {

constexpr const char* kOutside5V =
    "Number outside possible voltage range, please refer to transfer function and offset dac "
    "setting and review output voltage request. Min and Max for your reference/offset DAC "
    "settings are-12.81 and 12.81";

struct Rig {
    RunBoard* board = new RunBoard;
    qz::Session s{std::unique_ptr<qz::BridgeLibrary>(board)};
    qz::SteppedClock clock;
    std::vector<std::string> lines;
    std::vector<qz::RunProgress> passes;
    int stopAfter = -1; // the point after which the event pass asks for the end

    Rig() { board->clock = &clock; }
    qz::RunContext ctx() {
        return {s, clock,
                [this](const qz::RunProgress& p) {
                    passes.push_back(p);
                    return p.point != stopAfter;
                },
                [this](std::string l) { lines.push_back(std::move(l)); }};
    }
    static qz::SweepRequest sweep(const char* start = "-5", const char* end = "5",
                                  const char* step = "1000") {
        qz::SweepRequest r;
        r.start = start;
        r.end = end;
        r.step = step;
        r.prepared = {0x8000, 20.0f};
        r.rsense = 200.0f;
        return r;
    }
    qz::SweepOutcome run(const qz::SweepRequest& r, qz::SweepPlan& plan, qz::MeasureArrays& a) {
        EXPECT_FALSE(qz::planSweep(s.general, r, plan).has_value());
        return qz::runSweep(ctx(), plan, a);
    }
    std::vector<std::string> column(size_t c, size_t from, size_t count) const {
        std::vector<std::string> out;
        for (size_t i = from; i < from + count; ++i) {
            std::string l = lines[i];
            for (size_t k = 0; k < c; ++k)
                l = l.substr(l.find('\t') + 1);
            out.push_back(l.substr(0, l.find('\t')));
        }
        return out;
    }
};

} // namespace

TEST(MeasureScaling, WorkedValuesOfTheConversions) {
    const qz::Scaling s{5.0f, 0x8000, 20.0f, 200.0f};
    EXPECT_DOUBLE_EQ(s.offsetVolts(), 12.8125);
    EXPECT_DOUBLE_EQ(qz::Scaling::ADCVolts(1), 0.0000762939453125);
    EXPECT_DOUBLE_EQ(s.MeasuredVolts(0), -12.8125);
    EXPECT_DOUBLE_EQ(s.MeasuredVolts(65535), 12.1871185302734375);
    EXPECT_DOUBLE_EQ(s.VoltsForCode(19980), -5.00019073486328125);
    EXPECT_EQ(s.CodeForVolts(-5), 19980);
    EXPECT_EQ(s.CodeForVolts(5), 45556);
    const qz::Scaling amps{2.5f, 0, 20.0f, 200.0f};
    EXPECT_DOUBLE_EQ(amps.MeasuredAmps(32768), 0.003125) << "12.5 V over 20 x 200";
}

TEST(MeasureScaling, PrepareSetsGainPointTwoAndReadsTheOffsetAndTheSenseGainFromTheChip) {
    Rig rig;
    rig.s.general.SYSreg = 0x010000;
    rig.board->offsetCode = 0x4000;
    rig.board->sysReply = 0x013000;
    const qz::Prepared p = qz::PrepareMeasure(rig.s);
    EXPECT_EQ(rig.board->wordsOnly(), (std::vector<int32_t>{0x012000, 0x8B0000, 0x810000}));
    EXPECT_EQ(rig.s.general.SYSreg, 0x012000) << "the gain bit stays";
    EXPECT_EQ(p.offsetCode, 0x4000);
    EXPECT_EQ(p.measGain, 10.0f) << "bit 12 of the chip's word, not the panels' gain";
    rig.board->sysReply = 0x012000;
    EXPECT_EQ(qz::PrepareMeasure(rig.s).measGain, 20.0f);
}

TEST(MeasureLists, RangeAndMeasureWordsKeepEachOthersBits) {
    qz::General g;
    const int32_t words[7] = {0x028150, 0x028950, 0x029150, 0x029950, 0x02A150, 0x02A950, 0x02B150};
    for (int i = 0; i < 7; ++i) {
        g.sweepPMUreg = 0x029950;
        qz::cboSweepIClick(g, i);
        EXPECT_EQ(g.sweepPMUreg, words[i]) << i;
        EXPECT_EQ(g.IRangeIndex, i);
    }
    g.sweepPMUreg = 0x02B9FF;
    qz::cboSweepIClick(g, -1);
    EXPECT_EQ(g.sweepPMUreg, 0x0281FF) << "no item: the mask alone";
    EXPECT_EQ(g.IRangeIndex, 6) << "and the range stays";
    // The run's resistor by the index; one outside the list takes the first range's, as
    // the PLOT head's own IRangeIndex = 0 does.
    EXPECT_EQ(qz::senseRange(6).rsense, 5.0f) << "ext current range 1";
    EXPECT_EQ(qz::senseRange(5).rsense, 10.0f) << "ext current range 2";
    for (int outside : {-1, 7, 32767})
        EXPECT_EQ(qz::senseRange(outside).rsense, 100000.0f) << outside;
    EXPECT_EQ(qz::currentRange(7), nullptr) << "the front panel's table has no such range";
    qz::cboMeasureVIClick(g, 1);
    EXPECT_EQ(g.sweepPMUreg, 0x028130);
    EXPECT_EQ(g.measMode, 1);
    qz::cboMeasureVIClick(g, 0);
    EXPECT_EQ(g.sweepPMUreg, 0x028150);
    EXPECT_EQ(g.measMode, 0);
}

TEST(MeasureLists, TheSampleDelayIsAFractionOfTheCycle) {
    qz::General g;
    qz::cboMDelayClick(g, -1, 5);
    EXPECT_EQ(g.sampleDelay, 0.0f) << "no cycle chosen yet";
    EXPECT_EQ(g.tempDelay, 0.0f);
    EXPECT_EQ(g.cycleDelay, 0.0f);
    qz::cboMDelayClick(g, 2, 5);
    EXPECT_EQ(g.sampleDelay, 0.1f);
    EXPECT_EQ(g.tempDelay, 0.1f);
    EXPECT_EQ(g.cycleDelay, 0.2f);
    qz::cboDelaClick(g, 4);
    EXPECT_EQ(g.tempDelay, 0.4f) << "the cycle alone puts the whole T after the sample";
    EXPECT_EQ(g.sampleDelay, 0.1f);
    qz::cboMDelayClick(g, 1, 3);
    EXPECT_FLOAT_EQ(g.sampleDelay, 0.03f);
    EXPECT_FLOAT_EQ(g.tempDelay, 0.07f);
    qz::cboMDelayClick(g, 0, 0);
    EXPECT_EQ(g.sampleDelay, 0.0f);
    EXPECT_EQ(g.tempDelay, 0.0001f);
}

TEST(MeasureChecks, EntriesAndRunsRefuseWithTheirWords) {
    EXPECT_TRUE(qz::checkForceEntry("-12.4", 5.0f, 0x8000).ok);
    EXPECT_EQ(qz::checkForceEntry("12.6", 5.0f, 0x8000).message, kOutside5V) << "taken as 13";
    EXPECT_EQ(qz::checkForceEntry("5 V", 5.0f, 0x8000).message,
              "Not a valid number. Please reenter it.");
    for (const char* ok : {"1000", "1000.4", "0.4", "0"})
        EXPECT_TRUE(qz::checkStepEntry(ok).ok) << ok;
    for (const char* bad : {"1001", "-1"})
        EXPECT_EQ(qz::checkStepEntry(bad).message,
                  "Number outside range. Please reenter voltage step between 0 and 1000mV.");
    EXPECT_EQ(qz::checkCodeEntry("abc").text, "0ABC");
    EXPECT_EQ(qz::checkCodeEntry("10000").message,
              "Number too large. Please reenter code between 0 and xFFFF.");
    EXPECT_EQ(qz::checkCodeEntry("fg").message, "Not a valid number. Please reenter it.");

    struct Case {
        qz::SweepRequest r;
        qz::Box box;
        std::string text;
    };
    auto other = [](const char* vref) {
        qz::SweepRequest r = Rig::sweep();
        r.reference = {2, vref};
        return r;
    };
    const std::string step =
        "Number outside range. Please reenter voltage step between 0 and 1000mV.";
    const Case cases[] = {
        {Rig::sweep("abc"), qz::Box::txtstartV, "Not a valid number. Please reenter it."},
        {Rig::sweep("-5", ""), qz::Box::txtendV, "Not a valid number. Please reenter it."},
        {Rig::sweep("5", "-5"), qz::Box::txtstartV, "Start Voltage must be less than End Voltage."},
        {Rig::sweep("2", "2.0"), qz::Box::txtstartV, "Start Voltage must be less than End Voltage."},
        {Rig::sweep("-5", "5", "1 mV"), qz::Box::txtstep, "Not a valid number. Please reenter it."},
        {other("7"), qz::Box::txtVREF,
         "Number outside Reference range. Please reenter reference voltage between 2V and +5V."},
        {Rig::sweep("-13"), qz::Box::txtstartV, kOutside5V},
        {Rig::sweep("-5", "12.82"), qz::Box::txtendV, kOutside5V},
        {Rig::sweep("-5", "5", "0.19"), qz::Box::txtstep,
         "Voltage step too small: it gives no DAC code. Please reenter a voltage step of at "
         "least one code, 0.391mV at this reference."},
        {Rig::sweep("-5", "5", "-100"), qz::Box::txtstep, step},
        {Rig::sweep("-5", "5", "1e30"), qz::Box::txtstep, step},
    };
    for (const Case& c : cases) {
        qz::General g;
        qz::SweepPlan plan;
        const auto refusal = qz::planSweep(g, c.r, plan);
        ASSERT_TRUE(refusal.has_value()) << c.text;
        EXPECT_EQ(refusal->box, c.box) << c.text;
        EXPECT_EQ(refusal->text, c.text);
    }
    qz::General g;
    qz::SweepPlan plan;
    // The Enter check of the step is not repeated: a step past 1000 mV runs as typed.
    for (const auto& [typed, code] : {std::pair{"1000.5", 2559}, {"2000", 5115}}) {
        EXPECT_FALSE(qz::planSweep(g, Rig::sweep("-5", "5", typed), plan).has_value()) << typed;
        EXPECT_EQ(plan.stepCode, code) << typed;
    }
    EXPECT_FALSE(qz::planSweep(g, other("4.5"), plan).has_value());
    EXPECT_EQ(g.VREF, 4.5f) << "the run takes the Other box with its fraction";
}

TEST(MeasureSweep, AQuotientThatRoundsUpEndsWithOneReadingAtTheEndCode) {
    Rig rig;
    rig.board->code = [](int, int k) { return 32768 + (k % 8 == 7 ? 1 : 0); };
    qz::SweepPlan plan;
    qz::MeasureArrays a;
    const qz::SweepOutcome out = rig.run(Rig::sweep(), plan, a);
    EXPECT_EQ(plan.stepCode, 2558);
    EXPECT_EQ(plan.n, 10) << "25576 / 2558 = 9.998";
    EXPECT_EQ(out.points, 11);
    EXPECT_EQ(rig.board->conversions, 10 * 8 + 1);
    std::vector<int32_t> fin;
    for (int k = 0; k < 10; ++k)
        fin.push_back(0x080000 | (19980 + 2558 * k));
    fin.push_back(0x080000 | 45556);
    EXPECT_EQ(rig.board->wordsOnly(), fin) << "one word a point and no other";
    EXPECT_EQ(a.sweepCodes.back(), 45556);
    EXPECT_EQ(out.word, 0x08B1F4);
    ASSERT_EQ(rig.lines.size(), 12u);
    EXPECT_EQ(rig.lines[0], "temp\tSWEEPDAC\tDACCODE(TEMP)\tVoltage\tADC\tADC Measured "
                            "Voltage\tMeasured Voltage\tsample time");
    EXPECT_EQ(
        rig.lines[1],
        "0\t544268\t19980\t-5.00019073486328\t32768.125\t2.50000953674316\t-0.31245231628418\t0");
    EXPECT_EQ(rig.column(4, 11, 1)[0], "32768") << "the last point is read once";
    EXPECT_EQ(rig.column(1, 11, 1)[0], "569844");
    EXPECT_EQ(rig.passes.size(), 11u);
    EXPECT_EQ(out.adcCode, 32768) << "the mean rounds to a whole code for lblREADSPI";
}

TEST(MeasureSweep, AFractionBelowAHalfEndsShortAndAWholeQuotientEndsAtTheEnd) {
    Rig low;
    qz::SweepPlan plan;
    qz::MeasureArrays a;
    EXPECT_EQ(low.run(Rig::sweep("-5", "5", "900"), plan, a).points, 12);
    EXPECT_EQ(plan.stepCode, 2302) << "25576 / 2302 = 11.11";
    EXPECT_EQ(a.sweepCodes.back(), 45302) << "short of 45556, and no extra point";
    EXPECT_EQ(low.board->words.back().word, 0x08B0F6);
    EXPECT_EQ(low.board->conversions, 96);

    Rig whole;
    qz::SweepRequest r = Rig::sweep();
    r.reference = {1, ""};
    EXPECT_EQ(whole.run(r, plan, a).points, 11);
    EXPECT_EQ(plan.stepCode, 5115) << "VREF 2.5: round(65536 / 12.8125)";
    EXPECT_EQ(plan.startCode, 7193);
    EXPECT_EQ(a.sweepCodes.back(), 58343);
    EXPECT_EQ(whole.board->conversions, 88) << "the loop reaches the end code itself";
}

TEST(MeasureSweep, CurrentHeaderAndTheSampleTimesOfTheDelays) {
    Rig rig;
    qz::SweepRequest r = Rig::sweep("0", "10", "900");
    r.measMode = 1;
    r.reference = {1, ""};
    r.prepared = {0, 20.0f};
    r.sampleDelay = 0.03f;
    r.tempDelay = 0.07f;
    r.cycleDelay = 0.1f;
    qz::SweepPlan plan;
    qz::MeasureArrays a;
    rig.run(r, plan, a);
    EXPECT_EQ(rig.lines[0].substr(rig.lines[0].rfind("Measured")), "Measured Current\tsample time");
    EXPECT_EQ(rig.column(7, 1, 3), (std::vector<std::string>{"0.03", "0.13", "0.23"}));
    EXPECT_EQ(rig.column(6, 1, 1)[0], "0.003125") << "amperes, one reading of 32768";
    EXPECT_EQ(rig.column(4, 1, 1)[0], "32768");
    EXPECT_EQ(rig.board->conversions, 12)
        << "51150 / 4604 = 11.11: twelve points, one reading each";
    EXPECT_NEAR(rig.clock.seconds(), 1.2, 1e-6) << "twelve points of 30 + 70 ms";
    EXPECT_NEAR(rig.board->words[1].at - rig.board->words[0].at, 0.1, 1e-6);
    EXPECT_EQ(a.sweepMeasVolts, std::vector<double>(12, 0.0)) << "the other array stays 0";
}

TEST(MeasureSweep, StopEndsAfterThePointAndEveryCodeFitsARun) {
    Rig rig;
    rig.stopAfter = 3;
    qz::SweepPlan plan;
    qz::MeasureArrays a;
    const qz::SweepOutcome out = rig.run(Rig::sweep(), plan, a);
    EXPECT_TRUE(out.stopped);
    EXPECT_EQ(out.points, 4);
    EXPECT_EQ(a.sweepCodes.size(), 4u);
    EXPECT_EQ(rig.lines.size(), 5u);

    // From code 0 to 65535 in steps of one: 65,536 points, past any 16-bit index.
    Rig all;
    all.board->code = [](int fin, int) { return fin; };
    qz::SweepRequest r = Rig::sweep("-12.8125", "12.8121", "0.4");
    r.measMode = 1;
    EXPECT_EQ(all.run(r, plan, a).points, 65536);
    EXPECT_EQ(plan.stepCode, 1);
    EXPECT_EQ(a.sweepCodes[40000], 40000);
    EXPECT_EQ(all.lines.back().substr(0, 6), "65535\t");
}

TEST(MeasureSweep, DeviationFromTheLineThroughTheFirstAndLastReading) {
    qz::MeasureArrays a;
    a.sweepCodes = {0, 10, 20};
    a.sweepADCVolts = {1.0, 1.5, 3.0};
    std::vector<std::string> lines;
    auto add = [&](std::string l) { lines.push_back(std::move(l)); };
    qz::FitDeviation(a, 0, 20, add);
    EXPECT_EQ(lines, (std::vector<std::string>{"1", "0\t0", "10\t-5", "20\t0"}));
    lines.clear();
    qz::FitDeviation(a, 0, 40, add);
    EXPECT_EQ(lines[3], "20\t20") << "the slope runs to the end code, reached or not";
    lines.clear();
    a.sweepADCVolts = {2.0, 1.0, 2.0};
    qz::FitDeviation(a, 0, 20, add);
    EXPECT_EQ(lines, std::vector<std::string>{"2"}) << "no slope, no table";
}

TEST(MeasureTime, HundredAndOneSamplesAndHundredAndFiveLines) {
    Rig rig;
    rig.board->code = [](int, int k) { return 32768 + k % 3; };
    qz::TimeRequest r;
    r.force = "5";
    r.prepared = {0x8000, 20.0f};
    r.rsense = 200.0f;
    r.tempDelay = r.cycleDelay = 0.5f;
    qz::TimePlan plan;
    ASSERT_FALSE(qz::planTimeRun(rig.s.general, r, plan).has_value());
    qz::MeasureArrays a;
    EXPECT_EQ(qz::runTime(rig.ctx(), plan, a).points, 101);
    EXPECT_EQ(rig.board->wordsOnly(), std::vector<int32_t>{0x08B1F4}) << "the run's only word";
    ASSERT_EQ(rig.lines.size(), 105u);
    EXPECT_EQ(rig.lines[0], "temp\tADC\tADC Measured Voltage\tsample time\tMeasured Voltage");
    EXPECT_EQ(rig.lines[1], "0\t32768\t2.5\t0\t-0.3125");
    EXPECT_EQ(rig.lines[101].substr(0, 7), "100\t327");
    EXPECT_EQ(rig.column(3, 101, 1)[0], "50");
    EXPECT_EQ(rig.lines[102], "-0.3125\t-0.3117371");
    EXPECT_EQ(rig.lines[103], "mincode\tmaxcode");
    EXPECT_EQ(rig.lines[104], "2.5\t2.500153");
    EXPECT_NEAR(rig.clock.seconds(), 50.5, 1e-6) << "101 cycles of 500 ms, in no time";

    r.measMode = 1;
    ASSERT_FALSE(qz::planTimeRun(rig.s.general, r, plan).has_value());
    rig.lines.clear();
    rig.board->conversions = 0;
    qz::runTime(rig.ctx(), plan, a);
    EXPECT_EQ(rig.lines[0].substr(rig.lines[0].rfind('\t') + 1), "Measure Current");
    EXPECT_EQ(rig.column(4, 1, 1)[0], "-7.8125E-05") << "amperes";

    qz::General g;
    r.force = "13";
    EXPECT_EQ(qz::planTimeRun(g, r, plan)->text, kOutside5V);
    r.force = "";
    EXPECT_EQ(qz::planTimeRun(g, r, plan)->box, qz::Box::txtForceV);
}

TEST(MeasureStimuli, AStepOfTheFinDacAndARangeChangeWithTheirPause) {
    Rig rig;
    qz::StimulusWords w;
    const qz::WriteSetResult step = qz::cmdWRITESET(rig.s, rig.clock, w, -1, "0000", "8000");
    EXPECT_EQ(rig.board->wordsOnly(), (std::vector<int32_t>{0x028150, 0x080000, 0x088000}));
    EXPECT_NEAR(rig.board->words[2].at - rig.board->words[1].at, 0.2, 1e-9);
    EXPECT_EQ(step.Text2, "00080000");
    EXPECT_EQ(step.Text3, "00088000");
    EXPECT_EQ(w.finWord2, 0x088000) << "the words stay";

    rig.board->words.clear();
    const qz::RangeChangeResult change = qz::cmdRangeChange(rig.s, rig.clock, w, 1, 4, "abc");
    EXPECT_EQ(rig.board->wordsOnly(), (std::vector<int32_t>{0x028950, 0x080ABC, 0x02A150}));
    EXPECT_NEAR(rig.board->words[2].at - rig.board->words[1].at, 0.2, 1e-9);
    EXPECT_EQ(change.txtrange1, "028950");
    EXPECT_EQ(change.txtrange2, "02A150");
    EXPECT_EQ(change.txtfincode, "080ABC");
    EXPECT_EQ(change.Text1, "02A150");
    EXPECT_EQ(rig.s.general.IRangeIndex, 4);
    EXPECT_EQ(w.finWord1, 0x080000) << "put back";
    EXPECT_EQ(w.fincodeWord, 0x080ABC);

    rig.board->words.clear();
    EXPECT_EQ(qz::cmdWRITESET(rig.s, rig.clock, w, 0, "0000", "").refusal->box,
              qz::CodeBox::txtFINSET2);
    EXPECT_EQ(qz::cmdRangeChange(rig.s, rig.clock, w, 0, 1, "x").refusal->text,
              "Not a valid number. Please reenter it.");
    EXPECT_TRUE(rig.board->words.empty());
}

TEST(MeasureCharts, MarginsByTheSignOfMinAndTheCursorIndex) {
    const qz::ChartBounds up = qz::sweepChartBounds({1.0f, 2.0f});
    EXPECT_DOUBLE_EQ(up.scaleTop, 2.2);
    EXPECT_DOUBLE_EQ(up.scaleBottom, 0.9);
    EXPECT_DOUBLE_EQ(up.axisMin, 1.1);
    const qz::ChartBounds down = qz::sweepChartBounds({-3.0f, -1.0f});
    EXPECT_DOUBLE_EQ(down.scaleTop, -1.1) << "below max, as the rule has it";
    EXPECT_DOUBLE_EQ(down.scaleBottom, -3.3);
    const qz::ChartBounds time = qz::timeChartBounds({-1.0f, 4.0f});
    EXPECT_DOUBLE_EQ(time.axisMax, 3.996);
    EXPECT_DOUBLE_EQ(time.axisMin, -1.001);
    EXPECT_DOUBLE_EQ(qz::timeChartBounds({2.0f, 4.0f}).scaleBottom, 1.998);

    EXPECT_EQ(qz::cursorIndex(1.0, 11), 0u);
    EXPECT_EQ(qz::cursorIndex(11.0, 11), 10u);
    EXPECT_EQ(qz::cursorIndex(2.5, 11), 2u) << "a tie to the even index";
    EXPECT_FALSE(qz::cursorIndex(11.6, 11));
    EXPECT_FALSE(qz::cursorIndex(0.0, 11));
}

namespace {
// A clock whose sleeps end early, at a quarter of the time asked (a millisecond at the
// least), and which counts how often it is read: a wait must sleep again for what is
// left, and never poll.
class EarlyWaker final : public qz::Clock {
  public:
    double seconds() const override {
        ++reads;
        return now;
    }
    void sleep(double s) override {
        ++sleeps;
        now += std::max(s / 4, 1e-3);
    }
    double now = 100.0;
    mutable int reads = 0;
    int sleeps = 0;
};
} // namespace

TEST(MeasureClock, WaitsSleepOnTheClockAndEndOnTime) {
    qz::SteppedClock stepped;
    for (double d : {0.0, -1.0, std::nan("")})
        qz::WaitSeconds(stepped, d);
    EXPECT_EQ(stepped.seconds(), 0.0);
    qz::WaitSeconds(stepped, 0.5);
    EXPECT_EQ(stepped.seconds(), 0.5);

    EarlyWaker early;
    qz::WaitSeconds(early, 1.0);
    EXPECT_GE(early.now, 101.0) << "never early";
    EXPECT_LT(early.now, 101.0 + 1e-3) << "nor late by more than the last short sleep";
    EXPECT_GT(early.sleeps, 1) << "a short sleep is followed by another";
    EXPECT_LE(early.reads, early.sleeps + 2) << "asleep, not spinning";

    // The machine's clock: never early, however busy the machine.
    const auto start = std::chrono::steady_clock::now();
    qz::WaitSeconds(qz::steadyClock(), 0.02);
    EXPECT_GE(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 0.02);
}

TEST(RunProgress, PointsTheTimeGoneAndTheTimeLeftAtThePaceSoFar) {
    EXPECT_EQ(qz::progressText(0, 101, 0.0), "point 0 of 101, 0:00 elapsed") << "no pace yet";
    EXPECT_EQ(qz::progressText(10, 101, 4.5), "point 10 of 101, 0:04 elapsed, 0:41 left");
    EXPECT_EQ(qz::progressText(3, 9, 3.0), "point 3 of 9, 0:03 elapsed, 0:06 left")
        << "a whole second left is not rounded up to the next";
    EXPECT_EQ(qz::progressText(101, 101, 50.5), "point 101 of 101, 0:50 elapsed, 0:00 left");
    EXPECT_EQ(qz::progressText(10, 1001, 9.0), "point 10 of 1001, 0:09 elapsed, 14:52 left");
    EXPECT_EQ(qz::durationText(3725), "1:02:05");
    EXPECT_EQ(qz::durationText(-2), "0:00");
}

TEST(SavedRun, TheHeadNamesTheRunAndItsSettingsThenTheListFollowsAsOnTheClipboard) {
    Rig rig;
    qz::SweepRequest r = Rig::sweep();
    r.measMode = 1;
    r.sampleDelay = 0.03f;
    r.tempDelay = 0.07f;
    r.cycleDelay = 0.1f;
    qz::SweepPlan plan;
    ASSERT_FALSE(qz::planSweep(rig.s.general, r, plan).has_value());
    std::tm t{};
    t.tm_year = 2024 - 1900;
    t.tm_mon = 4;
    t.tm_mday = 1;
    t.tm_hour = 14;
    t.tm_min = 3;
    t.tm_sec = 22;
    t.tm_isdst = -1;
    const qz::RunStamp stamp{std::mktime(&t), qz::LinkState::Virtual};
    const std::vector<std::string> head = qz::headerLines(
        "QZ7740 voltage sweep", qz::sweepSettings(stamp, {"\u00B12.5mA", "100ms", ".3 X"}, r, plan));
    EXPECT_EQ(head, (std::vector<std::string>{"# QZ7740 voltage sweep",
                                              "# date and time: 2024-05-01 14:03:22",
                                              "# board: virtual board",
                                              "# VREF: 5 V",
                                              "# OFFSET code: 8000",
                                              "# current range: \u00B12.5mA (200 ohms)",
                                              "# measure mode: Measure Current",
                                              "# cycle delay: 100ms (0.1 s)",
                                              "# sample delay: .3 X (0.03 s)",
                                              "# start: -5 V (code 4E0C)",
                                              "# end: 5 V (code B1F4)",
                                              "# step: 1000 mV (2558 codes)"}));
    EXPECT_EQ(qz::savedText({"# a", "# b"}, {"x\ty", "z"}), "# a\r\n# b\r\nx\ty\r\nz\r\n");
    EXPECT_EQ(qz::savedText({"# a"}, {}), "# a\r\n") << "an empty list adds nothing";
}
