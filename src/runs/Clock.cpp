#include "runs/Clock.h"

#include <chrono>
#include <thread>

namespace qz {

double SteadyClock::seconds() const {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void SteadyClock::sleep(double s) {
    std::this_thread::sleep_for(std::chrono::duration<double>(s));
}

Clock& steadyClock() {
    static SteadyClock clock;
    return clock;
}

void WaitSeconds(Clock& clock, double d) {
    if (!(d > 0.0)) return;
    const double end = clock.seconds() + d;
    // A sleep may end a little early on some systems: sleep again for what is left.
    for (double now = clock.seconds(); now < end; now = clock.seconds())
        clock.sleep(end - now);
}

} // namespace qz
