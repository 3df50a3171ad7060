#include "board/LibusbPort.h"

#include <libusb.h>

#include <algorithm>
#include <cstdio>
#include <chrono>
#include <thread>

namespace qz {

namespace {

// Walks the attached devices; calls f(device) for each with this identity until f says stop.
template <typename F>
void forEachBoard(libusb_context* ctx, uint16_t vendor, uint16_t product, F f) {
    libusb_device** devices = nullptr;
    const ssize_t n = libusb_get_device_list(ctx, &devices);
    if (n < 0) return;
    for (ssize_t i = 0; i < n; ++i) {
        libusb_device_descriptor d{};
        if (libusb_get_device_descriptor(devices[i], &d) != 0) continue;
        if (d.idVendor != vendor || d.idProduct != product) continue;
        if (!f(devices[i])) break;
    }
    libusb_free_device_list(devices, 1);
}

// The bus and the ports from the root hub down: what stays when a controller leaves the bus
// and comes back under a new address with its firmware. Where the stack cannot tell the
// ports, the address stands in (0 is no port number).
std::vector<uint8_t> placeOf(libusb_device* device) {
    std::vector<uint8_t> place{libusb_get_bus_number(device)};
    uint8_t ports[8];  // a USB tree is at most seven hubs deep
    const int n = libusb_get_port_numbers(device, ports, static_cast<int>(sizeof ports));
    if (n > 0)
        place.insert(place.end(), ports, ports + n);
    else
        place.insert(place.end(), {0, libusb_get_device_address(device)});
    return place;
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
    listed_.clear();
    if (!ctx_) return listed_;
    forEachBoard(ctx_, vendor, product, [&](libusb_device* device) {
        const std::vector<uint8_t> place = placeOf(device);
        auto known = std::find(places_.begin(), places_.end(), place);
        if (known == places_.end()) {
            if (places_.size() == kMaxPathByte) return true;  // no byte left to name it
            known = places_.insert(places_.end(), place);
        }
        listed_.push_back(static_cast<uint8_t>(known - places_.begin() + 1));
        return true;
    });
    return listed_;
}

int LibusbPort::open(uint16_t vendor, uint16_t product, uint8_t path) {
    if (!ctx_) return PortNoDevice;
    close();
    if (std::find(listed_.begin(), listed_.end(), path) == listed_.end()) return PortNotFound;
    const std::vector<uint8_t>& wanted = places_[path - 1u];
    int result = PortNotFound;
    denied_.clear();
    forEachBoard(ctx_, vendor, product, [&](libusb_device* device) {
        if (placeOf(device) != wanted) return true;
        result = libusb_open(device, &dev_);
        if (result == LIBUSB_ERROR_ACCESS) {
            // The node a udev rule must open to the user, as Linux names it.
            char node[32];
            std::snprintf(node, sizeof node, "/dev/bus/usb/%03u/%03u", libusb_get_bus_number(device),
                          libusb_get_device_address(device));
            denied_ = node;
        }
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
