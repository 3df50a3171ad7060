#include "board/UsbBridge.h"

#include "board/IntelHex.h"
#include "board/StatusCodes.h"
#include "board/Wire.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace qz {

namespace {
constexpr uint8_t kVendorOut = 0x40;
constexpr uint8_t kVendorIn = 0xC0;
using wire::kCpuControl;
using wire::kFirmwareLoad;
} // namespace

UsbBridge::UsbBridge(std::unique_ptr<UsbPort> port) : port_(std::move(port)) {}

int32_t UsbBridge::Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                                     uint8_t* paths) {
    count = 0;
    if (!initialised_) {
        initialised_ = true;
        usable_ = port_ && port_->init();
    }
    if (!usable_) return status::NoDevicesFound;
    const std::vector<uint8_t> found =
        port_->list(static_cast<uint16_t>(vendor), static_cast<uint16_t>(product));
    const size_t n = std::min<size_t>(found.size(), kPathArraySize);
    for (size_t i = 0; i < n; ++i) paths[i] = found[i];
    count = static_cast<int16_t>(n);
    return n == 0 ? status::NoDevicesFound : status::OK;
}

int32_t UsbBridge::Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) {
    if (!usable_) return status::NoMatchingDevice;
    const std::vector<uint8_t> found =
        port_->list(static_cast<uint16_t>(vendor), static_cast<uint16_t>(product));
    if (std::find(found.begin(), found.end(), path) == found.end())
        return status::NoMatchingDevice;
    problem_.clear();
    if (const int opened = port_->open(static_cast<uint16_t>(vendor), static_cast<uint16_t>(product), path);
        opened != 0) {
        if (opened == PortAccess)
            problem_ = "permission denied on " + port_->deniedNode() +
                       ": install the udev rule udev/60-qz7740.rules (README, \"A real board\") "
                       "and plug the board in again";
        return status::ConnectionError;
    }
    connected_ = true;
    lost_ = false;
    mayReattach_ = false;
    path_ = path;
    vendor_ = static_cast<uint16_t>(vendor);
    product_ = static_cast<uint16_t>(product);
    timeoutsInRow_ = 0;
    handle = kHandle;
    return status::OK;
}

int32_t UsbBridge::Download_Firmware(int32_t handle, const uint8_t* path) {
    if (!connected_ || lost_ || handle != kHandle) return status::NoDeviceConnected;
    if (!path) return status::FirmwareNotFound;
    // The path is NUL-terminated; one that runs past the buffer's length is refused.
    size_t len = 0;
    while (len <= kMaxPath && path[len] != 0) ++len;
    if (len > kMaxPath) return status::FirmwareNotFound;
    const std::string name(reinterpret_cast<const char*>(path), len);
    std::ifstream in(name, std::ios::binary);
    if (!in) return status::FirmwareNotFound;
    std::ostringstream text;
    text << in.rdbuf();
    const HexImage image = parseIntelHex(text.str());
    if (!image.ok) return status::FirmwareCorrupted;

    uint8_t hold = 1;
    if (port_->control(kVendorOut, kFirmwareLoad, kCpuControl, 0, &hold, 1, kTimeoutMs) != 1)
        return status::FirmwareDownloadFailed;
    for (HexSegment& chunk : chunkSegments(image.segments, kFirmwareChunk)) {
        const int n = static_cast<int>(chunk.bytes.size());
        if (port_->control(kVendorOut, kFirmwareLoad, static_cast<uint16_t>(chunk.address), 0,
                           chunk.bytes.data(), static_cast<uint16_t>(n), kTimeoutMs) != n)
            return status::FirmwareDownloadFailed;
    }
    uint8_t run = 0;
    if (port_->control(kVendorOut, kFirmwareLoad, kCpuControl, 0, &run, 1, kTimeoutMs) != 1)
        return status::FirmwareDownloadFailed;
    mayReattach_ = true;
    return status::OK;
}

// Only the board's own path byte will do: with two boards attached, the other one is on the
// bus all the while.
bool UsbBridge::reattach() {
    for (int i = 0; i < kReattachPolls; ++i) {
        const std::vector<uint8_t> found = port_->list(vendor_, product_);
        if (std::find(found.begin(), found.end(), path_) != found.end() &&
            port_->open(vendor_, product_, path_) == 0)
            return true;
        port_->pause(kReattachPollMs);
    }
    return false;
}

int32_t UsbBridge::Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                                  int32_t direction, int32_t length, uint8_t* buffer) {
    if (!connected_ || lost_ || handle != kHandle) return status::NoDeviceConnected;
    // What a control transfer cannot carry is refused as the board's firmware refuses a
    // request it does not know, instead of being cut to 8 or 16 bits and sent.
    if (direction != 0 && direction != 1) return status::UnexpectedEndpointError;
    if (request < 0 || request > 0xFF || value < 0 || value > 0xFFFF || index < 0 ||
        index > 0xFFFF)
        return status::UnexpectedEndpointError;
    if (length < 0 || length > 0xFFFF || (length > 0 && !buffer))
        return status::TransferIncomplete;
    const auto transfer = [&] {
        return port_->control(direction == 0 ? kVendorOut : kVendorIn,
                              static_cast<uint8_t>(request), static_cast<uint16_t>(value),
                              static_cast<uint16_t>(index), length > 0 ? buffer : nullptr,
                              static_cast<uint16_t>(length), kTimeoutMs);
    };
    int result = transfer();
    if (mayReattach_) {
        mayReattach_ = false;
        // The device left to come back with its new firmware: find it again, once.
        if (result == PortNoDevice && reattach()) result = transfer();
    }
    return transferStatus(result, length);
}

int32_t UsbBridge::transferStatus(int result, int expected) {
    if (result == PortTimeout) {
        // A board that no longer answers must not cost a second per request for ever.
        if (++timeoutsInRow_ >= kTimeoutsToLose) lost_ = true;
        return status::TransferIncomplete;
    }
    timeoutsInRow_ = 0;
    if (result == PortNoDevice) {
        lost_ = true;
        return status::NoDeviceConnected;
    }
    if (result < 0) return status::UnexpectedEndpointError;
    if (result != expected) return status::TransferIncomplete;
    return status::OK;
}

LinkState UsbBridge::linkState() const {
    if (lost_) return LinkState::Lost;
    return connected_ ? LinkState::Connected : LinkState::NoBoard;
}

} // namespace qz
