#include "emulated/EmulatedBoard.h"

#include "board/BridgeLibrary.h"
#include "board/Wire.h"

#include <umockdev.h>

#include <sys/ioctl.h>
#include <linux/usbdevice_fs.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <deque>
#include <stdexcept>

namespace qz {

namespace {

using wire::kCpuControl;
using wire::kFirmwareLoad;
constexpr size_t kSetup = 8; // the setup packet ahead of a control URB's data stage

// The descriptors of the board: one configuration, one interface of the vendor's class.
uint8_t kDescriptors[] = {18, 1, 0x00, 0x02, 0xFF, 0xFF, 0xFF, 64, 0x56, 0x04, 0x1F, 0xB2, 0x00, 0x01, 0, 0, 0, 1,
                          9,  2, 18,   0,    1,    1,    0,    0x80, 50,
                          9,  4, 0,    0,    0,    0xFF, 0xFF, 0xFF, 0};

gboolean onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer data);

} // namespace

struct EmulatedBoard::Device {
    int number = 0;
    int port = 0;
    int devnum = 0;  // 0 while away from the bus
    std::string sys; // its sysfs path while on the bus
    bool cpuHeld = false;
    bool firmwareRunning = false;
    std::unique_ptr<qz::VirtualBoard> chip;

    // Power on: the chip at its power-on values, the controller without firmware.
    void powerOn() {
        chip = std::make_unique<qz::VirtualBoard>();
        int32_t handle = 0;
        chip->Connect(qz::kBoardVendor, qz::kBoardProduct, qz::VirtualBoard::kPathByte, handle);
        cpuHeld = firmwareRunning = false;
    }
};

// One device node as libusb opened it: the URBs it submitted that are done, to be reaped,
// and those held back unanswered.
struct EmulatedBoard::Node {
    EmulatedBoard* board = nullptr;
    Device* device = nullptr;
    int devnum = 0;
    UMockdevIoctlBase* handler = nullptr;
    std::deque<void*> done;
    std::vector<void*> held;
};

namespace {
gboolean onIoctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer data) {
    auto* node = static_cast<EmulatedBoard::Node*>(data);
    node->board->serve(*node, client);
    return TRUE;
}
} // namespace

EmulatedBoard::EmulatedBoard() : testbed_(umockdev_testbed_new()) {}

EmulatedBoard::~EmulatedBoard() {
    // The testbed goes with its worker thread; the nodes' handlers after it.
    g_object_unref(testbed_);
    for (auto& n : nodes_)
        g_object_unref(n->handler);
}

std::string EmulatedBoard::root() const {
    gchar* dir = umockdev_testbed_get_root_dir(testbed_);
    std::string r(dir);
    g_free(dir);
    return r;
}

int EmulatedBoard::plug(int port) {
    std::lock_guard<std::mutex> lock(mutex_);
    auto d = std::make_unique<Device>();
    d->number = static_cast<int>(devices_.size());
    d->port = port;
    d->powerOn();
    attach(*d);
    devices_.push_back(std::move(d));
    return devices_.back()->number;
}

void EmulatedBoard::unplug(int board) {
    std::lock_guard<std::mutex> lock(mutex_);
    leave(*devices_.at(static_cast<size_t>(board)));
}

void EmulatedBoard::replug(int board) {
    std::lock_guard<std::mutex> lock(mutex_);
    Device& d = *devices_.at(static_cast<size_t>(board));
    leave(d);
    d.powerOn();
    attach(d);
}

// The device comes onto the bus under the next number, with its node and its handler.
void EmulatedBoard::attach(Device& d) {
    d.devnum = nextDevnum_++;
    char name[16], devnum[8], node[40];
    std::snprintf(name, sizeof name, "usb1/1-%d", d.port);
    std::snprintf(devnum, sizeof devnum, "%03d", d.devnum);
    std::snprintf(node, sizeof node, "/dev/bus/usb/001/%03d", d.devnum);
    const std::string port = std::to_string(d.port), num = std::to_string(d.devnum);
    gchar* sys = umockdev_testbed_add_device(
        testbed_, "usb", name, nullptr, "idVendor", "0456", "idProduct", "b21f", "busnum", "1", "devnum",
        num.c_str(), "speed", "480", "bConfigurationValue", "1", "bNumConfigurations", "1", nullptr,
        "BUSNUM", "001", "DEVNUM", devnum, "DEVNAME", node, "DEVTYPE", "usb_device", "PRODUCT",
        "456/b21f/100", nullptr);
    d.sys = sys;
    g_free(sys);
    umockdev_testbed_set_attribute_binary(testbed_, d.sys.c_str(), "descriptors", kDescriptors,
                                          sizeof kDescriptors);
    // The node itself, which the handler answers for.
    const std::string dir = root() + "/dev/bus/usb/001";
    g_mkdir_with_parents(dir.c_str(), 0755);
    g_file_set_contents((root() + node).c_str(), "", 0, nullptr);

    auto n = std::make_unique<Node>();
    n->board = this;
    n->device = &d;
    n->devnum = d.devnum;
    n->handler = umockdev_ioctl_base_new();
    g_signal_connect(n->handler, "handle-ioctl", G_CALLBACK(onIoctl), n.get());
    GError* error = nullptr;
    if (!umockdev_testbed_attach_ioctl(testbed_, node, n->handler, &error)) {
        const std::string why = error ? error->message : "?";
        g_clear_error(&error);
        throw std::runtime_error("umockdev: " + why);
    }
    nodes_.push_back(std::move(n));
    umockdev_testbed_uevent(testbed_, d.sys.c_str(), "add");
}

void EmulatedBoard::leave(Device& d) {
    if (d.devnum == 0) return;
    umockdev_testbed_uevent(testbed_, d.sys.c_str(), "remove");
    umockdev_testbed_remove_device(testbed_, d.sys.c_str());
    d.devnum = 0;
}

std::vector<EmulatedBoard::Transfer> EmulatedBoard::transfers() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return transfers_;
}

int EmulatedBoard::devnum(int board) const {
    std::lock_guard<std::mutex> lock(mutex_);
    return devices_.at(static_cast<size_t>(board))->devnum;
}

qz::VirtualBoard& EmulatedBoard::chip(int board) {
    std::lock_guard<std::mutex> lock(mutex_);
    return *devices_.at(static_cast<size_t>(board))->chip;
}

void EmulatedBoard::serve(Node& node, UMockdevIoctlClient* client) {
    std::lock_guard<std::mutex> lock(mutex_);
    UMockdevIoctlData* arg = umockdev_ioctl_client_get_arg(client);
    GError* error = nullptr;
    switch (umockdev_ioctl_client_get_request(client)) {
    case USBDEVFS_GET_CAPABILITIES: {
        UMockdevIoctlData* caps = umockdev_ioctl_data_resolve(arg, 0, sizeof(uint32_t), &error);
        if (!caps) break;
        uint32_t value = USBDEVFS_CAP_NO_PACKET_SIZE_LIM;
        std::memcpy(caps->data, &value, sizeof value);
        return umockdev_ioctl_client_complete(client, 0, 0);
    }
    case USBDEVFS_GETDRIVER:
        return umockdev_ioctl_client_complete(client, -1, ENODATA); // no kernel driver holds it
    case USBDEVFS_CLAIMINTERFACE:
    case USBDEVFS_DISCONNECT_CLAIM:
    case USBDEVFS_RELEASEINTERFACE:
    case USBDEVFS_SETCONFIGURATION:
    case USBDEVFS_RESETEP:
    case USBDEVFS_CLEAR_HALT:
        return umockdev_ioctl_client_complete(client, node.devnum == node.device->devnum ? 0 : -1,
                                              node.devnum == node.device->devnum ? 0 : ENODEV);
    case USBDEVFS_SUBMITURB:
        return controlTransfer(node, client);
    case USBDEVFS_REAPURB:
    case USBDEVFS_REAPURBNDELAY: {
        if (node.done.empty()) {
            const bool gone = node.devnum != node.device->devnum && node.held.empty();
            return umockdev_ioctl_client_complete(client, -1, gone ? ENODEV : EAGAIN);
        }
        UMockdevIoctlData* out = umockdev_ioctl_data_resolve(arg, 0, sizeof(void*), &error);
        if (!out) break;
        void* urb = node.done.front();
        node.done.pop_front();
        std::memcpy(out->data, &urb, sizeof urb);
        return umockdev_ioctl_client_complete(client, 0, 0);
    }
    case USBDEVFS_DISCARDURB: {
        // A held URB that libusb gives up on comes back as cancelled at its next reap.
        void* wanted = nullptr;
        std::memcpy(&wanted, arg->data, sizeof wanted);
        const auto it = std::find(node.held.begin(), node.held.end(), wanted);
        if (it == node.held.end()) return umockdev_ioctl_client_complete(client, -1, EINVAL);
        UMockdevIoctlData* u = umockdev_ioctl_data_resolve(arg, 0, sizeof(usbdevfs_urb), &error);
        if (!u) break;
        reinterpret_cast<usbdevfs_urb*>(u->data)->status = -ENOENT;
        node.held.erase(it);
        node.done.push_back(wanted);
        return umockdev_ioctl_client_complete(client, 0, 0);
    }
    default:
        return umockdev_ioctl_client_complete(client, -1, ENOTTY);
    }
    g_clear_error(&error);
    umockdev_ioctl_client_complete(client, -1, EFAULT);
}

// A control URB: the setup packet and the data stage in one buffer. The controller takes
// its firmware itself; the vendor requests reach the chip model once the firmware runs.
void EmulatedBoard::controlTransfer(Node& node, UMockdevIoctlClient* client) {
    Device& d = *node.device;
    if (node.devnum != d.devnum) return umockdev_ioctl_client_complete(client, -1, ENODEV);
    UMockdevIoctlData* arg = umockdev_ioctl_client_get_arg(client);
    void* clientUrb = nullptr;
    std::memcpy(&clientUrb, arg->data, sizeof clientUrb);
    GError* error = nullptr;
    UMockdevIoctlData* u = umockdev_ioctl_data_resolve(arg, 0, sizeof(usbdevfs_urb), &error);
    if (!u) {
        g_clear_error(&error);
        return umockdev_ioctl_client_complete(client, -1, EFAULT);
    }
    auto* urb = reinterpret_cast<usbdevfs_urb*>(u->data);
    if (urb->type != USBDEVFS_URB_TYPE_CONTROL || urb->buffer_length < static_cast<int>(kSetup))
        return umockdev_ioctl_client_complete(client, -1, EINVAL);
    UMockdevIoctlData* b =
        umockdev_ioctl_data_resolve(u, offsetof(usbdevfs_urb, buffer), static_cast<gsize>(urb->buffer_length), &error);
    if (!b) {
        g_clear_error(&error);
        return umockdev_ioctl_client_complete(client, -1, EFAULT);
    }
    urb = reinterpret_cast<usbdevfs_urb*>(u->data);
    uint8_t* buf = b->data;
    Transfer t{buf[0], buf[1], static_cast<uint16_t>(buf[2] | buf[3] << 8),
               static_cast<uint16_t>(buf[4] | buf[5] << 8), static_cast<uint16_t>(buf[6] | buf[7] << 8), {},
               d.devnum};
    const bool in = (t.type & 0x80) != 0;
    uint8_t* stage = buf + kSetup;
    const int room = urb->buffer_length - static_cast<int>(kSetup);
    const int length = std::min<int>(t.length, room);
    if (!in) t.data.assign(stage, stage + length);

    int status = 0;
    bool freed = false;
    if (t.request == kFirmwareLoad && t.type == 0x40) {
        if (t.value == kCpuControl && length == 1) {
            if (stage[0] == 1) d.cpuHeld = true;
            freed = stage[0] == 0 && d.cpuHeld;
        }
    } else if (!d.firmwareRunning || stallRequests > 0) {
        if (d.firmwareRunning) --stallRequests;
        status = -EPIPE; // no firmware yet, or told to stall
    } else if (holdAnswers) {
        transfers_.push_back(std::move(t));
        node.held.push_back(clientUrb);
        return umockdev_ioctl_client_complete(client, 0, 0);
    } else {
        std::vector<uint8_t> reply(static_cast<size_t>(std::max(length, 1)));
        if (!in) std::copy_n(stage, length, reply.begin());
        const int32_t st = d.chip->Vendor_Request(qz::VirtualBoard::kHandle, t.request, t.value, t.index,
                                                 in ? 1 : 0, length, reply.data());
        if (st != 0) status = -EPIPE;
        if (in && st == 0) {
            std::copy_n(reply.begin(), length, stage);
            t.data.assign(stage, stage + length);
        }
    }
    urb->status = status;
    urb->actual_length = status == 0 ? length : 0;
    transfers_.push_back(std::move(t));
    node.done.push_back(clientUrb);
    umockdev_ioctl_client_complete(client, 0, 0);
    if (freed) {
        // The controller runs its new firmware: it leaves the bus, and comes back under a
        // new number if it is to.
        d.cpuHeld = false;
        int32_t handle = qz::VirtualBoard::kHandle;
        d.chip->Download_Firmware(handle, reinterpret_cast<const uint8_t*>(""));
        d.firmwareRunning = true;
        leave(d);
        if (comesBack) attach(d);
    }
}

} // namespace qz
