#pragma once
// What the run benchmarks share: the peak memory of the process, and a bridge that counts
// the vendor requests passed to the board beneath it and the time they took there.

#include "board/BridgeLibrary.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <memory>

namespace qzbench {

// The highest resident set of the process so far, in megabytes.
inline double peakMegabytes() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_maxrss) / 1024.0; // kilobytes on Linux
}

// Counts the requests passed to the board beneath and the time they took there.
class CountingBridge : public qz::BridgeLibrary {
  public:
    explicit CountingBridge(std::unique_ptr<qz::BridgeLibrary> inner) : inner_(std::move(inner)) {}

    long requests = 0;
    double secondsInRequests = 0.0;

    int32_t Search_For_Boards(int32_t v, int32_t p, int16_t& count, uint8_t* paths) override {
        return inner_->Search_For_Boards(v, p, count, paths);
    }
    int32_t Connect(int32_t v, int32_t p, uint8_t path, int32_t& handle) override {
        return inner_->Connect(v, p, path, handle);
    }
    int32_t Download_Firmware(int32_t handle, const uint8_t* path) override {
        return inner_->Download_Firmware(handle, path);
    }
    int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override {
        const auto start = std::chrono::steady_clock::now();
        const int32_t status =
            inner_->Vendor_Request(handle, request, value, index, direction, length, buffer);
        secondsInRequests +=
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        ++requests;
        return status;
    }
    qz::LinkState linkState() const override { return inner_->linkState(); }
    std::string titleSuffix() const override { return inner_->titleSuffix(); }

  private:
    std::unique_ptr<qz::BridgeLibrary> inner_;
};

} // namespace qzbench
