// The program's USB path (UsbBridge over LibusbPort over the real libusb) on a board that
// umockdev emulates: the search, the firmware download and the board's return under a
// new number, the words as setup packets, a sweep against the same sweep on the virtual
// board, a board pulled out in mid-run, and a board that stalls or stops answering.

#include "emulated/EmulatedBoard.h"

#include "board/LibusbPort.h"
#include "board/StatusCodes.h"
#include "board/TraceLibrary.h"
#include "board/UsbBridge.h"
#include "board/VirtualBoard.h"
#include "board/Wire.h"
#include "registers/Session.h"
#include "runs/Clock.h"
#include "runs/Sweep.h"
#include "support/FirmwareImage.h"
#include "support/TraceFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>
#include <sstream>

namespace status = qz::status;
using qz::EmulatedBoard;

namespace {

constexpr uint8_t kOut = 0x40, kIn = 0xC0, kLoad = 0xA0;

class Emulated : public ::testing::Test {
  protected:
    void SetUp() override {
        dir = board.root() + "/firmware";
        std::filesystem::create_directories(dir);
        std::ofstream(dir + "/QZ7740SPI.hex") << qztest::firmwareImage();
    }

    // The program's session on the USB path, traced.
    std::unique_ptr<qz::Session> usbSession(qztest::TraceFile& trace) {
        return session(std::make_unique<qz::UsbBridge>(std::make_unique<qz::LibusbPort>()), trace);
    }
    std::unique_ptr<qz::Session> session(std::unique_ptr<qz::BridgeLibrary> library, qztest::TraceFile& trace) {
        std::string why;
        auto s = std::make_unique<qz::Session>(qz::TraceLibrary::open(std::move(library), trace.path(), why));
        s->usb.applicationDirectory = dir;
        s->usb.messageBox = [this](const std::string& title, const std::string& text, qz::MsgIcon) {
            messages.push_back(title + "|" + text);
        };
        s->usb.diagnostics = &diagnostics;
        return s;
    }

    EmulatedBoard board;
    std::string dir;
    std::vector<std::string> messages;
    std::ostringstream diagnostics;
};

// A sweep of n + 1 points from code start in steps of step codes, with no waits.
qz::SweepPlan sweepPlan(int32_t start, int32_t step, int32_t n) {
    qz::SweepPlan plan;
    plan.scaling = {5.0f, 0x8000, 20.0f, 200.0f};
    plan.startCode = start;
    plan.stepCode = step;
    plan.n = n;
    plan.endCode = start + n * step;
    return plan;
}

std::vector<std::string> from(const std::vector<std::string>& lines, const std::string& head) {
    for (size_t i = 0; i < lines.size(); ++i)
        if (lines[i].rfind(head, 0) == 0) return {lines.begin() + static_cast<long>(i), lines.end()};
    return {};
}

} // namespace

TEST_F(Emulated, TheSearchFindsEachBoardWithAPathByteOfItsOwn) {
    board.plug(1);
    qz::UsbBridge bridge(std::make_unique<qz::LibusbPort>());
    int16_t count = 0;
    uint8_t paths[128] = {};
    EXPECT_EQ(bridge.Search_For_Boards(qz::kBoardVendor, qz::kBoardProduct, count, paths), status::OK);
    ASSERT_EQ(count, 1);
    board.plug(2);
    // The stack hears of the second board from its own hot-plug events.
    for (int i = 0; i < 100 && count < 2; ++i) {
        bridge.Search_For_Boards(qz::kBoardVendor, qz::kBoardProduct, count, paths);
        if (count < 2) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    ASSERT_EQ(count, 2);
    EXPECT_NE(paths[0], paths[1]);
    EXPECT_NE(paths[0], 0);
    EXPECT_NE(paths[1], 0);
    EXPECT_EQ(bridge.Search_For_Boards(qz::kBoardVendor, 0x1234, count, paths), status::NoDevicesFound);
    EXPECT_EQ(count, 0);
}

TEST_F(Emulated, TheDownloadSendsTheFileBetweenHoldAndFreeAndTheBoardComesBackUnderANewNumber) {
    board.plug(1);
    qz::UsbBridge bridge(std::make_unique<qz::LibusbPort>());
    int16_t count = 0;
    uint8_t paths[128] = {};
    int32_t handle = 0;
    ASSERT_EQ(bridge.Search_For_Boards(qz::kBoardVendor, qz::kBoardProduct, count, paths), status::OK);
    ASSERT_EQ(bridge.Connect(qz::kBoardVendor, qz::kBoardProduct, paths[0], handle), status::OK);

    const std::string missing = dir + "/none.hex", damaged = dir + "/damaged.hex";
    std::ofstream(damaged) << ":0100000055AB\n:00000001FF\n";
    EXPECT_EQ(bridge.Download_Firmware(handle, reinterpret_cast<const uint8_t*>(missing.c_str())),
              status::FirmwareNotFound);
    EXPECT_EQ(bridge.Download_Firmware(handle, reinterpret_cast<const uint8_t*>(damaged.c_str())),
              status::FirmwareCorrupted);
    EXPECT_TRUE(board.transfers().empty()) << "nothing reached the device";

    const std::string good = dir + "/QZ7740SPI.hex";
    EXPECT_EQ(bridge.Download_Firmware(handle, reinterpret_cast<const uint8_t*>(good.c_str())), status::OK);
    const auto t = board.transfers();
    struct Expected {
        uint16_t value, length;
        uint8_t first;
    };
    const Expected expected[] = {{0xE600, 1, 1}, {0x0000, 4096, 0xAB}, {0x1000, 912, 0xAB}, {0x2000, 1, 0x55},
                                 {0xE600, 1, 0}};
    ASSERT_EQ(t.size(), std::size(expected));
    for (size_t i = 0; i < t.size(); ++i) {
        EXPECT_EQ(t[i].type, kOut) << i;
        EXPECT_EQ(t[i].request, kLoad) << i;
        EXPECT_EQ(t[i].value, expected[i].value) << i;
        EXPECT_EQ(t[i].index, 0) << i;
        ASSERT_EQ(t[i].data.size(), expected[i].length) << i;
        EXPECT_EQ(t[i].data[0], expected[i].first) << i;
        EXPECT_EQ(t[i].devnum, 2) << i;
    }
    EXPECT_EQ(t[2].data[911], 0xAB) << "the last of the 5,008";

    // The first request after the download finds the board under its new number.
    uint8_t none = 0;
    EXPECT_EQ(bridge.Vendor_Request(handle, qz::wire::kStartService, 0, 0, 0, 0, &none), status::OK);
    EXPECT_EQ(board.devnum(0), 3);
    ASSERT_EQ(board.transfers().size(), std::size(expected) + 1);
    EXPECT_EQ(board.transfers().back().devnum, 3);
    EXPECT_EQ(board.transfers().back().request, qz::wire::kStartService);
    EXPECT_EQ(bridge.linkState(), qz::LinkState::Connected);
}

TEST_F(Emulated, ABoardThatDoesNotComeBackLeavesTheProgramWithoutABoard) {
    board.comesBack = false;
    board.plug(1);
    qztest::TraceFile trace;
    auto s = usbSession(trace);
    s->usb.LoadUSB();
    EXPECT_EQ(s->usb.usbStatus, status::NoDeviceConnected) << "the start request's status";
    EXPECT_EQ(s->usb.linkState(), qz::LinkState::Lost);
    trace.fresh();
    s->SPIout(0x012200);
    EXPECT_EQ(trace.fresh(), std::vector<std::string>{"VR 221 2200 0001 OUT 0 -> 3001"})
        << "it fails at once, and the program goes on";
}

TEST_F(Emulated, EveryWordReachesTheChipAsTheSetupPacketTheTraceNames) {
    board.plug(1);
    qztest::TraceFile trace;
    auto s = usbSession(trace);
    s->usb.LoadUSB();
    EXPECT_EQ(s->usb.usbStatus, status::OK);
    for (int32_t word : {0x012200, 0x029950, 0x030000, 0x06AA80, 0x080000 | 0x9000})
        s->SPIout(word);
    const int32_t sys = s->readWord(0x810000);
    EXPECT_EQ(sys & 0xFFFF, 0x2200);
    EXPECT_EQ(board.chip(0).reg(0x08), 0x9000);

    // Each request of the trace, after the firmware, is one control transfer of the board.
    std::vector<EmulatedBoard::Transfer> sent;
    for (const auto& t : board.transfers())
        if (t.request != kLoad) sent.push_back(t);
    const std::vector<std::string> lines = from(trace.lines(), "VR ");
    ASSERT_EQ(lines.size(), sent.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        unsigned request = 0, value = 0, index = 0, length = 0;
        char dir[4] = {};
        ASSERT_EQ(std::sscanf(lines[i].c_str(), "VR %u %x %x %3s %u", &request, &value, &index, dir, &length), 5)
            << lines[i];
        EXPECT_EQ(sent[i].type, std::string(dir) == "IN" ? kIn : kOut) << lines[i];
        EXPECT_EQ(sent[i].request, request) << lines[i];
        EXPECT_EQ(sent[i].value, value) << lines[i];
        EXPECT_EQ(sent[i].index, index) << lines[i];
        EXPECT_EQ(sent[i].length, length) << lines[i];
    }
}

TEST_F(Emulated, AThousandPointSweepGivesTheTraceAndTheListOfTheVirtualBoard) {
    board.plug(1);
    qztest::TraceFile usbTrace, virtualTrace;
    auto usb = usbSession(usbTrace);
    auto simulated = session(std::make_unique<qz::VirtualBoard>(), virtualTrace);
    std::vector<std::string> lists[2];
    qz::Session* sessions[2] = {usb.get(), simulated.get()};
    for (int k = 0; k < 2; ++k) {
        qz::Session& s = *sessions[k];
        s.usb.LoadUSB();
        for (int32_t word : {0x012200, 0x029950, 0x0B8000})
            s.SPIout(word);
        const qz::SweepPlan plan = sweepPlan(0x4000, 16, 999);
        qz::SteppedClock clock;
        qz::MeasureArrays arrays;
        const qz::RunContext ctx{s, clock, [](const qz::RunProgress&) { return true; },
                                 [&, k](std::string line) { lists[k].push_back(std::move(line)); }};
        EXPECT_EQ(qz::runSweep(ctx, plan, arrays).points, 1000);
    }
    EXPECT_EQ(lists[0], lists[1]);
    EXPECT_EQ(lists[0].size(), 1001u);
    EXPECT_EQ(from(usbTrace.lines(), "FIRMWARE "), from(virtualTrace.lines(), "FIRMWARE "));
    EXPECT_GT(usbTrace.lines().size(), 1000u * 17) << "a word and eight readings a point";
}

TEST_F(Emulated, ABoardPulledOutInMidRunIsLostWithinARequestAndNothingHangs) {
    board.plug(1);
    qztest::TraceFile trace;
    auto s = usbSession(trace);
    std::vector<qz::LinkState> links;
    s->usb.onLinkChange = [&](qz::LinkState l) { links.push_back(l); };
    s->usb.LoadUSB();
    const qz::SweepPlan plan = sweepPlan(0, 100, 100);
    qz::SteppedClock clock;
    qz::MeasureArrays arrays;
    size_t linesAtUnplug = 0;
    std::vector<std::string> list;
    const qz::RunContext ctx{*s, clock,
                             [&](const qz::RunProgress& p) {
                                 if (p.point == 9) {
                                     board.unplug(0);
                                     linesAtUnplug = trace.lines().size();
                                 }
                                 return true;
                             },
                             [&](std::string line) { list.push_back(std::move(line)); }};
    qz::runSweep(ctx, plan, arrays);
    EXPECT_EQ(s->usb.linkState(), qz::LinkState::Lost);
    ASSERT_FALSE(links.empty());
    EXPECT_EQ(links.back(), qz::LinkState::Lost);
    // The first request after the pull fails as no device, and every one after it at once.
    const std::vector<std::string> lines = trace.lines();
    ASSERT_GT(lines.size(), linesAtUnplug);
    EXPECT_NE(lines[linesAtUnplug].find("-> 3001"), std::string::npos) << lines[linesAtUnplug];
    EXPECT_EQ(list.size(), 102u) << "the points already taken stay in the list";
}

// One read of the chip's reply, straight through the bridge library.
int32_t ask(qz::Session& s, uint8_t* reply) {
    return s.usb.library().Vendor_Request(s.usb.hBoard, qz::wire::kSpiWord, 0, 0, 1, 3, reply);
}

TEST_F(Emulated, AStalledRequestAndABoardThatStopsAnsweringHaveTheirStatusCodes) {
    board.plug(1);
    qztest::TraceFile trace;
    auto s = usbSession(trace);
    s->usb.LoadUSB();
    uint8_t reply[3] = {};
    board.stallRequests = 1;
    EXPECT_EQ(ask(*s, reply), status::UnexpectedEndpointError);
    EXPECT_EQ(ask(*s, reply), status::OK) << "one stall only";
    // Three time-outs in a row, a second each, lose the board; then requests fail at once.
    board.holdAnswers = true;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(ask(*s, reply), status::TransferIncomplete) << i;
    EXPECT_EQ(s->usb.linkState(), qz::LinkState::Lost);
    EXPECT_EQ(ask(*s, reply), status::NoDeviceConnected);
}

