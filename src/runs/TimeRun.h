#pragma once
// Measurement versus time: one voltage forced, then 101 readings of MEASOUT, one per
// measurement cycle, into the result arrays and the list, followed by the range of the
// results and of the ADC voltages.

#include "runs/Measure.h"

#include <optional>
#include <string>

namespace qz {

inline constexpr int kTimeSamples = 101;

struct TimeRequest : RunSettings {
    std::string force; // txtForceV, volts
};

struct TimePlan {
    Scaling scaling;
    int16_t measMode = 0;
    int32_t code = 0; // of the force voltage, for txtForceC and the one word of the run
    float sampleDelay = 0.0f, tempDelay = 0.0f, cycleDelay = 0.0f;
};

// Checks txtForceV as a sweep checks its start (a number whose code lies in 0..65535)
// after the reference, which sets VREF in g.
std::optional<Refusal> planTimeRun(General& g, const TimeRequest& request, TimePlan& plan);

struct TimeOutcome {
    int32_t points = 0; // 101 unless stopped
    bool stopped = false;
    int32_t adcCode = 0; // the last reading
    ValueRange range;    // of the measured volts or amperes
    ValueRange adcRange; // of the ADC voltages
};

// The FIN word once, the header, a line per sample, then the lines of the measured range,
// "mincode"/"maxcode", and the range of the ADC voltages: 105 lines in all.
TimeOutcome runTime(const RunContext& ctx, const TimePlan& plan, MeasureArrays& a);

} // namespace qz
