#pragma once
// The scales a run gives its strip chart, and the point under the chart's cursor.

#include "runs/Measure.h"

#include <cstddef>
#include <optional>

namespace qz {

struct ChartBounds {
    double scaleTop = 0.0, scaleBottom = 0.0; // the chart's scale
    double axisMin = 0.0, axisMax = 0.0;      // the trace's value axis
};

// The sweep chart: 10% beyond the results. The side hangs on the sign of min alone, so
// with all-negative results the top (max x 1.1) lies below max; the trace's lower limit
// is min x 1.1 whatever the sign.
ChartBounds sweepChartBounds(ValueRange r);
// The time chart: 0.1% beyond the results, by the sign of min alone.
ChartBounds timeChartBounds(ValueRange r);

// The array index of the point under a cursor at axis position x: round(x - 1), points
// standing at 1, 2, 3, ...; nothing for a position outside an array of size entries.
std::optional<size_t> cursorIndex(double x, size_t size);

} // namespace qz
