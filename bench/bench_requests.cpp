// Requests per second through the whole stack: the USBStuff wrappers on the virtual
// board with no latency and no trace. What the program adds to a USB control transfer.

#include "board/USBStuff.h"
#include "board/VirtualBoard.h"
#include "registers/Session.h"

#include <benchmark/benchmark.h>

namespace {

std::unique_ptr<qz::Session> startedSession() {
    auto s = std::make_unique<qz::Session>(std::make_unique<qz::VirtualBoard>());
    s->usb.LoadUSB();
    return s;
}

void WriteSPIWord(benchmark::State& state) {
    auto s = startedSession();
    int32_t word = 0x080000;
    for (auto _ : state) {
        s->usb.WriteSPIWord(word);
        word = 0x080000 | ((word + 1) & 0xFFFF);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(WriteSPIWord);

void SPIoutWithWordShown(benchmark::State& state) {
    auto s = startedSession();
    std::string shown;
    s->showWordSent = [&](const std::string& hex) { shown = hex; };
    int32_t word = 0x080000;
    for (auto _ : state) {
        s->SPIout(word);
        word = 0x080000 | ((word + 1) & 0xFFFF);
    }
    benchmark::DoNotOptimize(shown);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(SPIoutWithWordShown);

void ReadRegister(benchmark::State& state) {
    auto s = startedSession();
    int32_t sum = 0;
    for (auto _ : state) {
        s->usb.WriteSPIWord(0x810000);
        sum += s->usb.ReadSPIWord();
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(2 * state.iterations());  // two requests a read
}
BENCHMARK(ReadRegister);

} // namespace

BENCHMARK_MAIN();
