#include "board/StatusCodes.h"
#include "board/UsbBridge.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <unistd.h>
#include <fstream>

namespace {

struct Transfer {
    uint8_t type, request;
    uint16_t value, index, length;
    unsigned timeout;
    std::vector<uint8_t> data;
};

// A USB stack that answers from a script.
class ScriptedPort : public qz::UsbPort {
public:
    bool works = true;
    std::vector<uint8_t> devices{9};
    int openResult = 0;
    std::vector<uint8_t> opened;  // path bytes of every open
    int pauses = 0;
    // After this many pauses the device list becomes `back` (a device that came back).
    int pausesUntilBack = -1;
    std::vector<uint8_t> back;
    std::deque<int> results;  // results of the next transfers; empty: complete transfers
    std::vector<Transfer>* log;

    explicit ScriptedPort(std::vector<Transfer>* l) : log(l) {}
    bool init() override { return works; }
    std::vector<uint8_t> list(uint16_t vendor, uint16_t product) override {
        if (vendor != 0x0456 || product != 0xB21F) return {};
        return devices;
    }
    int open(uint16_t, uint16_t, uint8_t path) override {
        opened.push_back(path);
        return openResult;
    }
    void pause(unsigned ms) override {
        EXPECT_EQ(ms, qz::UsbBridge::kReattachPollMs);
        if (++pauses == pausesUntilBack) devices = back;
    }
    int control(uint8_t type, uint8_t request, uint16_t value, uint16_t index, uint8_t* data,
                uint16_t length, unsigned timeout) override {
        log->push_back({type, request, value, index, length, timeout,
                        data ? std::vector<uint8_t>(data, data + length) : std::vector<uint8_t>{}});
        if (results.empty()) {
            if (type == 0xC0)
                for (uint16_t i = 0; i < length; ++i) data[i] = static_cast<uint8_t>(0x10 + i);
            return length;
        }
        const int r = results.front();
        results.pop_front();
        return r;
    }
};

class UsbBridgeTest : public ::testing::Test {
protected:
    std::vector<Transfer> log;
    ScriptedPort* port = nullptr;
    std::unique_ptr<qz::UsbBridge> bridge;
    int32_t handle = 0;

    void SetUp() override {
        auto p = std::make_unique<ScriptedPort>(&log);
        port = p.get();
        bridge = std::make_unique<qz::UsbBridge>(std::move(p));
    }
    int32_t search(int16_t& count) {
        uint8_t paths[128] = {};
        return bridge->Search_For_Boards(1110, 45599, count, paths);
    }
    void connect() {
        int16_t count = 0;
        ASSERT_EQ(search(count), 0);
        ASSERT_EQ(bridge->Connect(1110, 45599, 9, handle), 0);
        ASSERT_NE(handle, 0);
        log.clear();
    }
    int32_t request(int32_t req, int32_t dir = 0, int32_t len = 0) {
        uint8_t buf[8] = {};
        return bridge->Vendor_Request(handle, req, 0, 0, dir, len, buf);
    }
    // Each test process writes its own file: CTest runs the tests side by side.
    std::string writeFile(const std::string& text) {
        const auto path = std::filesystem::temp_directory_path() /
                          ("qz7740-test-fw-" + std::to_string(::getpid()) + ".hex");
        std::ofstream(path) << text;
        written.push_back(path);
        return path.string();
    }
    void TearDown() override {
        for (const auto& p : written) std::filesystem::remove(p);
    }
    std::vector<std::filesystem::path> written;
    int32_t download(const std::string& path) {
        return bridge->Download_Firmware(handle, reinterpret_cast<const uint8_t*>(path.c_str()));
    }
};

} // namespace

TEST_F(UsbBridgeTest, SearchCountsBoardsAndGivesTheirPathBytes) {
    port->devices = {9, 12};
    int16_t count = 0;
    uint8_t paths[128] = {};
    EXPECT_EQ(bridge->Search_For_Boards(1110, 45599, count, paths), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(paths[0], 9);
    EXPECT_EQ(paths[1], 12);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::NoBoard);
}

TEST_F(UsbBridgeTest, NoBoardOrNoUsbStackIsNoDevicesFound) {
    port->devices.clear();
    int16_t count = 5;
    EXPECT_EQ(search(count), qz::status::NoDevicesFound);
    EXPECT_EQ(count, 0);

    std::vector<Transfer> other;
    auto dead = std::make_unique<ScriptedPort>(&other);
    dead->works = false;
    qz::UsbBridge noStack(std::move(dead));
    uint8_t paths[128] = {};
    count = 5;
    EXPECT_EQ(noStack.Search_For_Boards(1110, 45599, count, paths), qz::status::NoDevicesFound);
    EXPECT_EQ(count, 0);
    int32_t h = 0;
    EXPECT_EQ(noStack.Connect(1110, 45599, 0, h), qz::status::NoMatchingDevice);
    EXPECT_EQ(h, 0);
    uint8_t b = 0;
    EXPECT_EQ(noStack.Vendor_Request(h, 221, 0, 0, 0, 0, &b), qz::status::NoDeviceConnected);
}

TEST_F(UsbBridgeTest, ConnectRefusesAnUnknownPathAndAFailedOpen) {
    int16_t count = 0;
    search(count);
    EXPECT_EQ(bridge->Connect(1110, 45599, 3, handle), qz::status::NoMatchingDevice);
    port->openResult = qz::PortAccess;
    EXPECT_EQ(bridge->Connect(1110, 45599, 9, handle), qz::status::ConnectionError);
    EXPECT_EQ(handle, 0);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::NoBoard);
}

TEST_F(UsbBridgeTest, VendorRequestsAreVendorControlTransfersWithOneSecondTimeout) {
    connect();
    uint8_t dummy = 0;
    EXPECT_EQ(bridge->Vendor_Request(handle, 221, 0x2345, 0x81, 0, 0, &dummy), 0);
    uint8_t reply[3] = {};
    EXPECT_EQ(bridge->Vendor_Request(handle, 221, 0, 0, 1, 3, reply), 0);
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].type, 0x40);
    EXPECT_EQ(log[0].request, 221);
    EXPECT_EQ(log[0].value, 0x2345);
    EXPECT_EQ(log[0].index, 0x81);
    EXPECT_EQ(log[0].length, 0);
    EXPECT_EQ(log[0].timeout, 1000u);
    EXPECT_EQ(log[1].type, 0xC0);
    EXPECT_EQ(log[1].length, 3);
    EXPECT_EQ(reply[0], 0x10);
    EXPECT_EQ(reply[2], 0x12);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Connected);
}

TEST_F(UsbBridgeTest, FailedTransfersMapToStatusCodes) {
    connect();
    port->results = {qz::PortPipe, 2, qz::PortIo};
    EXPECT_EQ(request(221), qz::status::UnexpectedEndpointError);
    EXPECT_EQ(request(221, 1, 3), qz::status::TransferIncomplete);  // two bytes of three
    EXPECT_EQ(request(221), qz::status::UnexpectedEndpointError);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Connected);
    EXPECT_EQ(bridge->Vendor_Request(handle + 1, 221, 0, 0, 0, 0, nullptr),
              qz::status::NoDeviceConnected);
}

TEST_F(UsbBridgeTest, ThreeTimeoutsInARowLoseTheBoardAndLaterRequestsFailAtOnce) {
    connect();
    port->results = {qz::PortTimeout, qz::PortTimeout, 0, qz::PortTimeout, qz::PortTimeout,
                     qz::PortTimeout};
    EXPECT_EQ(request(232), qz::status::TransferIncomplete);
    EXPECT_EQ(request(232), qz::status::TransferIncomplete);
    EXPECT_EQ(request(232), 0);  // an answer breaks the row
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Connected);
    EXPECT_EQ(request(232), qz::status::TransferIncomplete);
    EXPECT_EQ(request(232), qz::status::TransferIncomplete);
    EXPECT_EQ(request(232), qz::status::TransferIncomplete);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Lost);
    const size_t made = log.size();
    for (int i = 0; i < 100; ++i) EXPECT_EQ(request(221), qz::status::NoDeviceConnected);
    EXPECT_EQ(log.size(), made) << "a lost board is not asked again";
}

TEST_F(UsbBridgeTest, UnpluggedBoardIsLostAtOnce) {
    connect();
    port->results = {qz::PortNoDevice};
    EXPECT_EQ(request(221), qz::status::NoDeviceConnected);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Lost);
}

TEST_F(UsbBridgeTest, FirmwareIsWrittenWithTheCpuHeldInReset) {
    connect();
    // 5008 bytes from 0x0000 in 16-byte records: one full block and the rest; then one
    // byte at 0x2000.
    std::string text;
    for (int addr = 0; addr < 5000; addr += 16) {
        unsigned sum = 16 + (addr >> 8) + (addr & 0xFF) + 16 * 0xAB;
        char line[64];
        std::string data;
        for (int i = 0; i < 16; ++i) data += "AB";
        std::snprintf(line, sizeof line, ":10%04X00%s%02X\n", addr, data.c_str(),
                      (0x100 - (sum & 0xFF)) & 0xFF);
        text += line;
    }
    text += ":01200000558A\n:00000001FF\n";
    const int32_t st = download(writeFile(text));
    EXPECT_EQ(st, 0);
    ASSERT_EQ(log.size(), 5u);
    EXPECT_EQ(log[0].request, 0xA0);
    EXPECT_EQ(log[0].value, 0xE600);
    EXPECT_EQ(log[0].data, std::vector<uint8_t>{1});
    EXPECT_EQ(log[1].value, 0x0000);
    EXPECT_EQ(log[1].length, 4096);
    EXPECT_EQ(log[2].value, 4096);
    EXPECT_EQ(log[2].length, 5008 - 4096);
    EXPECT_EQ(log[3].value, 0x2000);
    EXPECT_EQ(log[3].data, std::vector<uint8_t>{0x55});
    EXPECT_EQ(log[4].value, 0xE600);
    EXPECT_EQ(log[4].data, std::vector<uint8_t>{0});
    for (const Transfer& t : log) EXPECT_EQ(t.type, 0x40);
}

TEST_F(UsbBridgeTest, ADeviceThatComesBackWithItsFirmwareIsFoundAgain) {
    connect();
    ASSERT_EQ(download(writeFile(":0100000055AA\n:00000001FF\n")), 0);
    // The controller drops off the bus and comes back under address 12 after two polls.
    port->devices = {};
    port->back = {12};
    port->pausesUntilBack = 2;
    port->results = {qz::PortNoDevice};
    log.clear();
    EXPECT_EQ(request(224), 0);
    EXPECT_EQ(port->pauses, 2);
    EXPECT_EQ(port->opened.back(), 12);
    ASSERT_EQ(log.size(), 2u) << "the request is made again on the device found";
    EXPECT_EQ(log[1].request, 224);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Connected);
    // Only the first request after a download looks for it: a later unplug is a loss.
    port->results = {qz::PortNoDevice};
    EXPECT_EQ(request(221), qz::status::NoDeviceConnected);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Lost);
    EXPECT_EQ(port->pauses, 2);
}

TEST_F(UsbBridgeTest, ADeviceThatDoesNotComeBackIsLostAfterTheWait) {
    connect();
    ASSERT_EQ(download(writeFile(":0100000055AA\n:00000001FF\n")), 0);
    port->devices = {};
    port->results = {qz::PortNoDevice};
    EXPECT_EQ(request(224), qz::status::NoDeviceConnected);
    EXPECT_EQ(port->pauses, qz::UsbBridge::kReattachPolls);
    EXPECT_EQ(bridge->linkState(), qz::LinkState::Lost);
}

TEST_F(UsbBridgeTest, FirmwareFailuresHaveTheirCodes) {
    EXPECT_EQ(download(writeFile(":00000001FF\n")), qz::status::NoDeviceConnected);
    connect();
    EXPECT_EQ(download("/nonexistent/QZ7740SPI.hex"), qz::status::FirmwareNotFound);
    EXPECT_EQ(download(writeFile(":0100000055AB\n:00000001FF\n")), qz::status::FirmwareCorrupted);
    EXPECT_EQ(download(writeFile(":0100000055AA\n")), qz::status::FirmwareCorrupted);
    EXPECT_TRUE(log.empty()) << "nothing is written from a bad file";
    port->results = {1, qz::PortPipe};
    EXPECT_EQ(download(writeFile(":0100000055AA\n:00000001FF\n")),
              qz::status::FirmwareDownloadFailed);
}

TEST_F(UsbBridgeTest, FirmwarePathWithoutTerminatorWithin512CharactersIsRefused) {
    connect();
    std::vector<uint8_t> path(600, 'a');  // no NUL in the first 513 bytes
    path.back() = 0;
    EXPECT_EQ(bridge->Download_Firmware(handle, path.data()), qz::status::FirmwareNotFound);
}
