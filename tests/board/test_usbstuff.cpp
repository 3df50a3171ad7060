#include "board/TraceLibrary.h"
#include "board/USBStuff.h"
#include "board/Wire.h"
#include "support/FakeLibrary.h"
#include "support/TraceFile.h"

#include <gtest/gtest.h>

#include <sstream>

using Lines = std::vector<std::string>;

namespace {

class USBStuffTest : public ::testing::Test {
protected:
    qztest::TraceFile trace;
    std::string why;
    std::unique_ptr<qz::TraceLibrary> traced =
        qz::TraceLibrary::open(std::make_unique<qztest::FakeLibrary>(), trace.path(), why);
    qztest::FakeLibrary& lib = static_cast<qztest::FakeLibrary&>(traced->inner());
    qz::USBStuff usb{*traced};
    Lines boxes;  // "text", "title|text" unless the title is the program's, "|!": exclamation
    std::ostringstream err;

    void SetUp() override {
        usb.messageBox = [this](const std::string& t, const std::string& x, qz::MsgIcon i) {
            boxes.push_back((t == qz::kAppTitle ? "" : t + '|') + x +
                            (i == qz::MsgIcon::Exclamation ? "|!" : ""));
        };
        usb.diagnostics = &err;
        usb.applicationDirectory = "/opt/qz";
    }
};

} // namespace

// The request numbers stand here as the trace writes them: the numbers on the wire.
TEST_F(USBStuffTest, AGoodStartTakesTheFirstBoardShowsNothingAndTracesOneLineACall) {
    lib.boards = 2;
    lib.replies = {{0xCD, 0xAB, 0x0A}, {0x40}, {0xEE, 0xEE}};
    usb.LoadUSB();
    usb.WriteSPIWord(0x0AABCD);
    EXPECT_EQ(usb.ReadSPIWord(), 0x0AABCD);
    usb.ReadI2C(16);
    lib.requestStatus = 3006;
    usb.SendRequest(231);
    usb.ReadSPIWord();  // refused: the bytes in the buffer are not the board's
    EXPECT_TRUE(boxes.empty());
    EXPECT_EQ(trace.lines(), (Lines{"SEARCH 1110 45599 -> 2 0", "CONNECT 7 -> 5 0",
                                    "FIRMWARE /opt/qz/QZ7740SPI.hex -> 0",
                                    "VR 224 0000 0000 OUT 0 -> 0", "VR 221 ABCD 000A OUT 0 -> 0",
                                    "VR 221 0000 0000 IN 3 -> 0 : CD AB 0A",
                                    "VR 236 0010 0000 IN 1 -> 0 : 40",
                                    "VR 231 0000 0000 OUT 0 -> 3006",
                                    "VR 221 0000 0000 IN 3 -> 3006 :"}));
    EXPECT_FALSE(qz::TraceLibrary::open(std::make_unique<qztest::FakeLibrary>(), "/none/t", why));
}

TEST_F(USBStuffTest, NoBoardGivesOneBoxTitledWithTheSearchStatusThenSilence) {
    lib.boards = 0;  // found with status 0 all the same: the title carries the status
    lib.connectStatus = 2001;
    lib.firmwareStatus = lib.requestStatus = 3001;
    usb.LoadUSB();
    EXPECT_EQ(boxes, Lines{": 0|No Evaluation Board Found|!"});
    EXPECT_EQ(usb.usbStatus, 3001) << "every step is made all the same";
}

TEST_F(USBStuffTest, EachFailingStepShowsItsTextAndTheStartGoesOn) {
    lib.searchStatus = 1003;  // a board found with a status all the same
    lib.connectStatus = 1002;
    lib.connectWhy = "permission denied on /dev/bus/usb/001/004: install the udev rule";
    lib.firmwareStatus = 3003;
    lib.requestStatus = 3010;
    usb.LoadUSB();
    EXPECT_EQ(boxes, (Lines{"1003 - GET_STRING_DESC_FAILED", "1002 - CONNECTION ERROR",
                            "3003 - FIRMWARE FILE CORRUPTED", "3010 - NO FIRMWARE PRESENT"}));
    EXPECT_EQ(err.str(),
              "qz7740: permission denied on /dev/bus/usb/001/004: install the udev rule\n"
              "qz7740: firmware /opt/qz/QZ7740SPI.hex: 3003 - FIRMWARE FILE CORRUPTED\n");
    lib.connectWhy.clear();
    for (int32_t firmware : {3001, 3002, 3004}) {  // only a file that fails names its path
        err.str("");
        lib.firmwareStatus = firmware;
        usb.LoadUSB();
        EXPECT_EQ(err.str().empty(), firmware == 3001) << firmware;
    }
    usb.applicationDirectory = "/" + std::string(520, 'd');  // too long for the library
    usb.LoadUSB();
    EXPECT_EQ(boxes.at(boxes.size() - 2), "3002 - FIRMWARE FILE NOT FOUND");
}

TEST_F(USBStuffTest, EveryStatusCodeHasItsTextAndNoOtherCodeShowsABox) {
    const Lines texts = {
        "1001 - NO DEVICES FOUND", "1002 - CONNECTION ERROR", "1003 - GET_STRING_DESC_FAILED",
        "1004 - INVALID PATH", "1005 - PATH NOT MATCHING", "2001 - NO MATCHING DEVICE",
        "3001 - NO DEVICE CONNECTED TO DRIVER", "3002 - FIRMWARE FILE NOT FOUND",
        "3003 - FIRMWARE FILE CORRUPTED", "3004 - FIRMWARE DL FAILED", "3005 - XFER INCOMPLETE",
        "3006 - UNEXPECTED ENDPOINT ERROR", "3007 - RESET FAILED", "3008 - INVALID EP ADDRESS",
        "3009 - BULK TRANSFER", "3010 - NO FIRMWARE PRESENT"};
    for (const std::string& text : texts) usb.ShowUSBStatus(std::stoi(text));
    for (int code : {0, 4000, 1000, 1006, 2002, 3011, -1}) usb.ShowUSBStatus(code);
    usb.noBoard = true;
    usb.ShowUSBStatus(1002);
    EXPECT_EQ(boxes, texts);
}

TEST_F(USBStuffTest, RepliesJoinLowByteFirstAndAFailedReadGivesWhatTheBufferHeld) {
    usb.WriteSPIWord(0x7F812345);  // bits above 23 never leave
    EXPECT_EQ(lib.calls[0].index, 0x81);
    lib.replies = {{0x34, 0x12, 0x02}, {0x34, 0x12, 0x02}, {0xAA, 0xBB, 0xCC}};
    EXPECT_EQ(usb.ReadSPIWord(), 0x021234);
    EXPECT_EQ(usb.ReadADCWord(), 0x1234);
    lib.requestStatus = 3005;
    EXPECT_EQ(usb.ReadSPIWord(), 0x021234);
    EXPECT_EQ(usb.usbStatus, 3005);
    // The sensor requests and the console's switch request leave usbStatus alone.
    usb.usbStatus = 17;
    EXPECT_EQ(usb.WriteI2C(0x55, 3), 3005);
    EXPECT_EQ(lib.calls.back().index, 0x55);
    usb.ReadI2C(1);
    usb.SendRequest(qz::wire::kSwitchChannel, 2, false);
    EXPECT_EQ(usb.usbStatus, 17);
    usb.SendRequest(qz::wire::kSwitchChannel, 2);
    EXPECT_EQ(usb.usbStatus, 3005);
}

TEST_F(USBStuffTest, LinkChangesAreReportedOnceWithTheirWords) {
    Lines seen;
    usb.onLinkChange = [&](qz::LinkState s) { seen.push_back(qz::linkText(s)); };
    for (auto state : {qz::LinkState::Connected, qz::LinkState::NoBoard, qz::LinkState::NoBoard,
                       qz::LinkState::Virtual, qz::LinkState::Lost, qz::LinkState::Connected}) {
        lib.link = state;
        usb.WriteSPIWord(1);
    }
    EXPECT_EQ(seen, (Lines{"no board", "virtual board", "board lost", "board connected"}));
}
