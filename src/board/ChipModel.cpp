#include "board/ChipModel.h"

#include <algorithm>
#include <cmath>

namespace qz {

namespace {

constexpr double kSpan = ChipModel::kVref * 5.125;
constexpr double kCodes = 65536.0;
constexpr double kMidCode = 32768.0;
constexpr double kFullScaleSense = 0.64; // volts over the sense resistor at full scale

constexpr int kSystem = 0x01, kDps1 = 0x02, kAlarmSetup = 0x06, kDiag = 0x07;
constexpr int kFinX1 = 0x08, kOffset = 0x0B, kCllX1 = 0x0D, kClhX1 = 0x10;

// System control bits.
constexpr uint16_t kPoweredUp = 1u << 9, kWindow = 1u << 10, kFinToGround = 1u << 11,
                   kSenseGain10 = 1u << 12, kMeasoutFifth = 1u << 13;
// DPS1 bits.
constexpr uint16_t kChannelEnabled = 1u << 15, kMeasoutEnabled = 1u << 8, kClampBit = 1u << 4;

// The live bit of each alarm in the status word: TMPALM 14, OSALM 12, DUTALM 10, CLALM 8,
// GRDALM 6. Its latched form is the bit above; the setup register latches an alarm with
// that same upper bit and disables it with the live bit's position.
constexpr uint16_t kAlarmLiveBits = 0x5540;
constexpr uint16_t kClampAlarm = 1u << 8;
constexpr uint16_t kCpol = 1u << 5, kCpoh = 1u << 4;

// By the range field of DPS1: the sense resistor on the board and the comparator row. Field 5
// is "Ext Range 2" and 6 "Ext Range 1", whose comparator rows count the other way; field 7
// names no range and the board behaves as for field 6.
struct Range {
    double ohms;
    int row;
};
constexpr std::array<Range, 8> kRanges{
    {{100000, 0}, {20000, 1}, {2000, 2}, {200, 3}, {20, 4}, {10, 6}, {5, 5}, {5, 5}}};
constexpr int kVoltageRow = 7;

// The registers that are the x1 of a DAC with m and c behind it.
constexpr std::array<bool, 128> kDacX1 = [] {
    std::array<bool, 128> t{};
    t[kFinX1] = t[kCllX1] = t[kClhX1] = true;
    for (ComparatorDacs r : kComparatorDacs)
        t[r.cpl] = t[r.cph] = true;
    return t;
}();

// The registers whose write can change what the model gives; an m or c waits for its x1.
constexpr std::array<bool, 128> kModelInputs = [] {
    std::array<bool, 128> t = kDacX1;
    t[kSystem] = t[kDps1] = t[kAlarmSetup] = t[kDiag] = t[kOffset] = true;
    return t;
}();

// The nodes that MEASOUT can show, and the DIAG SELECT code's node for DIAG A and DIAG B.
// Nodes this board does not model read 0 V.
enum class Node : uint8_t { Zero, Output, ISense, ForceDac, CllDac, ClhDac, CplDac, CphDac };
using N = Node;
constexpr std::array<std::array<Node, 2>, 16> kDiagNodes{{
    {N::Zero, N::Zero},
    {N::Zero, N::Zero},
    {N::Zero, N::Zero},
    {N::Zero, N::Zero},
    {N::Zero, N::Zero},
    {N::Zero, N::Zero},       // 5 EXTFORCE1A, EXTFORCE2A
    {N::ForceDac, N::Output}, // 6 FINP, FINM: the force amplifier's set point and feedback
    {N::Zero, N::Zero},       // 7 OUT 2.5mA, OUT 25mA
    {N::Zero, N::Zero},       // 8 VPTAT
    {N::Zero, N::Zero},       // 9 VTSD
    {N::ISense, N::Zero},     // 10 MEAS I, VMidCode (the mid code is 0 V)
    {N::Output, N::Zero},     // 11 MEAS V, VMinCode
    {N::ForceDac, N::Zero},   // 12 FORCE DAC, VOS DAC
    {N::CllDac, N::ClhDac},   // 13
    {N::CplDac, N::CphDac},   // 14, the present range's row
    {N::Zero, N::Zero},       // 15 OSD DAC, DGS DAC
}};

} // namespace

ChipModel::ChipModel(const Registers& registers) : regs_(registers) {
    powerOn();
}

void ChipModel::powerOn() {
    for (size_t a = 0; a < kDacX1.size(); ++a) {
        if (!kDacX1[a]) continue;
        m_[a] = regs_[a + 1];
        c_[a] = regs_[a + 2];
    }
    latched_ = 0;
    evaluate();
}

void ChipModel::written(int address) {
    const auto a = static_cast<size_t>(address);
    if (a >= kModelInputs.size() || !kModelInputs[a]) return;
    if (kDacX1[a]) {
        m_[a] = regs_[a + 1];
        c_[a] = regs_[a + 2];
    }
    evaluate();
}

void ChipModel::setPins(bool hwInhibit, bool clampPin) {
    hwInhibit_ = hwInhibit;
    clampPin_ = clampPin;
    evaluate();
}

// x2 = x1 (m + 1) / 2^16 + c - 2^15, a whole code the DAC can give; the product is rounded
// half to even in integers.
int32_t ChipModel::dacCode(int x1Address) const {
    const auto a = static_cast<size_t>(x1Address);
    const int64_t product = int64_t{regs_[a]} * (m_[a] + 1);
    int64_t x2 = product >> 16;
    const int64_t rest = product & 0xFFFF;
    if (rest > 0x8000 || (rest == 0x8000 && (x2 & 1))) ++x2;
    x2 += c_[a] - 32768;
    return static_cast<int32_t>(std::clamp<int64_t>(x2, 0, 65535));
}

double ChipModel::offsetVolts() const {
    return regs_[kOffset] * kSpan / kCodes;
}

// A code of the force DAC, or a voltage level, in volts at the output.
double ChipModel::forceVolts(int32_t code) const {
    return code * kSpan / kCodes - offsetVolts();
}

// A clamp or current comparator code as the sense voltage it stands for (current x sense
// resistor x current-sense gain); mid-scale is 0.
double ChipModel::senseVolts(int32_t code) const {
    return (code - kMidCode) * kSpan / kCodes;
}

void ChipModel::evaluate() {
    const uint16_t sys = regs_[kSystem];
    const uint16_t dps1 = regs_[kDps1];
    const Range range = kRanges[(dps1 >> 11) & 7];
    const double gain = (sys & kSenseGain10) ? 10.0 : 20.0;
    const bool forcing =
        (sys & kPoweredUp) && (dps1 & kChannelEnabled) && !hwInhibit_ && !(sys & kFinToGround);

    // The load takes V / R; the range's full scale and the clamps bound that current, and
    // the output falls back to what the bounded current gives across the load.
    double amps = forcing ? forceVolts(dacCode(kFinX1)) / kLoadOhms : 0.0;
    double high = kFullScaleSense / range.ohms;
    double low = -high;
    bool highIsClamp = false, lowIsClamp = false;
    if (forcing && (dps1 & kClampBit) && clampPin_) {
        const double clh = senseVolts(dacCode(kClhX1)) / (range.ohms * gain);
        const double cll = senseVolts(dacCode(kCllX1)) / (range.ohms * gain);
        if (clh < high) {
            high = clh;
            highIsClamp = true;
        }
        if (cll > low) {
            low = cll;
            lowIsClamp = true;
        }
    }
    clamping_ = false;
    if (amps > high) {
        amps = high;
        clamping_ = highIsClamp;
    } else if (amps < low) {
        amps = low;
        clamping_ = lowIsClamp;
    }
    amps_ = amps;
    volts_ = amps * kLoadOhms;

    // Compare current: the present range's levels as sense voltages; compare voltage: the
    // voltage row's levels by the force law. The window drives CPOH only, high inside.
    cpol_ = cpoh_ = false;
    const int function = (dps1 >> 9) & 3;
    if (function >= 2) {
        const bool current = function == 2;
        const ComparatorDacs row = kComparatorDacs[current ? range.row : kVoltageRow];
        const auto level = [&](int x1) {
            return current ? senseVolts(dacCode(x1)) / (range.ohms * gain)
                           : forceVolts(dacCode(x1));
        };
        const double value = current ? amps_ : volts_;
        const double lo = level(row.cpl), hi = level(row.cph);
        if (sys & kWindow) {
            cpoh_ = value >= lo && value <= hi;
        } else {
            cpol_ = value < lo;
            cpoh_ = value > hi;
        }
    }

    // An alarm latches while its latch bit is set and its disable bit clear.
    const uint16_t setup = regs_[kAlarmSetup];
    active_ = clamping_ ? kClampAlarm : 0;
    latched_ |= active_ & (setup >> 1) & ~setup & kAlarmLiveBits;

    const int source = (dps1 >> 5) & 7;
    measout_ = 0.0;
    if ((dps1 & kMeasoutEnabled) && source != 0)
        measout_ = (measoutNode(source, range.ohms, gain, range.row) + offsetVolts()) *
                   ((sys & kMeasoutFifth) ? 0.2 : 1.0);
}

double ChipModel::measoutNode(int source, double ohms, double gain, int row) const {
    Node node = Node::Zero;
    switch (source) {
    case 1: node = Node::ISense; break;
    case 2: // V sense
    case 3: // K sense
        node = Node::Output;
        break;
    case 4: return kTSenseVolts;
    case 6:
    case 7: node = kDiagNodes[regs_[kDiag] >> 12][source == 7 ? 1 : 0]; break;
    default: break; // DUTGND sense: the board's ground
    }
    switch (node) {
    case Node::Zero: return 0.0;
    case Node::Output: return volts_;
    case Node::ISense: return amps_ * ohms * gain;
    case Node::ForceDac: return forceVolts(dacCode(kFinX1));
    case Node::CllDac: return senseVolts(dacCode(kCllX1));
    case Node::ClhDac: return senseVolts(dacCode(kClhX1));
    case Node::CplDac: return senseVolts(dacCode(kComparatorDacs[row].cpl));
    case Node::CphDac: return senseVolts(dacCode(kComparatorDacs[row].cph));
    }
    return 0.0;
}

uint16_t ChipModel::alarmStatus() const {
    // Active low. A disabled alarm shows healthy in both bits; without its latch bit the
    // latched form follows the live one.
    const uint16_t setup = regs_[kAlarmSetup];
    uint16_t status = 0;
    for (int bit = 6; bit <= 14; bit += 2) {
        const uint16_t live = static_cast<uint16_t>(1u << bit);
        const uint16_t latch = static_cast<uint16_t>(live << 1);
        if (setup & live) {
            status |= live | latch;
            continue;
        }
        if (!(active_ & live)) status |= live;
        const bool held = (setup & latch) ? (latched_ & live) : (active_ & live);
        if (!held) status |= latch;
    }
    if (cpol_) status |= kCpol;
    if (cpoh_) status |= kCpoh;
    return status;
}

void ChipModel::clearLatchedAlarms() {
    latched_ &= active_;
}

uint16_t ChipModel::convert() {
    noise_ ^= noise_ << 13;
    noise_ ^= noise_ >> 17;
    noise_ ^= noise_ << 5;
    const double code =
        std::nearbyint(measout_ / kAdcFullScale * kCodes) + static_cast<int>(noise_ % 3) - 1;
    return static_cast<uint16_t>(std::clamp(code, 0.0, kCodes - 1));
}

} // namespace qz
