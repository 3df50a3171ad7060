#pragma once
// Wraps a bridge library and writes one line per call to a trace file, flushed at once,
// so that a trace shows every word up to a crash or a kill.
//
//   SEARCH <vendor> <product> -> <count> <status>
//   CONNECT <path byte> -> <handle> <status>
//   FIRMWARE <path> -> <status>
//   VR <request> <value> <index> OUT <length> -> <status>
//   VR <request> <value> <index> IN <length> -> 0 : <reply bytes>
//   VR <request> <value> <index> IN <length> -> <status> :        (failed: no bytes)

#include "board/BridgeLibrary.h"

#include <cstdio>
#include <memory>
#include <string>

namespace qz {

class TraceLibrary final : public BridgeLibrary {
public:
    // Takes ownership of an open stream; it is closed with the library.
    TraceLibrary(std::unique_ptr<BridgeLibrary> inner, std::FILE* out);
    ~TraceLibrary() override;
    TraceLibrary(const TraceLibrary&) = delete;
    TraceLibrary& operator=(const TraceLibrary&) = delete;

    // Opens path for writing; nullptr with a reason in error when it cannot.
    static std::unique_ptr<TraceLibrary> open(std::unique_ptr<BridgeLibrary> inner,
                                              const std::string& path, std::string& error);

    int32_t Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                              uint8_t* paths) override;
    int32_t Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) override;
    int32_t Download_Firmware(int32_t handle, const uint8_t* path) override;
    int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override;

    LinkState linkState() const override { return inner_->linkState(); }
    std::string titleSuffix() const override { return inner_->titleSuffix(); }
    std::string connectProblem() const override { return inner_->connectProblem(); }

    BridgeLibrary& inner() { return *inner_; }

private:
    void line(const std::string& text);

    std::unique_ptr<BridgeLibrary> inner_;
    std::FILE* out_;
};

// The trace line of one vendor request, as TraceLibrary writes it (without line end).
std::string traceVendorRequest(int32_t request, int32_t value, int32_t index, int32_t direction,
                               int32_t length, int32_t status, const uint8_t* buffer);

} // namespace qz
