#pragma once
// UsbPort over libusb-1.0.

#include "board/UsbPort.h"

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

private:
    void close();

    libusb_context* ctx_ = nullptr;
    libusb_device_handle* dev_ = nullptr;
};

} // namespace qz
