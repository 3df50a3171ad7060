#pragma once
// The temperature sensor's readings and the logged run of the diagnostics panel: up to
// 1001 readings of the local and external channels, a chart point and a list row each.

#include "runs/Measure.h"

#include <array>
#include <string>
#include <vector>

namespace qz {

// The sensor's registers by pointer.
namespace sensor {
inline constexpr int32_t kLocal = 0;     // whole degrees
inline constexpr int32_t kExternal = 1;  // whole degrees
inline constexpr int32_t kStatus = 2;    // a reading may start once this is below 64
inline constexpr int32_t kFraction = 16; // the external channel's quarters, top two bits
inline constexpr int32_t kReady = 64;
// What the panel's load writes, data first and pointer second, in this order.
struct Setting {
    int32_t data, pointer;
};
inline constexpr std::array<Setting, 4> kSetup{{{0, 9}, {130, 13}, {10, 10}, {130, 25}}};
inline constexpr Setting kAfterRouting{0, 12};
} // namespace sensor

// The external channel in degrees: the whole byte and the quarters of the fraction byte's
// top two bits (0x40 is 0.25, 0xC0 is 0.75); any other bits play no part.
double externalDegrees(int32_t whole, int32_t fraction);

// The items of cboDelay in list order, and the seconds each gives tempDelay.
struct TempDelay {
    const char* item;
    float seconds;
};
inline constexpr std::array<TempDelay, 8> kTempDelays{{{"100ms", 0.1f},
                                                       {"No Delay", 0.0001f},
                                                       {"200ms", 0.2f},
                                                       {"300ms", 0.3f},
                                                       {"400ms", 0.4f},
                                                       {"500ms", 0.5f},
                                                       {"1000ms", 1.0f},
                                                       {"2000ms", 2.0f}}};

inline constexpr int kTempReadings = 1001; // indexes 0 to 1000

struct TempArrays {
    std::vector<double> local, externalWhole, external, time; // 1001 each, all 0 at start
};

// What the panel shows of each reading as it comes.
struct TempShow {
    std::function<void(int32_t local)> local;          // txtLocal
    std::function<void(double external)> point;        // the chart's new point
    std::function<void(int32_t i, double external)> reading; // txtcount and txtExt
};

// The run: the heading row, then readings until 1001 are taken or the event pass says
// stop (a stop already asked gives the heading row alone). The session's tempDelay is read
// at every reading, so a delay chosen in an event pass counts from then on: it is added to
// the time column before the pass and waited after it. Returns the readings taken.
int32_t runTemperatures(const RunContext& ctx, bool stopped, TempArrays& a, const TempShow& show);

} // namespace qz
