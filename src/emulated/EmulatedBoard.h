#pragma once
// The evaluation board on a USB bus that umockdev emulates: the board's device in sysfs
// and /dev, and a handler of the usbdevfs requests that libusb makes of its node. The
// bridge controller takes its firmware at 0xA0 (0xE600 holds and frees its CPU); once
// freed it leaves the bus and comes back under the next device number, and from then on
// its vendor requests reach a VirtualBoard, the same chip model as --simulate. The real
// UsbBridge, LibusbPort and libusb run above it as with the board plugged in.
// The process must run with umockdev's preload library: ensureUmockdevPreload (Preload.h).

#include "board/VirtualBoard.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

typedef struct _UMockdevTestbed UMockdevTestbed;
typedef struct _UMockdevIoctlClient UMockdevIoctlClient;

namespace qz {

class EmulatedBoard {
  public:
    // A control transfer as the device saw it: the setup packet, the bytes that came
    // with it (OUT) or went back (IN), and the device number it went to.
    struct Transfer {
        uint8_t type, request;
        uint16_t value, index, length;
        std::vector<uint8_t> data;
        int devnum;
    };

    EmulatedBoard();
    ~EmulatedBoard();
    EmulatedBoard(const EmulatedBoard&) = delete;
    EmulatedBoard& operator=(const EmulatedBoard&) = delete;

    // Plugs a board in at this port of bus 1; returns its number (0 for the first).
    int plug(int port);
    // Pulls the board out: its device leaves the bus, and its node answers no more.
    void unplug(int board);
    // Plugs it in again: powered afresh, without firmware, under a new number.
    void replug(int board);

    // What the controller does after its firmware: come back under a new number (as a
    // real bridge does), or stay away. Set from any thread; the handler reads them.
    std::atomic<bool> comesBack{true};
    // The next vendor requests the board stalls, and whether it holds back every answer.
    std::atomic<int> stallRequests{0};
    std::atomic<bool> holdAnswers{false};

    std::vector<Transfer> transfers() const;
    // The device number the board has on the bus now (0 while it is away).
    int devnum(int board) const;
    // The chip model behind the board; read it while nothing is in flight.
    qz::VirtualBoard& chip(int board);
    std::string root() const;

    // One usbdevfs request on a node (the umockdev worker thread's).
    struct Node;
    void serve(Node& node, UMockdevIoctlClient* client);

  private:
    struct Device;
    void attach(Device& d);
    void leave(Device& d);
    void controlTransfer(Node& node, UMockdevIoctlClient* client);

    UMockdevTestbed* testbed_ = nullptr;
    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<Device>> devices_;
    std::vector<std::unique_ptr<Node>> nodes_;
    std::vector<Transfer> transfers_;
    int nextDevnum_ = 2;
};

} // namespace qz
