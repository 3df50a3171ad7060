#pragma once
// The thin seam between UsbBridge and the USB stack. LibusbPort is the real one;
// tests put a scripted port in its place.

#include <cstdint>
#include <string>
#include <vector>

namespace qz {

// Transfer results below zero, numbered as the USB stack numbers them.
enum PortError : int {
    PortIo = -1,
    PortInvalidParam = -2,
    PortAccess = -3,
    PortNoDevice = -4,
    PortNotFound = -5,
    PortBusy = -6,
    PortTimeout = -7,
    PortOverflow = -8,
    PortPipe = -9,
    PortOther = -99,
};

class UsbPort {
public:
    virtual ~UsbPort() = default;
    // False when the USB stack cannot be used at all.
    virtual bool init() = 0;
    // One path byte for every attached device with this vendor and product number; each
    // names one device, and a device that leaves the bus and comes back on the same port
    // (a controller that restarts with its new firmware) keeps its byte. Never 0.
    virtual std::vector<uint8_t> list(uint16_t vendor, uint16_t product) = 0;
    // Opens the device with this path byte, given by the last list(), and claims
    // interface 0. 0 or a PortError; a byte the last list() did not give opens nothing.
    virtual int open(uint16_t vendor, uint16_t product, uint8_t path) = 0;
    // One control transfer on the open device: the number of bytes moved, or a PortError.
    virtual int control(uint8_t requestType, uint8_t request, uint16_t value, uint16_t index,
                        uint8_t* data, uint16_t length, unsigned timeoutMs) = 0;
    // Waits this long while a device comes back on the bus.
    virtual void pause(unsigned ms) = 0;
    // The device node of the last open that PortAccess refused; empty when none was.
    virtual std::string deniedNode() const { return {}; }
};

} // namespace qz
