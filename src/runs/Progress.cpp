#include "runs/Progress.h"

#include <cmath>
#include <cstdio>

namespace qz {

std::string durationText(int64_t seconds) {
    if (seconds < 0) seconds = 0;
    const int64_t h = seconds / 3600, m = seconds / 60 % 60, s = seconds % 60;
    char text[32];
    if (h > 0)
        std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", static_cast<long long>(h),
                      static_cast<long long>(m), static_cast<long long>(s));
    else
        std::snprintf(text, sizeof text, "%lld:%02lld", static_cast<long long>(m),
                      static_cast<long long>(s));
    return text;
}

double remainingSeconds(int32_t done, int32_t points, double elapsed) {
    if (done <= 0) return -1.0;
    if (done >= points) return 0.0;
    return elapsed / done * (points - done);
}

std::string progressText(int32_t done, int32_t points, double elapsed) {
    std::string text = "point " + std::to_string(done) + " of " + std::to_string(points) + ", " +
                       durationText(static_cast<int64_t>(std::floor(elapsed))) + " elapsed";
    const double left = remainingSeconds(done, points, elapsed);
    // A hair below a whole second is that second: the pace is a quotient of doubles.
    if (left >= 0.0)
        text += ", " + durationText(static_cast<int64_t>(std::ceil(left - 1e-9))) + " left";
    return text;
}

} // namespace qz
