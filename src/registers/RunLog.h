#pragma once
// What the program knows of its runs, whichever panel or script started them: whether
// one is in progress, and the points of the last sweep and the last time run that ended
// (finished or stopped), for the remote control's FETCh.

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace qz {

enum class RunKind { Sweep, Time };

struct RunRecord {
    RunKind kind = RunKind::Sweep;
    std::vector<double> forced;   // the sweep's forced volts; the time run's sample times, s
    std::vector<double> readings; // volts, or amperes when `amps`
    bool amps = false;
};

class RunLog {
  public:
    // A run's start and end, as its panel's run pass tells them.
    void began();
    void ended();
    bool inProgress() const { return depth_ > 0; }
    // The points of a run that took any, before its end.
    void record(RunRecord r);
    // The last run of the kind that ended; nothing before the first, or while one runs.
    const RunRecord* last(RunKind kind) const;

    // Told at every start and end.
    std::function<void()> onChange;

  private:
    int depth_ = 0;
    std::optional<RunRecord> sweep_, time_;
};

} // namespace qz
