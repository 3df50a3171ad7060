#pragma once
// A run's progress as the status bar shows it: the point reached, the time gone since the
// start and the time still to go at the pace of the points so far.

#include <cstdint>
#include <string>

namespace qz {

// Whole seconds as "m:ss", or "h:mm:ss" from an hour on; below zero counts as zero.
std::string durationText(int64_t seconds);

// Seconds still to go when done of points took elapsed seconds; below zero while no
// point is done, since there is no pace yet.
double remainingSeconds(int32_t done, int32_t points, double elapsed);

// "point 3 of 11, 0:02 elapsed, 0:06 left": the elapsed time in whole seconds gone, the
// time left rounded up, so that "0:00 left" means the run is at its end. Before the
// first point the time left is not known and is not shown.
std::string progressText(int32_t done, int32_t points, double elapsed);

} // namespace qz
