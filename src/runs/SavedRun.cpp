#include "runs/SavedRun.h"

#include "levels/NumberText.h"
#include "registers/HexText.h"
#include "runs/Sweep.h"
#include "runs/TimeRun.h"

namespace qz {

namespace {

std::string seconds(float s) {
    return defaultText(s) + " s";
}

// What both measurement runs record, in the order a reader looks for it.
std::vector<Setting> measureSettings(const RunStamp& stamp, const MeasureChoices& lists,
                                     const Scaling& scaling, int16_t measMode, float sampleDelay,
                                     float cycleDelay) {
    return {
        {"date and time", stampText(stamp.when)},
        {"board", boardKind(stamp.board)},
        {"VREF", defaultText(scaling.VREF) + " V"},
        {"OFFSET code", NumberToHex(scaling.offsetCode, 4)},
        {"current range", lists.range + " (" + defaultText(scaling.rsense) + " ohms)"},
        {"measure mode", kMeasureChoices[measMode == 1 ? 1 : 0].item},
        {"cycle delay", lists.cycle + " (" + seconds(cycleDelay) + ")"},
        {"sample delay", lists.sample + " (" + seconds(sampleDelay) + ")"},
    };
}

} // namespace

std::string stampText(std::time_t when) {
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &when);
#else
    localtime_r(&when, &local);
#endif
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

const char* boardKind(LinkState state) {
    switch (state) {
    case LinkState::Virtual: return "virtual board";
    case LinkState::Connected: return "evaluation board on USB";
    case LinkState::NoBoard: return "no board";
    case LinkState::Lost: return "evaluation board on USB, lost during the run";
    }
    return "";
}

std::vector<std::string> headerLines(std::string_view title, const std::vector<Setting>& settings) {
    std::vector<std::string> lines{"# " + std::string(title)};
    for (const Setting& s : settings)
        lines.push_back("# " + s.name + ": " + s.value);
    return lines;
}

std::string savedText(const std::vector<std::string>& header, const std::vector<std::string>& lines) {
    return ListTextBlock(header) + ListTextBlock(lines);
}

std::vector<Setting> sweepSettings(const RunStamp& stamp, const MeasureChoices& lists,
                                   const SweepRequest& r, const SweepPlan& p) {
    std::vector<Setting> s =
        measureSettings(stamp, lists, p.scaling, p.measMode, p.sampleDelay, p.cycleDelay);
    s.push_back({"start", r.start + " V (code " + NumberToHex(p.startCode, 4) + ")"});
    s.push_back({"end", r.end + " V (code " + NumberToHex(p.endCode, 4) + ")"});
    s.push_back({"step", r.step + " mV (" + std::to_string(p.stepCode) + " codes)"});
    return s;
}

std::vector<Setting> timeSettings(const RunStamp& stamp, const MeasureChoices& lists,
                                  const TimeRequest& r, const TimePlan& p) {
    std::vector<Setting> s =
        measureSettings(stamp, lists, p.scaling, p.measMode, p.sampleDelay, p.cycleDelay);
    s.push_back({"force", r.force + " V (code " + NumberToHex(p.code, 4) + ")"});
    return s;
}

std::vector<Setting> tempSettings(const RunStamp& stamp, const std::string& delay, float tempDelay) {
    return {
        {"date and time", stampText(stamp.when)},
        {"board", boardKind(stamp.board)},
        {"delay between readings", delay + " (" + seconds(tempDelay) + ")"},
    };
}

} // namespace qz
