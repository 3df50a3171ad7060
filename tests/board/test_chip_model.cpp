// The virtual board measured as the measurement panel measures it: the start words and pins,
// the force DAC written by the host's law, MEASOUT read through the ADC and scaled by the
// host's formulas. Expected values come from the circuit: a 10 kOhm load, VREF 5.

#include "board/USBStuff.h"
#include "board/VirtualBoard.h"
#include "board/Wire.h"
#include "levels/TransferLaw.h"
#include "registers/RegisterMap.h"

#include <gtest/gtest.h>

namespace wire = qz::wire;
using Ints = std::vector<int32_t>;

namespace {

constexpr int32_t kMeasureVoltage = 0x029950; // 2.5mA range, MEASOUT on V sense, clamps on
constexpr int32_t kMeasureCurrent = 0x029930; // the same on I sense
constexpr int32_t kClh0p2mA = 0x1087FE;       // 0x8000 + 65536 x (0.2mA x 200 x 20) / 25.625
constexpr int32_t kCllMinus0p1mA = 0x0D7C01;  // 0x8000 - 65536 x (0.1mA x 200 x 20) / 25.625

class MeasureLoop : public ::testing::Test {
protected:
    qz::VirtualBoard board;
    qz::USBStuff usb{board};
    int32_t offsetCode = 0;

    void SetUp() override {
        usb.LoadUSB();
        for (int32_t w : {0x012200, 0x029950, 0x030000, 0x06AA80}) usb.WriteSPIWord(w);
        for (int32_t r : {wire::kHwInhibitOff, wire::kSwitchEnable, wire::kClampPinOn})
            usb.SendRequest(r);
        usb.WriteSPIWord(0x012200 | 0x2000); // MEASOUT gain 0.2, as a run sets it
        offsetCode = read(0x0B) - 0x0B0000;
    }
    int32_t read(int address) {
        usb.WriteSPIWord((address + 128) << 16);
        return usb.ReadSPIWord();
    }
    // A word, or a request without data stage.
    void apply(int32_t x) { x > 0xFFFF ? usb.WriteSPIWord(x) : usb.SendRequest(x); }
    void force(double V) { usb.WriteSPIWord(0x080000 | *qz::codeForVolts(V, 5.0f, offsetCode)); }
    int32_t adc() {
        usb.SendRequest(wire::kAdcConvert);
        return usb.ReadADCWord();
    }
    double volts() { return 5 * adc() * (5.0 / 65536) - 5.0 * offsetCode * 5.125 / 65536; }
    double amps() { return volts() / (20 * 200); }
};

} // namespace

TEST_F(MeasureLoop, ASweepReadsBackEachVoltageAndItsLoadCurrent) {
    for (int k = -100; k <= 100; ++k) {
        const double V = k * 0.05;
        force(V);
        usb.WriteSPIWord(kMeasureVoltage);
        EXPECT_NEAR(volts(), V, 0.002) << V;
        usb.WriteSPIWord(kMeasureCurrent);
        EXPECT_NEAR(amps(), V / 10000, 1e-6) << V;
    }
    // m and c act from the next x1 write: half gain puts 1 V's code at -5.906 V.
    usb.WriteSPIWord(kMeasureVoltage);
    usb.WriteSPIWord(0x097FFF);
    EXPECT_NEAR(volts(), 5.0, 0.002);
    force(1.0);
    EXPECT_NEAR(volts(), -5.906153, 0.002);
}

TEST_F(MeasureLoop, TheOutputIsOffWhilePoweredDownInhibitedOrGrounded) {
    // off, then on again: power down, SW-INH, /HW-INH, FIN to GND
    const std::pair<int32_t, int32_t> cases[] = {{0x012000, 0x012200}, {0x021950, 0x029950},
        {wire::kHwInhibitOn, wire::kHwInhibitOff}, {0x012A00, 0x012200}};
    force(3.0);
    for (auto [off, on] : cases) {
        apply(off);
        EXPECT_NEAR(volts(), 0.0, 0.002) << std::hex << off;
        apply(on);
        EXPECT_NEAR(volts(), 3.0, 0.002) << std::hex << on;
    }
}

TEST_F(MeasureLoop, ClampsAndFullScaleLimitTheCurrentAndTheClampAlarmLatches) {
    for (int32_t w : {kClh0p2mA, kCllMinus0p1mA, kMeasureCurrent}) usb.WriteSPIWord(w);
    force(5.0);
    EXPECT_NEAR(amps(), 0.2e-3, 1e-6);
    EXPECT_EQ(Ints({read(0x43), read(0x44), read(0x43)}), Ints({0x43FCC0, 0x44FCC0, 0x43FCC0}))
        << "CLALM and LCLALM low; a clear while clamping keeps the latch";
    usb.WriteSPIWord(kMeasureVoltage);
    EXPECT_NEAR(volts(), 2.0, 0.002) << "the output follows the clamped current";
    usb.WriteSPIWord(0x013200); // sense gain 10: the same code clamps twice the current
    EXPECT_NEAR(volts(), 4.0, 0.002);
    usb.WriteSPIWord(0x012200);
    force(1.0);
    EXPECT_EQ(Ints({read(0x43), read(0x44), read(0x43)}), Ints({0x43FDC0, 0x44FDC0, 0x43FFC0}))
        << "the cause gone, the latch holds until a clear";
    force(-5.0);
    EXPECT_NEAR(volts(), -1.0, 0.002);
    apply(wire::kClampPinOff);
    EXPECT_NEAR(volts(), -5.0, 0.002) << "clamps off by their pin";
    // 5uA range, clamps off by their bit: 0.64 V over 100 kOhm and no clamp alarm (sense
    // gain 10 keeps MEASOUT within the ADC).
    for (int32_t w : {0x013200, kMeasureCurrent & ~0x3810}) usb.WriteSPIWord(w);
    apply(wire::kClampPinOn);
    force(1.0);
    EXPECT_NEAR(volts() / (10 * 100000), 6.4e-6, 2e-9);
    read(0x44);
    EXPECT_EQ(read(0x43), 0x43FFC0);
}

TEST_F(MeasureLoop, TheAlarmSetupDisablesOrStopsLatchingTheClampAlarm) {
    usb.WriteSPIWord(kClh0p2mA);
    usb.WriteSPIWord(0x06AB80); // CLALM disabled
    force(5.0);
    EXPECT_EQ(read(0x43), 0x43FFC0);
    usb.WriteSPIWord(0x06A880); // enabled, not latched: the latched bit follows the live one
    EXPECT_EQ(read(0x43), 0x43FCC0);
    force(1.0);
    EXPECT_EQ(read(0x43), 0x43FFC0);
}

TEST_F(MeasureLoop, ComparatorsReportTheCurrentOrTheVoltageAgainstThePresentLevels) {
    // 2.5mA row: CPL -0.1 mA, CPH 0.2 mA; voltage row: -1 V and 1 V. The console composes
    // the same addresses as the chip model reads.
    using qz::Comparator, qz::DacMember;
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 3, DacMember::X1), 0x1C);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPH, 3, DacMember::C), 0x33);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPL, 7, DacMember::X1), 0x45);
    EXPECT_EQ(qz::comparatorAddress(Comparator::CPH, 7, DacMember::X1), 0x48);
    for (int32_t w : {0x1C7C01, 0x3187FE}) usb.WriteSPIWord(w);
    usb.WriteSPIWord(0x450000 | *qz::codeForVolts(-1.0, 5.0f, offsetCode));
    usb.WriteSPIWord(0x480000 | *qz::codeForVolts(1.0, 5.0f, offsetCode));
    struct Case { int32_t sys, dps1; double V; int32_t cpo; /* 5 CPOL, 4 CPOH */ };
    const Case cases[] = {
        {0x012200, 0x029950, 3.0, 0x00}, {0x012200, 0x029D50, 0.0, 0x00}, // Hi-Z; current
        {0x012200, 0x029D50, 3.0, 0x10}, {0x012200, 0x029D50, -3.0, 0x20},
        {0x012600, 0x029D50, 0.0, 0x10}, {0x012600, 0x029D50, 3.0, 0x00}, // window
        {0x012200, 0x029F50, 0.5, 0x00}, {0x012200, 0x029F50, 1.5, 0x10}, // voltage
        {0x012200, 0x029F50, -1.5, 0x20}};
    for (const Case& c : cases) {
        for (int32_t w : {c.sys, c.dps1}) usb.WriteSPIWord(w);
        force(c.V);
        EXPECT_EQ(read(0x43), 0x43FFC0 | c.cpo) << std::hex << c.sys << " " << c.dps1 << " " << c.V;
    }
}

TEST_F(MeasureLoop, MeasoutShowsItsSourceAtItsGain) {
    force(3.0);
    const std::pair<Ints, double> cases[] = {
        {{0x0299B0}, 0.0},                         // DUTGND sense
        {{0x029970}, 3.0},                         // K sense
        {{0x029990}, 3.144},                       // T sense: the die at 41.25 degrees, 10 mV/K
        {{0x013200, 0x029930}, 0.3e-3 * 200 * 10}, // I sense at current-sense gain 10
        {{0x07B000, 0x0299D0}, 3.0},               // DIAG A: MEAS V
        {{0x07A000, 0x0299F0}, 0.0}};              // DIAG B: VMidCode
    for (const auto& [words, expected] : cases) {
        for (int32_t w : words) usb.WriteSPIWord(w);
        EXPECT_NEAR(volts(), expected, 0.002) << std::hex << words.back();
    }
    for (int32_t hiZ : {0x029910, 0x029850}) {
        usb.WriteSPIWord(hiZ);
        EXPECT_LE(adc(), 1) << std::hex << hiZ;
    }
    for (int32_t w : {0x010200, kMeasureVoltage}) usb.WriteSPIWord(w);
    EXPECT_EQ(adc(), 65535) << "MEASOUT gain 1: 15.8 V is beyond the ADC";
}

TEST(VirtualBoardAdc, ReadsMeasoutWithinOneCodeTheSameWayEveryTime) {
    Ints codes[2];
    for (Ints& run : codes) {
        qz::VirtualBoard board;
        qz::USBStuff usb{board};
        usb.LoadUSB();
        for (int32_t w : {0x012200, 0x029950}) usb.WriteSPIWord(w);
        for (int k = 0; k < 50; ++k) {
            usb.SendRequest(wire::kAdcConvert);
            run.push_back(usb.ReadADCWord());
            EXPECT_NEAR(run.back(), 2.5625 / 5 * 65536, 1.5) << "OFFSET 12.8125 V x 0.2";
        }
    }
    EXPECT_EQ(codes[0], codes[1]);
}
