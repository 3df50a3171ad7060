#include "runs/ChartRules.h"

#include "levels/Numbers.h"

namespace qz {

ChartBounds sweepChartBounds(ValueRange r) {
    const double min = r.min, max = r.max;
    ChartBounds b;
    b.scaleTop = max * 1.1;
    b.scaleBottom = min > 0 ? min * 0.9 : min * 1.1;
    b.axisMax = max * 1.1;
    b.axisMin = min * 1.1;
    return b;
}

ChartBounds timeChartBounds(ValueRange r) {
    const double min = r.min, max = r.max;
    const bool positive = min > 0;
    ChartBounds b;
    b.scaleTop = b.axisMax = max * (positive ? 1.001 : 0.999);
    b.scaleBottom = b.axisMin = min * (positive ? 0.999 : 1.001);
    return b;
}

std::optional<size_t> cursorIndex(double x, size_t size) {
    const double k = roundHalfEven(x - 1.0);
    if (!(k >= 0.0 && k < static_cast<double>(size))) return std::nullopt;
    return static_cast<size_t>(k);
}

} // namespace qz
