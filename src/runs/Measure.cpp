#include "runs/Measure.h"

#include "board/Wire.h"
#include "levels/NumberText.h"
#include "levels/Numbers.h"
#include "levels/Reference.h"
#include "levels/TransferLaw.h"
#include "registers/HexText.h"
#include "registers/RegisterMap.h"
#include "registers/Session.h"

namespace qz {

namespace {
constexpr double k2p16 = 65536.0;
constexpr double kAdcReference = 5.0;
// MEASOUT stands at gain 0.2 during a run.
constexpr double kMeasoutInverse = 5.0;
constexpr int32_t kGainBit = 0x2000;     // SYSreg bit 13: MEASOUT gain 0.2
constexpr int32_t kSenseGain10 = 0x1000; // SYSreg bit 12: current-sense gain 10
} // namespace

const SenseRange& senseRange(int IRangeIndex) {
    return kSenseRanges[IRangeIndex >= 0 && IRangeIndex < kSenseRangeCount ? IRangeIndex : 0];
}

int32_t rangeWord(int32_t word, int32_t keep, int index) {
    word &= keep;
    if (index >= 0 && index < kSenseRangeCount) word |= kSenseRanges[index].bits;
    return word;
}

void cboSweepIClick(General& g, int index) {
    g.sweepPMUreg = rangeWord(g.sweepPMUreg, kRangeKeep, index);
    if (index >= 0 && index < kSenseRangeCount) g.IRangeIndex = static_cast<int16_t>(index);
}

void cboMeasureVIClick(General& g, int index) {
    g.sweepPMUreg &= kMeasureKeep;
    if (index < 0 || index > 1) return;
    g.sweepPMUreg |= kMeasureChoices[index].bits;
    g.measMode = kMeasureChoices[index].mode;
}

void cboDelaClick(General& g, int delaIndex) {
    if (delaIndex < 0 || delaIndex >= static_cast<int>(std::size(kCycleDelays))) return;
    g.tempDelay = g.cycleDelay = kCycleDelays[delaIndex].seconds;
}

void cboMDelayClick(General& g, int delaIndex, int index) {
    cboDelaClick(g, delaIndex);
    if (index < 0 || index >= static_cast<int>(std::size(kSampleDelayItems))) return;
    g.sampleDelay = index == 0 ? 0.0f : static_cast<float>(g.tempDelay * (index / 10.0));
    g.tempDelay = g.tempDelay - g.sampleDelay;
}

double Scaling::offsetVolts() const {
    return static_cast<double>(VREF) * offsetCode * 5.125 / k2p16;
}

double Scaling::ADCVolts(double c) {
    return c * (kAdcReference / k2p16);
}

double Scaling::MeasuredVolts(double c) const {
    return kMeasoutInverse * ADCVolts(c) - offsetVolts();
}

double Scaling::MeasuredAmps(double c) const {
    const float ohms = measGain * rsense; // the denominator in single precision
    return (kMeasoutInverse * ADCVolts(c) - offsetVolts()) / static_cast<double>(ohms);
}

double Scaling::VoltsForCode(double x) const {
    return 5.125 * x * static_cast<double>(VREF) / k2p16 - offsetVolts();
}

std::optional<int32_t> Scaling::CodeForVolts(double v) const {
    return codeForVolts(v, VREF, offsetCode);
}

int32_t ReadADCCode(Session& s) {
    s.usb.SendRequest(wire::kAdcConvert);
    return s.usb.ReadADCWord();
}

Prepared PrepareMeasure(Session& s) {
    General& g = s.general;
    g.SYSreg |= kGainBit;
    s.SPIout(g.SYSreg);
    Prepared p;
    p.offsetCode = s.readWord(readCommandOf(reg::kOffset)) - writeWord(reg::kOffset, 0);
    const int32_t sys = s.readWord(readCommandOf(reg::kSystemControl));
    p.measGain = (sys & kSenseGain10) ? 10.0f : 20.0f;
    return p;
}

DecimalCheck PickVREF(const ReferenceChoice& choice) {
    if (choice.option == 0 || choice.option == 1) {
        DecimalCheck r;
        r.ok = true;
        r.value = kFixedReferences[choice.option];
        return r;
    }
    return checkReference(choice.otherText);
}

std::string voltageOutsideText(float VREF, int32_t OFFSET) {
    const EntryVoltageRange r = entryVoltageRange(VREF, OFFSET);
    return kVoltageOutside + r.lowestText + " and " + r.highestText;
}

DecimalCheck checkForceEntry(std::string_view text, float VREF, int32_t OFFSET) {
    DecimalCheck r;
    const std::optional<int32_t> whole = parseWhole(text);
    const EntryVoltageRange range = entryVoltageRange(VREF, OFFSET);
    if (!whole) {
        r.message = kNotValidNumber;
    } else if (*whole > range.highestShown || *whole < range.lowestShown) {
        r.message = voltageOutsideText(VREF, OFFSET);
    } else {
        r.ok = true;
        r.value = static_cast<float>(*whole);
        r.text = std::string(text);
    }
    return r;
}

std::string stepTooSmallText(float VREF) {
    const double codeMillivolts = spanOf(VREF) * 1000.0 / k2p16;
    return "Voltage step too small: it gives no DAC code. Please reenter a voltage step of at "
           "least one code, " +
           formatNumber(codeMillivolts, "0.000") + "mV at this reference.";
}

DecimalCheck checkStepEntry(std::string_view text) {
    DecimalCheck r;
    const std::optional<int32_t> whole = parseWhole(text);
    if (!whole) {
        r.message = kNotValidNumber;
    } else if (*whole >= 1001 || *whole < 0) {
        r.message = kStepOutside;
    } else {
        r.ok = true;
        r.value = static_cast<float>(*whole);
        r.text = std::string(text);
    }
    return r;
}

FieldCheck checkCodeEntry(std::string_view text) {
    FieldCheck r;
    const std::optional<int32_t> v = parseHex(text);
    if (!v) {
        r.message = kNotValidNumber;
    } else if (*v < 0 || *v > 0xFFFF) {
        r.message = kCodeTooLarge;
    } else {
        r.ok = true;
        r.value = *v;
        r.text = upperCase(text);
        PadHex4(r.text);
    }
    return r;
}

ValueRange rangeOf(std::span<const double> d) {
    ValueRange r;
    if (d.empty()) return r;
    r.min = r.max = static_cast<float>(d[0]);
    for (const double x : d) {
        const float v = static_cast<float>(x);
        if (v > r.max) r.max = v;
        if (v < r.min) r.min = v;
    }
    return r;
}

std::string joinColumns(std::initializer_list<std::string_view> columns) {
    std::string line;
    bool first = true;
    for (std::string_view c : columns) {
        if (!first) line += '\t';
        first = false;
        line += c;
    }
    return line;
}

} // namespace qz
