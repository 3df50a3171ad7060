#pragma once
// The time of a run: a clock that keeps rising, and the wait between the steps of a
// measurement. A run is handed its clock, so that a test can give it one that moves only
// when waited on, and a run of "500ms" delays takes no real time there.

namespace qz {

class Clock {
  public:
    virtual ~Clock() = default;
    // Seconds since some fixed moment; never falls, also across midnight.
    virtual double seconds() const = 0;
    // Gives the processor away for about s seconds.
    virtual void sleep(double s) = 0;
};

// The machine's monotonic clock.
class SteadyClock final : public Clock {
  public:
    double seconds() const override;
    void sleep(double s) override;
};

// A clock that stands still but for the waits made on it: each sleep moves it on by
// exactly the time asked for.
class SteppedClock final : public Clock {
  public:
    double seconds() const override { return now_; }
    void sleep(double s) override { now_ += s; }

  private:
    double now_ = 0.0;
};

// The clock every panel uses unless it is given another.
Clock& steadyClock();

// Waits d seconds by sleeping, not spinning, and ends once the clock has passed the start
// plus d: never early, and late only by the scheduler's wake-up time (well under a
// millisecond). A d of zero or less, or not a number, returns at once.
void WaitSeconds(Clock& clock, double d);

} // namespace qz
