#pragma once
// What a saved result file holds: lines beginning with "#" that name the run and the
// settings that produced it (when, on what board, the reference, the OFFSET code, the
// range, the measure mode, the delays), then the run's list exactly as the clipboard
// takes it.

#include "board/BridgeLibrary.h"

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

namespace qz {

struct SweepRequest;
struct SweepPlan;
struct TimeRequest;
struct TimePlan;

struct Setting {
    std::string name, value;
};

// When a run started and what it ran on.
struct RunStamp {
    std::time_t when = 0;
    LinkState board = LinkState::NoBoard;
};
// The local date and time, "2024-05-01 14:03:22".
std::string stampText(std::time_t when);
const char* boardKind(LinkState state);

// "# " and the title, then "# name: value" for each setting.
std::vector<std::string> headerLines(std::string_view title, const std::vector<Setting>& settings);
// The header lines, then the list's lines; every line ends with CR LF, as on the clipboard.
std::string savedText(const std::vector<std::string>& header, const std::vector<std::string>& lines);

// The lists' texts, as the measurement panel showed them at the start of a run; the
// request carries the figures they gave.
struct MeasureChoices {
    std::string range;  // cboSweepI
    std::string cycle;  // cboDela
    std::string sample; // cboMDelay
};
std::vector<Setting> sweepSettings(const RunStamp& stamp, const MeasureChoices& lists,
                                   const SweepRequest& request, const SweepPlan& plan);
std::vector<Setting> timeSettings(const RunStamp& stamp, const MeasureChoices& lists,
                                  const TimeRequest& request, const TimePlan& plan);
// The temperature run: cboDelay's text and the delay it ran with.
std::vector<Setting> tempSettings(const RunStamp& stamp, const std::string& delay, float tempDelay);

} // namespace qz
