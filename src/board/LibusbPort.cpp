#include "board/LibusbPort.h"

#include <libusb.h>

#include <chrono>
#include <thread>

namespace qz {

namespace {

// Walks the attached devices; calls f(device, path byte) for each with this identity.
template <typename F>
void forEachBoard(libusb_context* ctx, uint16_t vendor, uint16_t product, F f) {
    libusb_device** devices = nullptr;
    const ssize_t n = libusb_get_device_list(ctx, &devices);
    if (n < 0) return;
    for (ssize_t i = 0; i < n; ++i) {
        libusb_device_descriptor d{};
        if (libusb_get_device_descriptor(devices[i], &d) != 0) continue;
        if (d.idVendor != vendor || d.idProduct != product) continue;
        if (!f(devices[i], libusb_get_device_address(devices[i]))) break;
    }
    libusb_free_device_list(devices, 1);
}

} // namespace

LibusbPort::~LibusbPort() {
    close();
    if (ctx_) libusb_exit(ctx_);
}

bool LibusbPort::init() {
    if (ctx_) return true;
    return libusb_init(&ctx_) == 0;
}

std::vector<uint8_t> LibusbPort::list(uint16_t vendor, uint16_t product) {
    std::vector<uint8_t> paths;
    if (!ctx_) return paths;
    forEachBoard(ctx_, vendor, product, [&](libusb_device*, uint8_t path) {
        paths.push_back(path);
        return true;
    });
    return paths;
}

int LibusbPort::open(uint16_t vendor, uint16_t product, uint8_t path) {
    if (!ctx_) return PortNoDevice;
    close();
    int result = PortNotFound;
    forEachBoard(ctx_, vendor, product, [&](libusb_device* device, uint8_t p) {
        if (p != path) return true;
        result = libusb_open(device, &dev_);
        return false;
    });
    if (result != 0) {
        dev_ = nullptr;
        return result;
    }
    libusb_set_auto_detach_kernel_driver(dev_, 1);
    result = libusb_claim_interface(dev_, 0);
    if (result != 0) close();
    return result;
}

int LibusbPort::control(uint8_t requestType, uint8_t request, uint16_t value, uint16_t index,
                        uint8_t* data, uint16_t length, unsigned timeoutMs) {
    if (!dev_) return PortNoDevice;
    return libusb_control_transfer(dev_, requestType, request, value, index, data, length,
                                   timeoutMs);
}

void LibusbPort::pause(unsigned ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

void LibusbPort::close() {
    if (!dev_) return;
    libusb_release_interface(dev_, 0);
    libusb_close(dev_);
    dev_ = nullptr;
}

} // namespace qz
