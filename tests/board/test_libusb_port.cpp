// LibusbPort on a USB stack in memory: this file defines the libusb functions the port calls,
// and the test is linked with them instead of libusb.

#include "board/LibusbPort.h"

#include <libusb.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

struct libusb_context {};
struct libusb_device {
    uint16_t product;  // of vendor 0x0456
    uint8_t bus, address;
    std::vector<uint8_t> ports;  // from the root hub down; empty: the stack cannot tell
};
struct libusb_device_handle : libusb_device {};

namespace {
std::vector<libusb_device> attached;
std::vector<std::string> traffic;  // "open BUS.ADDRESS", "REQUEST BUS.ADDRESS"
std::string at(const libusb_device& d) {
    return std::to_string(d.bus) + '.' + std::to_string(d.address);
}
} // namespace

extern "C" {
int libusb_init(libusb_context** ctx) {
    static libusb_context stack;
    *ctx = &stack;
    return 0;
}
void libusb_exit(libusb_context*) {}
ssize_t libusb_get_device_list(libusb_context*, libusb_device*** list) {
    *list = new libusb_device*[attached.size() + 1]{};
    for (size_t i = 0; i < attached.size(); ++i) (*list)[i] = &attached[i];
    return static_cast<ssize_t>(attached.size());
}
void libusb_free_device_list(libusb_device** list, int) { delete[] list; }
int libusb_get_device_descriptor(libusb_device* d, libusb_device_descriptor* desc) {
    *desc = {};
    desc->idVendor = 0x0456;
    desc->idProduct = d->product;
    return 0;
}
uint8_t libusb_get_bus_number(libusb_device* d) { return d->bus; }
uint8_t libusb_get_device_address(libusb_device* d) { return d->address; }
int libusb_get_port_numbers(libusb_device* d, uint8_t* ports, int) {
    std::copy(d->ports.begin(), d->ports.end(), ports);
    return static_cast<int>(d->ports.size());
}
int libusb_open(libusb_device* d, libusb_device_handle** h) {
    traffic.push_back("open " + at(*d));
    *h = new libusb_device_handle{*d};
    return 0;
}
void libusb_close(libusb_device_handle* h) { delete h; }
int libusb_set_auto_detach_kernel_driver(libusb_device_handle*, int) { return 0; }
int libusb_claim_interface(libusb_device_handle*, int) { return 0; }
int libusb_release_interface(libusb_device_handle*, int) { return 0; }
int libusb_control_transfer(libusb_device_handle* h, uint8_t, uint8_t request, uint16_t,
                            uint16_t, unsigned char*, uint16_t length, unsigned) {
    traffic.push_back(std::to_string(request) + ' ' + at(*h));
    return length;
}
}

TEST(LibusbPort, EachBoardHasAPathByteOfItsOwnAndKeepsItWhenItComesBack) {
    using Bytes = std::vector<uint8_t>;
    // Two boards at address 5 on two buses, and another product between them.
    attached = {{0xB21F, 1, 5, {2}}, {0x1234, 1, 6, {3}}, {0xB21F, 2, 5, {1, 4}}};
    qz::LibusbPort port;
    ASSERT_TRUE(port.init());
    const auto list = [&] { return port.list(0x0456, 0xB21F); };
    const auto open = [&](uint8_t path) { return port.open(0x0456, 0xB21F, path); };
    EXPECT_EQ(list(), (Bytes{1, 2}));
    EXPECT_EQ(open(2), 0);
    EXPECT_EQ(port.control(0x40, 219, 0, 0, nullptr, 0, 1000), 0);
    EXPECT_EQ(open(1), 0);
    for (uint8_t never : {0, 3, 5}) EXPECT_EQ(open(never), qz::PortNotFound) << int(never);
    EXPECT_EQ(port.control(0x40, 219, 0, 0, nullptr, 0, 1000), qz::PortNoDevice);
    EXPECT_TRUE(port.list(0x0456, 0x4321).empty());  // a list that finds nothing
    EXPECT_EQ(open(1), qz::PortNotFound) << "a byte the last list did not give opens nothing";
    attached.pop_back();  // the board on bus 2 restarts with its firmware
    EXPECT_EQ(list(), Bytes{1});
    EXPECT_EQ(open(2), qz::PortNotFound);
    attached.push_back({0xB21F, 2, 9, {1, 4}});  // back on its port under a new address
    attached.push_back({0xB21F, 1, 7, {}});      // a new board, on a stack without ports
    EXPECT_EQ(list(), (Bytes{1, 2, 3}));
    EXPECT_EQ(open(2), 0);
    EXPECT_EQ(open(3), 0);
    EXPECT_EQ(traffic, (std::vector<std::string>{"open 2.5", "219 2.5", "open 1.5", "open 2.9",
                                                 "open 1.7"}));
}
