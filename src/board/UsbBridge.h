#pragma once
// The bridge library for a real evaluation board, over a UsbPort.

#include "board/BridgeLibrary.h"
#include "board/UsbPort.h"

#include <memory>

namespace qz {

class UsbBridge final : public BridgeLibrary {
public:
    explicit UsbBridge(std::unique_ptr<UsbPort> port);

    int32_t Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                              uint8_t* paths) override;
    int32_t Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) override;
    int32_t Download_Firmware(int32_t handle, const uint8_t* path) override;
    int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override;

    LinkState linkState() const override;
    std::string connectProblem() const override { return problem_; }

    static constexpr unsigned kTimeoutMs = 1000;
    // Consecutive time-outs after which the board counts as lost.
    static constexpr int kTimeoutsToLose = 3;
    // Largest block that one firmware RAM write carries.
    static constexpr size_t kFirmwareChunk = 4096;
    // Longest firmware path the library takes, without its terminating NUL.
    static constexpr size_t kMaxPath = 512;
    // How long a controller that has just been given its firmware may take to come back
    // on the bus as a new device: polls of kReattachPollMs.
    static constexpr int kReattachPolls = 30;
    static constexpr unsigned kReattachPollMs = 100;

private:
    std::string problem_;
    int32_t transferStatus(int result, int expected);
    bool reattach();

    std::unique_ptr<UsbPort> port_;
    bool initialised_ = false;
    bool usable_ = false;
    bool connected_ = false;
    bool lost_ = false;
    // Set by a download, cleared by the first transfer after it: the new firmware may
    // drop the device off the bus and bring it back under a new address.
    bool mayReattach_ = false;
    uint16_t vendor_ = 0, product_ = 0;
    uint8_t path_ = 0;  // the board connected, looked for again after its download
    int timeoutsInRow_ = 0;
    static constexpr int32_t kHandle = 1;
};

} // namespace qz
