// The run engines against the clock: a sweep over every code with its list and arrays, a
// sweep on a board whose requests take 250 us against what the requests took, the wait
// between the steps of a run, and the temperature run, all on the virtual board.

#include "BenchSupport.h"

#include "board/VirtualBoard.h"
#include "registers/Session.h"
#include "runs/Sweep.h"
#include "runs/TempRun.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace {

using qzbench::CountingBridge;

struct Rig {
    CountingBridge* bridge;
    std::unique_ptr<qz::Session> session;
    std::vector<std::string> lines;

    // latency: how long each request takes on the virtual board.
    explicit Rig(std::chrono::nanoseconds latency = {}) {
        auto b = std::make_unique<CountingBridge>(std::make_unique<qz::VirtualBoard>(latency));
        bridge = b.get();
        session = std::make_unique<qz::Session>(std::move(b));
        session->usb.LoadUSB();
    }
    qz::RunContext context() {
        return {*session, qz::steadyClock(), [](const qz::RunProgress&) { return true; },
                [this](std::string line) { lines.push_back(std::move(line)); }};
    }
};

// Codes first to last in steps of one, "Measure Voltage" (eight readings a point) and no
// delays: what the program and the board cost, without the waits the operator chooses.
qz::SweepPlan everyCode(int32_t last) {
    qz::SweepPlan plan;
    plan.scaling = {5.0f, 0x8000, 20.0f, 200.0f};
    plan.measMode = 0;
    plan.startCode = 0;
    plan.endCode = last;
    plan.stepCode = 1;
    plan.n = last;
    return plan;
}

void SweepEveryCode(benchmark::State& state) {
    const qz::SweepPlan plan = everyCode(65535);
    long requests = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Rig rig;
        qz::MeasureArrays arrays;
        state.ResumeTiming();
        const long before = rig.bridge->requests;
        const qz::SweepOutcome out = qz::runSweep(rig.context(), plan, arrays);
        qz::FitDeviation(arrays, plan.startCode, plan.endCode,
                         [&rig](std::string l) { rig.lines.push_back(std::move(l)); });
        requests = rig.bridge->requests - before;
        if (out.points != 65536 || rig.lines.size() != 2u + 2u * 65536u)
            state.SkipWithError("the sweep did not take every code");
        benchmark::DoNotOptimize(arrays);
    }
    state.counters["requests"] = static_cast<double>(requests);
    state.counters["peak_MB"] = qzbench::peakMegabytes();
}
BENCHMARK(SweepEveryCode)->Unit(benchmark::kMillisecond)->Iterations(3);

// 512 points of 17 requests each, every request 250 us long: the sweep's time against the
// latency added up, and against the time spent inside the requests.
void SweepWithLatency(benchmark::State& state) {
    constexpr auto kLatency = std::chrono::microseconds(250);
    const qz::SweepPlan plan = everyCode(511);
    double took = 0.0, inRequests = 0.0;
    long requests = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Rig rig(kLatency);
        qz::MeasureArrays arrays;
        rig.bridge->requests = 0;
        rig.bridge->secondsInRequests = 0.0;
        state.ResumeTiming();
        const auto start = std::chrono::steady_clock::now();
        qz::runSweep(rig.context(), plan, arrays);
        took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        requests = rig.bridge->requests;
        inRequests = rig.bridge->secondsInRequests;
    }
    const double sum = static_cast<double>(requests) * 250e-6;
    state.counters["requests"] = static_cast<double>(requests);
    state.counters["latency_sum_ms"] = 1e3 * sum;
    state.counters["over_latency_sum_pct"] = 100.0 * (took / sum - 1.0);
    state.counters["over_time_in_requests_pct"] = 100.0 * (took / inRequests - 1.0);
    // What the program spends outside the requests, against the bus's nominal time.
    state.counters["program_pct_of_latency_sum"] = 100.0 * (took - inRequests) / sum;
}
BENCHMARK(SweepWithLatency)->Unit(benchmark::kMillisecond)->Iterations(3);

// 100 waits of 10 ms on the machine's clock: how late each ends, and the processor time
// the waiting took.
void WaitSecondsTenMs(benchmark::State& state) {
    std::vector<double> late;
    double cpu = 0.0, wall = 0.0;
    for (auto _ : state) {
        late.clear();
        const std::clock_t cpuStart = std::clock();
        const auto wallStart = std::chrono::steady_clock::now();
        for (int k = 0; k < 100; ++k) {
            const auto start = std::chrono::steady_clock::now();
            qz::WaitSeconds(qz::steadyClock(), 0.010);
            late.push_back(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() -
                0.010);
        }
        cpu = static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
        wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();
    }
    std::sort(late.begin(), late.end());
    state.counters["median_late_us"] = 1e6 * (late[49] + late[50]) / 2.0;
    state.counters["max_late_us"] = 1e6 * late.back();
    state.counters["early_waits"] =
        static_cast<double>(std::count_if(late.begin(), late.end(), [](double l) { return l < 0; }));
    state.counters["cpu_pct_of_wait"] = 100.0 * cpu / wall;
}
BENCHMARK(WaitSecondsTenMs)->Unit(benchmark::kMillisecond)->Iterations(1);

// The temperature run's engine with "No Delay", no panel: 1001 readings of three requests.
void TempRunEngine(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        Rig rig;
        rig.session->general.tempDelay = qz::kTempDelays[1].seconds;
        qz::TempArrays temps;
        state.ResumeTiming();
        const int32_t taken = qz::runTemperatures(rig.context(), false, temps, {});
        if (taken != qz::kTempReadings) state.SkipWithError("the run ended early");
    }
}
BENCHMARK(TempRunEngine)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

BENCHMARK_MAIN();
