#pragma once
// UsbPort over libusb-1.0. A path byte names the place of a board (its bus and the ports
// down to it), given in the order the boards are first seen: 1, 2, 3, ... Two boards with
// the same device address on two buses get two bytes, and a board that leaves the bus and
// comes back on the same port keeps its byte.

#include "board/UsbPort.h"

#include <cstddef>
#include <string>
#include <vector>

struct libusb_context;
struct libusb_device_handle;

namespace qz {

class LibusbPort final : public UsbPort {
public:
    LibusbPort() = default;
    ~LibusbPort() override;
    LibusbPort(const LibusbPort&) = delete;
    LibusbPort& operator=(const LibusbPort&) = delete;

    bool init() override;
    std::vector<uint8_t> list(uint16_t vendor, uint16_t product) override;
    int open(uint16_t vendor, uint16_t product, uint8_t path) override;
    int control(uint8_t requestType, uint8_t request, uint16_t value, uint16_t index,
                uint8_t* data, uint16_t length, unsigned timeoutMs) override;
    void pause(unsigned ms) override;
    std::string deniedNode() const override { return denied_; }

private:
    void close();
    static constexpr std::size_t kMaxPathByte = 255;

    libusb_context* ctx_ = nullptr;
    libusb_device_handle* dev_ = nullptr;
    std::vector<std::vector<uint8_t>> places_;  // path byte k names places_[k - 1]
    std::vector<uint8_t> listed_;               // the bytes of the last list(), which open takes
    std::string denied_;
};

} // namespace qz
