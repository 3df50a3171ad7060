#pragma once
// What the two measurement runs share: one ADC reading of MEASOUT, the scaling of a code
// to volts and amperes, the working values gathered before a run, the DPS1 word that the
// measurement panel's lists compose, the delays of a measurement cycle, the checks of its
// entries, and the way a run hands out its progress and its list lines.

#include "levels/EntryField.h"
#include "registers/General.h"
#include "runs/Clock.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qz {

class Session;

// The ranges of cboSweepI by list index: the range field of the DPS1 word and the sense
// resistor. The external ranges have fixed resistors here, unlike on the front panel.
struct SenseRange {
    const char* item;
    int32_t bits;
    float rsense; // ohms
};
inline constexpr SenseRange kSenseRanges[7] = {{"\u00B15uA", 0x0000, 100000.0f},
                                               {"\u00B125uA", 0x0800, 20000.0f},
                                               {"\u00B1250uA", 0x1000, 2000.0f},
                                               {"\u00B12.5mA", 0x1800, 200.0f},
                                               {"\u00B125mA", 0x2000, 20.0f},
                                               {"\u00B1ext current range 2", 0x2800, 10.0f},
                                               {"\u00B1ext current range 1", 0x3000, 5.0f}};
inline constexpr int kSenseRangeCount = 7;
// The sense range of a run by IRangeIndex as cboSweepI leaves it. An index outside the
// list takes the first range, as cmdPlot's own "IRangeIndex = 0" does before the list's
// click puts back its choice.
const SenseRange& senseRange(int IRangeIndex);

// What each list leaves of the word before it puts in its own field.
inline constexpr int32_t kRangeKeep = 0x287FF;   // cboSweepI, cboCurrent1, cboCurrent2
inline constexpr int32_t kMeasureKeep = 0x2FF10; // cboMeasureVI
inline constexpr int32_t kFinRegClear = 0x380F;  // cboFINREG clears these bits

// The word with the range field of list index (no item chosen, -1: the mask alone).
int32_t rangeWord(int32_t word, int32_t keep, int index);

// What MEASOUT shows, by the index of cboMeasureVI.
struct MeasureChoice {
    const char* item;
    int32_t bits;
    int16_t mode; // measMode: 0 volts, 1 amperes
};
inline constexpr MeasureChoice kMeasureChoices[2] = {{"Measure Voltage", 0x0040, 0},
                                                     {"Measure Current", 0x0020, 1}};

// The click logic of cboSweepI and cboMeasureVI on sweepPMUreg, IRangeIndex and measMode.
void cboSweepIClick(General& g, int index);
void cboMeasureVIClick(General& g, int index);

// cboDela: the cycle T, which tempDelay and cycleDelay both take.
struct CycleDelay {
    const char* item;
    float seconds;
};
inline constexpr CycleDelay kCycleDelays[6] = {{"No Delay", 0.0001f}, {"100ms", 0.1f},
                                               {"200ms", 0.2f},       {"300ms", 0.3f},
                                               {"400ms", 0.4f},       {"500ms", 0.5f}};
// cboMDelay: item k takes k tenths of the cycle for the sample delay.
inline constexpr const char* kSampleDelayItems[10] = {"No Delay", ".1 X", ".2 X", ".3 X", ".4 X",
                                                      ".5 X",     ".6 X", ".7 X", ".8 X", ".9 X"};
void cboDelaClick(General& g, int delaIndex);
// Runs cboDela's click first, so the sample delay is a fraction of the cycle, not added
// to it.
void cboMDelayClick(General& g, int delaIndex, int index);

// The scaling of a run. The ADC has a fixed 5 V reference whatever VREF is, and MEASOUT
// has the gain 0.2 that PrepareMeasure sets, hence the factor 5.
struct Scaling {
    float VREF = 5.0f;
    int32_t offsetCode = 0;
    float measGain = 20.0f;
    float rsense = 1.0f;

    double offsetVolts() const;
    static double ADCVolts(double c);
    double MeasuredVolts(double c) const;
    double MeasuredAmps(double c) const;
    double VoltsForCode(double x) const;
    // Nothing for a code beyond 32 bits or an unusable VREF.
    std::optional<int32_t> CodeForVolts(double v) const;
};

// One conversion of the ADC and its code, 0..65535.
int32_t ReadADCCode(Session& s);

// The head of both runs: MEASOUT gain 0.2 is set and sent (and stays), the OFFSET code and
// the current-sense gain are read from the chip.
struct Prepared {
    int32_t offsetCode = 0;
    float measGain = 20.0f;
};
Prepared PrepareMeasure(Session& s);

// The reference option chosen when a run starts, and the "Other" box's text.
struct ReferenceChoice {
    int option = 0;
    std::string otherText;
};
// 5, 2.5, or the "Other" box as its Enter check takes it (or that check's refusal).
DecimalCheck PickVREF(const ReferenceChoice& choice);

// What both runs take from the panel besides their own fields: the reference, the head's
// readings, the range's sense resistor, the measure mode and the delays.
struct RunSettings {
    ReferenceChoice reference;
    Prepared prepared;
    float rsense = 1.0f;
    int16_t measMode = 0;
    float sampleDelay = 0.0f, tempDelay = 0.0f, cycleDelay = 0.0f;
};

// The boxes a run or an entry may refuse.
enum class Box { txtstartV, txtendV, txtstep, txtVREF, txtForceV };
struct Refusal {
    Box box;
    std::string text;
};

inline constexpr const char* kStartAboveEnd = "Start Voltage must be less than End Voltage.";
inline constexpr const char* kStepOutside =
    "Number outside range. Please reenter voltage step between 0 and 1000mV.";
// A step that rounds to no DAC code at all: the text names one code's millivolts at VREF.
std::string stepTooSmallText(float VREF);
// Followed at once by Min, " and ", Max.
inline constexpr const char* kVoltageOutside =
    "Number outside possible voltage range, please refer to transfer function and offset dac "
    "setting and review output voltage request. Min and Max for your reference/offset DAC "
    "settings are";
std::string voltageOutsideText(float VREF, int32_t OFFSET);

// Enter in txtstartV, txtendV or txtForceV: the text rounded to whole volts must lie within
// the voltages the OFFSET code allows, as their "0.00" texts give them. It only checks.
DecimalCheck checkForceEntry(std::string_view text, float VREF, int32_t OFFSET);
// Enter in txtstep: whole millivolts from 0 to 1000.
DecimalCheck checkStepEntry(std::string_view text);
// Enter in the code boxes of the stimuli (txtFINSET1, txtFINSET2, txtdin): a 16-bit code in
// hexadecimal, shown as four upper-case digits. The buttons read the boxes by this too.
FieldCheck checkCodeEntry(std::string_view text);

// The lowest and highest of a run's results, each taken as a single float.
struct ValueRange {
    float min = 0.0f;
    float max = 0.0f;
};
ValueRange rangeOf(std::span<const double> d);

// The result arrays of the panel. They stay after a run for the chart cursors; the time
// run replaces sweepADCVolts and sweepMeasVolts with its own 101 entries.
struct MeasureArrays {
    std::vector<double> sweepCodes, sweepVolts, sweepADCVolts, sweepMeasVolts, sweepMeasAmps,
        sweepDeviation;
    std::vector<double> timeMeasAmps, sampleTimes;
};

// What a run tells its panel at each point, before the panel's events run once.
struct RunProgress {
    int32_t point = 0;   // from 0
    int32_t points = 0;  // of the whole run
    int32_t adcCode = 0; // the last reading (a mean rounded to a whole code)
    int32_t word = 0;    // the word composed last
};

// What a run is given: the session, its clock, one pass of the panel's events per point
// (false asks the run to stop after that point), and its list.
struct RunContext {
    Session& session;
    Clock& clock;
    std::function<bool(const RunProgress&)> eventPass;
    std::function<void(std::string)> addLine;
};

// The columns of a list line, tab separated.
std::string joinColumns(std::initializer_list<std::string_view> columns);

} // namespace qz
