// Requests per second through the real USB stack: UsbBridge over LibusbPort over libusb,
// on a board that umockdev emulates, beside the same requests on the virtual board. The
// difference is what libusb, usbdevfs and the emulation's socket cost a request.

#include "emulated/EmulatedBoard.h"
#include "emulated/Preload.h"

#include "board/LibusbPort.h"
#include "board/UsbBridge.h"
#include "board/VirtualBoard.h"
#include "registers/Session.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

namespace {

std::unique_ptr<qz::Session> started(std::unique_ptr<qz::BridgeLibrary> library, const std::string& dir) {
    auto s = std::make_unique<qz::Session>(std::move(library));
    s->usb.applicationDirectory = dir;
    s->usb.messageBox = [](const std::string&, const std::string&, qz::MsgIcon) {};
    s->usb.LoadUSB();
    return s;
}

// A word out and its reply in, as a read of the chip is: two requests.
void readWords(benchmark::State& state, qz::Session& s) {
    for (auto _ : state)
        benchmark::DoNotOptimize(s.readWord(0x810000));
    state.counters["requests/s"] = benchmark::Counter(2.0 * static_cast<double>(state.iterations()),
                                                      benchmark::Counter::kIsRate);
}

void ReadWordEmulatedUsb(benchmark::State& state) {
    qz::EmulatedBoard board;
    board.plug(1);
    const std::string dir = board.root() + "/firmware";
    std::filesystem::create_directories(dir);
    std::ofstream(dir + "/QZ7740SPI.hex") << ":0100000055AA\n:00000001FF\n";
    auto s = started(std::make_unique<qz::UsbBridge>(std::make_unique<qz::LibusbPort>()), dir);
    if (s->usb.linkState() != qz::LinkState::Connected) return state.SkipWithError("no board on the bus");
    readWords(state, *s);
}
BENCHMARK(ReadWordEmulatedUsb)->Unit(benchmark::kMicrosecond)->MinTime(2.0)->UseRealTime();

void ReadWordVirtualBoard(benchmark::State& state) {
    auto s = started(std::make_unique<qz::VirtualBoard>(), ".");
    readWords(state, *s);
}
BENCHMARK(ReadWordVirtualBoard)->Unit(benchmark::kMicrosecond)->MinTime(2.0)->UseRealTime();

} // namespace

int main(int argc, char** argv) {
    qz::ensureUmockdevPreload(argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
