#pragma once
// The voltage sweep: the FIN DAC steps from a start to an end voltage and MEASOUT is read
// at each step, into the result arrays and the list; then the deviation of the readings
// from the straight line through the first and the last one.

#include "runs/Measure.h"

#include <optional>
#include <string>

namespace qz {

// What the panel gives a sweep: its fields as typed and the working values of the run.
struct SweepRequest : RunSettings {
    std::string start, end, step; // txtstartV and txtendV in volts, txtstep in millivolts
};

struct SweepPlan {
    Scaling scaling;
    int16_t measMode = 0;
    int32_t startCode = 0, endCode = 0, stepCode = 1;
    int32_t n = 0; // the last index: up to 65535, so a run may take every code
    float sampleDelay = 0.0f, tempDelay = 0.0f, cycleDelay = 0.0f;
};

// Checks the fields before the first point, in this order: start and end are numbers,
// start is below end, step is a number, the reference (VREF is then set in g), the codes
// of start and end lie in 0..65535, the step is not negative and gives at least one code.
// The Enter checks of the boxes are not repeated (a step of 2000 mV runs). A refusal names
// its box; nothing has been sent by then.
std::optional<Refusal> planSweep(General& g, const SweepRequest& request, SweepPlan& plan);

struct SweepOutcome {
    int32_t points = 0; // the points taken: n + 1 unless stopped
    bool stopped = false;
    int32_t word = 0;    // the word composed last, for Text1
    int32_t adcCode = 0; // the last reading, for lblREADSPI
    ValueRange range;    // of the measured volts or amperes
};

// The header line and one line per point go to the list; the arrays are sized once. A
// quotient (endCode - startCode) / stepCode whose fraction rounds up gives one last point
// at endCode, read once in either mode; one that rounds down ends short of endCode.
SweepOutcome runSweep(const RunContext& ctx, const SweepPlan& plan, MeasureArrays& a);

// The line of the first reading, then the table of each code and its reading's distance
// from the line through the first and last reading, in codes. Without a slope (first and
// last reading equal, or a single point) the table is left out.
void FitDeviation(MeasureArrays& a, int32_t startCode, int32_t endCode,
                  const std::function<void(std::string)>& addLine);

} // namespace qz
