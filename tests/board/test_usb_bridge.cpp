#include "board/IntelHex.h"
#include "board/StatusCodes.h"
#include "board/UsbBridge.h"
#include "board/Wire.h"
#include "support/FirmwareImage.h"

#include <QTemporaryDir>


#include <gtest/gtest.h>

#include <cstdio>
#include <deque>
#include <fstream>

namespace wire = qz::wire;
namespace status = qz::status;
using Rows = std::vector<std::vector<int>>;
using Bytes = std::vector<uint8_t>;

namespace {

// A USB stack that answers from a script and logs every transfer.
class ScriptedPort : public qz::UsbPort {
public:
    Bytes devices{1, 2};  // path bytes of the boards attached
    int openResult = 0, pauses = 0, pausesUntilBack = -1;  // then the boards are `back`
    Bytes opened, back;
    std::deque<int> results;  // of the next transfers; when empty, every transfer completes
    Rows sent;                // type, request, value, index, length, time-out of each transfer
    std::vector<Bytes> data;

    bool init() override { return true; }
    Bytes list(uint16_t vendor, uint16_t product) override {
        return vendor == 0x0456 && product == 0xB21F ? devices : Bytes{};
    }
    std::string deniedNode() const override { return "/dev/bus/usb/001/007"; }
    int open(uint16_t, uint16_t, uint8_t path) override {
        opened.push_back(path);
        return openResult;
    }
    void pause(unsigned) override { devices = ++pauses == pausesUntilBack ? back : devices; }
    int control(uint8_t type, uint8_t request, uint16_t value, uint16_t index, uint8_t* bytes,
                uint16_t length, unsigned ms) override {
        sent.push_back({type, request, value, index, length, int(ms)});
        data.emplace_back(bytes, bytes + length);
        for (uint16_t i = 0; type == 0xC0 && i < length; ++i) bytes[i] = uint8_t(0x10 + i);
        if (results.empty()) return length;
        const int r = results.front();
        results.pop_front();
        return r;
    }
};

class UsbBridgeTest : public ::testing::Test {
protected:
    ScriptedPort* port = new ScriptedPort;
    qz::UsbBridge bridge{std::unique_ptr<qz::UsbPort>(port)};
    int32_t handle = 0;
    int16_t count = 0;
    uint8_t paths[128] = {};
    QTemporaryDir dir;

    void connect() {
        ASSERT_EQ(bridge.Search_For_Boards(1110, 45599, count, paths), 0);
        ASSERT_EQ(bridge.Connect(1110, 45599, 2, handle), 0);
        port->sent.clear();
    }
    int32_t request(int32_t req, int32_t v = 0, int32_t i = 0, int32_t dir = 0, int32_t len = 0) {
        uint8_t buf[8] = {};
        return bridge.Vendor_Request(handle, req, v, i, dir, len, buf);
    }
    int32_t download(const std::string& text) {
        const std::string path = dir.filePath("QZ7740SPI.hex").toStdString();
        std::ofstream(path) << text;
        return bridge.Download_Firmware(handle, reinterpret_cast<const uint8_t*>(path.c_str()));
    }
};

const char* kOneByte = ":0100000055AA\n:00000001FF\n";

} // namespace

TEST_F(UsbBridgeTest, BoardsAreFoundByPathByteAndRequestsAreControlTransfersInRange) {
    qz::UsbBridge noStack{nullptr};  // no USB stack at all
    EXPECT_EQ(noStack.Search_For_Boards(1110, 45599, count, paths), status::NoDevicesFound);
    EXPECT_EQ(bridge.Search_For_Boards(1110, 45599, count, paths), 0);
    EXPECT_EQ(Rows({{count, paths[0], paths[1]}}), Rows({{2, 1, 2}}));
    EXPECT_EQ(bridge.Connect(1110, 45599, 3, handle), status::NoMatchingDevice);
    connect();
    const int word = wire::kSpiWord;
    EXPECT_EQ(request(word, 0x2345, 0x81), 0);
    EXPECT_EQ(request(word, 0, 0, 1, 3), 0);
    EXPECT_EQ(request(255, 0xFFFF, 0xFFFF), 0);
    EXPECT_EQ(port->sent, (Rows{{0x40, word, 0x2345, 0x81, 0, 1000}, {0xC0, word, 0, 0, 3, 1000},
                                {0x40, 255, 0xFFFF, 0xFFFF, 0, 1000}}));
    // What a transfer cannot carry is refused as the board refuses it, not sent cut short.
    for (const auto& [req, value, index] : std::vector<std::tuple<int, int, int>>{
             {256, 0, 0}, {-1, 0, 0}, {word, 0x10000, 0}, {word, -1, 0}, {word, 0, 0x10000},
             {word, 0, -1}})
        EXPECT_EQ(request(req, value, index), status::UnexpectedEndpointError) << req;
    EXPECT_EQ(bridge.Vendor_Request(2, word, 0, 0, 0, 0, nullptr), status::NoDeviceConnected);
    EXPECT_EQ(port->sent.size(), 3u);
    EXPECT_EQ(bridge.connectProblem(), "");
    port->openResult = qz::PortAccess;
    EXPECT_EQ(bridge.Connect(1110, 45599, 1, handle), status::ConnectionError);
    EXPECT_EQ(bridge.connectProblem(),
              "permission denied on /dev/bus/usb/001/007: install the udev rule "
              "udev/60-qz7740.rules (README, \"A real board\") and plug the board in again");
    port->openResult = qz::PortBusy;
    EXPECT_EQ(bridge.Connect(1110, 45599, 1, handle), status::ConnectionError);
    EXPECT_EQ(bridge.connectProblem(), "") << "only a refused permission has more to say";
    port->devices.clear();
    EXPECT_EQ(bridge.Search_For_Boards(1110, 45599, count, paths), status::NoDevicesFound);
    EXPECT_EQ(count, 0);
}

TEST_F(UsbBridgeTest, FailedTransfersHaveTheirCodesAndThreeTimeOutsLoseTheBoard) {
    connect();
    port->results = {qz::PortPipe, 2, qz::PortTimeout, qz::PortTimeout, 0,
                     qz::PortTimeout, qz::PortTimeout, qz::PortTimeout};
    EXPECT_EQ(request(wire::kSpiWord), status::UnexpectedEndpointError);
    EXPECT_EQ(request(wire::kSpiWord, 0, 0, 1, 3), status::TransferIncomplete);  // 2 bytes of 3
    for (int32_t expected : {3005, 3005, 0, 3005, 3005}) {  // an answer breaks the row
        EXPECT_EQ(request(wire::kAdcConvert), expected);
        EXPECT_EQ(bridge.linkState(), qz::LinkState::Connected);
    }
    EXPECT_EQ(request(wire::kAdcConvert), status::TransferIncomplete);
    EXPECT_EQ(bridge.linkState(), qz::LinkState::Lost);
    EXPECT_EQ(request(wire::kSpiWord), status::NoDeviceConnected);
    EXPECT_EQ(port->sent.size(), 8u) << "a lost board is not asked again";
}

TEST_F(UsbBridgeTest, FirmwareGoesInBlocksWithTheCpuHeldInResetOrFailsWithItsCode) {
    connect();
    EXPECT_EQ(download(qztest::firmwareImage()), 0);
    const int load = 0xA0, cpu = 0xE600;
    EXPECT_EQ(port->sent, (Rows{{0x40, load, cpu, 0, 1, 1000}, {0x40, load, 0, 0, 4096, 1000},
                                {0x40, load, 4096, 0, 5008 - 4096, 1000},
                                {0x40, load, 0x2000, 0, 1, 1000}, {0x40, load, cpu, 0, 1, 1000}}));
    EXPECT_EQ(port->data.at(0), Bytes{1});  // hold
    EXPECT_EQ(port->data.at(4), Bytes{0});  // release
    port->sent.clear();
    const auto* missing = reinterpret_cast<const uint8_t*>("/nonexistent/QZ7740SPI.hex");
    EXPECT_EQ(bridge.Download_Firmware(handle, missing), status::FirmwareNotFound);
    EXPECT_EQ(download(":0100000055AB\n:00000001FF\n"), status::FirmwareCorrupted);  // checksum
    EXPECT_EQ(download(":0100000055AA\n"), status::FirmwareCorrupted);  // no end record
    EXPECT_TRUE(port->sent.empty()) << "nothing is written from a bad file";
    for (int fails : {qz::PortPipe, qz::PortTimeout}) {
        port->results = {1, fails};
        EXPECT_EQ(download(kOneByte), status::FirmwareDownloadFailed);
    }
}

TEST_F(UsbBridgeTest, OnlyTheBoardThatWasConnectedIsLookedForAfterItsDownload) {
    connect();
    ASSERT_EQ(download(kOneByte), 0);
    // Board 2 leaves the bus and comes back after two polls; board 1 stays all the while.
    port->devices = {1};
    port->back = {1, 2};
    port->pausesUntilBack = 2;
    port->results = {qz::PortNoDevice};
    EXPECT_EQ(request(wire::kStartService), 0);
    EXPECT_EQ(port->opened, (Bytes{2, 2}));
    EXPECT_EQ(port->sent.at(4), (std::vector<int>{0x40, wire::kStartService, 0, 0, 0, 1000}))
        << "after the download's three transfers and the failed 224, 224 again";
    EXPECT_EQ(bridge.linkState(), qz::LinkState::Connected);
    port->results = {qz::PortNoDevice};  // unplugged later: lost at once, not looked for
    EXPECT_EQ(request(wire::kSpiWord), status::NoDeviceConnected);
    EXPECT_EQ(bridge.linkState(), qz::LinkState::Lost);
    EXPECT_EQ(port->pauses, 2);
    // A board that does not come back is lost after the wait; the other is never taken.
    connect();
    ASSERT_EQ(download(kOneByte), 0);
    port->devices = {1};
    port->results = {qz::PortNoDevice};
    EXPECT_EQ(request(wire::kStartService), status::NoDeviceConnected);
    EXPECT_EQ(port->pauses, 2 + qz::UsbBridge::kReattachPolls);
    EXPECT_EQ(port->opened, (Bytes{2, 2, 2}));
    EXPECT_EQ(bridge.linkState(), qz::LinkState::Lost);
}

TEST(IntelHex, ARecordNotOfTheFileFormIsRefused) {
    // No colon, short, not hexadecimal, a sign or space for a digit, type 06, 0x10000, past 0xFFFF.
    for (const char* record : {"0100000055AA", ":0400000002001EDC", ":04000000020G1E00DC",
                               ":+100000055AA", ": 100000055AA", ":0400000602001E00D6",
                               ":020000040001F9\n:0100000055AA", ":02FFFF00AABB9B"})
        EXPECT_FALSE(qz::parseIntelHex(record + std::string("\n:00000001FF\n")).ok) << record;
}
