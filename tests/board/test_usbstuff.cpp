#include "board/StatusCodes.h"
#include "board/USBStuff.h"
#include "support/FakeLibrary.h"

#include <gtest/gtest.h>

#include <sstream>

using qztest::FakeLibrary;

namespace {

struct Box {
    std::string title, text;
    qz::MsgIcon icon;
};

class USBStuffTest : public ::testing::Test {
protected:
    FakeLibrary lib;
    qz::USBStuff usb{lib};
    std::vector<Box> boxes;
    std::ostringstream err;

    void SetUp() override {
        usb.messageBox = [this](const std::string& t, const std::string& x, qz::MsgIcon i) {
            boxes.push_back({t, x, i});
        };
        usb.diagnostics = &err;
        usb.applicationDirectory = "/opt/qz";
    }
};

} // namespace

TEST_F(USBStuffTest, GoodStartShowsNoMessageAndRunsTheStepsInOrder) {
    lib.boards = 2;
    usb.LoadUSB();
    EXPECT_TRUE(boxes.empty());
    EXPECT_FALSE(usb.noBoard);
    ASSERT_EQ(lib.calls.size(), 4u);
    EXPECT_EQ(lib.calls[0].op, "SEARCH");
    EXPECT_EQ(lib.calls[1].op, "CONNECT");
    EXPECT_EQ(lib.calls[1].value, 7) << "the first of the two boards found is taken";
    EXPECT_EQ(lib.calls[2].op, "FIRMWARE");
    EXPECT_EQ(lib.calls[2].path, "/opt/qz/QZ7740SPI.hex");
    EXPECT_EQ(lib.calls[3].op, "VR");
    EXPECT_EQ(lib.calls[3].request, 224);
    EXPECT_EQ(usb.hBoard, 5);
    EXPECT_EQ(usb.firmwarePath, "/opt/qz/QZ7740SPI.hex");
    EXPECT_EQ(usb.firmwareBytes[usb.firmwarePath.size()], 0);
    EXPECT_EQ(usb.firmwareBytes[0], '/');
}

TEST_F(USBStuffTest, NoBoardGivesOneBoxThenSilence) {
    lib.boards = 0;
    lib.searchStatus = 1001;
    lib.connectStatus = 2001;
    lib.firmwareStatus = 3001;
    lib.requestStatus = 3001;
    usb.LoadUSB();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].title, ": 1001");
    EXPECT_EQ(boxes[0].text, "No Evaluation Board Found");
    EXPECT_EQ(boxes[0].icon, qz::MsgIcon::Exclamation);
    EXPECT_TRUE(usb.noBoard);
    EXPECT_EQ(lib.calls.size(), 4u) << "every step is made all the same";
    EXPECT_EQ(usb.usbStatus, 3001);
}

TEST_F(USBStuffTest, NoBoardWithSuccessStatusTitlesTheBoxWithThatStatus) {
    lib.boards = 0;
    lib.searchStatus = 0;
    usb.LoadUSB();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].title, ": 0");
}

TEST_F(USBStuffTest, FailingStepsShowTheirTextsAndTheStartGoesOn) {
    lib.connectStatus = 1002;
    lib.firmwareStatus = 3003;
    lib.requestStatus = 4000;  // unknown: shows nothing
    usb.LoadUSB();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, "1002 - CONNECTION ERROR");
    EXPECT_EQ(boxes[0].title, "QZ7740");
    EXPECT_EQ(boxes[0].icon, qz::MsgIcon::None);
    EXPECT_EQ(boxes[1].text, "3003 - FIRMWARE FILE CORRUPTED");
    EXPECT_EQ(err.str(), "qz7740: firmware /opt/qz/QZ7740SPI.hex: 3003 - FIRMWARE FILE CORRUPTED\n");
}

TEST_F(USBStuffTest, EveryStepShowsItsOwnStatus) {
    // A board found with a status all the same, and a service start that fails: the
    // search's status and the last request's status each get their box, in order.
    lib.searchStatus = 1003;
    lib.requestStatus = 3010;
    usb.LoadUSB();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[0].text, "1003 - GET_STRING_DESC_FAILED");
    EXPECT_EQ(boxes[1].text, "3010 - NO FIRMWARE PRESENT");
    EXPECT_FALSE(usb.noBoard);
    EXPECT_TRUE(err.str().empty()) << "only a firmware file that fails names its path";
    lib.firmwareStatus = 3004;
    usb.LoadUSB();
    EXPECT_EQ(err.str(), "qz7740: firmware /opt/qz/QZ7740SPI.hex: 3004 - FIRMWARE DL FAILED\n");
}

TEST_F(USBStuffTest, EveryStatusCodeHasItsText) {
    const std::pair<int, const char*> table[] = {
        {1001, "1001 - NO DEVICES FOUND"},          {1002, "1002 - CONNECTION ERROR"},
        {1003, "1003 - GET_STRING_DESC_FAILED"},    {1004, "1004 - INVALID PATH"},
        {1005, "1005 - PATH NOT MATCHING"},         {2001, "2001 - NO MATCHING DEVICE"},
        {3001, "3001 - NO DEVICE CONNECTED TO DRIVER"}, {3002, "3002 - FIRMWARE FILE NOT FOUND"},
        {3003, "3003 - FIRMWARE FILE CORRUPTED"},   {3004, "3004 - FIRMWARE DL FAILED"},
        {3005, "3005 - XFER INCOMPLETE"},           {3006, "3006 - UNEXPECTED ENDPOINT ERROR"},
        {3007, "3007 - RESET FAILED"},              {3008, "3008 - INVALID EP ADDRESS"},
        {3009, "3009 - BULK TRANSFER"},             {3010, "3010 - NO FIRMWARE PRESENT"},
    };
    for (const auto& [code, text] : table) {
        boxes.clear();
        usb.ShowUSBStatus(code);
        ASSERT_EQ(boxes.size(), 1u) << code;
        EXPECT_EQ(boxes[0].text, text);
    }
    boxes.clear();
    for (int code : {0, 4000, 1000, 3011, -1}) usb.ShowUSBStatus(code);
    EXPECT_TRUE(boxes.empty());
    usb.noBoard = true;
    usb.ShowUSBStatus(1002);
    EXPECT_TRUE(boxes.empty());
}

TEST_F(USBStuffTest, OverlongFirmwarePathIsRefusedWithoutOverrun) {
    usb.applicationDirectory = "/" + std::string(520, 'd');
    usb.LoadUSB();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].text, "3002 - FIRMWARE FILE NOT FOUND");
    for (const auto& c : lib.calls) EXPECT_NE(c.op, "FIRMWARE");
    EXPECT_EQ(usb.firmwareBytes[512], 0);
    EXPECT_NE(err.str().find(usb.firmwarePath), std::string::npos);
}

TEST_F(USBStuffTest, CopyToByteBufferEndsWithZero) {
    usb.firmwareBytes.fill(0xEE);
    usb.CopyToByteBuffer("ab");
    EXPECT_EQ(usb.firmwareBytes[0], 'a');
    EXPECT_EQ(usb.firmwareBytes[1], 'b');
    EXPECT_EQ(usb.firmwareBytes[2], 0);
    EXPECT_EQ(usb.firmwareBytes[3], 0xEE);
}

TEST_F(USBStuffTest, WriteSPIWordSplitsTheWordIntoValueAndIndex) {
    usb.WriteSPIWord(0x812345);
    usb.WriteSPIWord(0);
    usb.WriteSPIWord(0x7F812345);  // bits above 23 never leave
    ASSERT_EQ(lib.calls.size(), 3u);
    EXPECT_EQ(lib.calls[0].request, 221);
    EXPECT_EQ(lib.calls[0].value, 0x2345);
    EXPECT_EQ(lib.calls[0].index, 0x81);
    EXPECT_EQ(lib.calls[0].direction, 0);
    EXPECT_EQ(lib.calls[0].length, 0);
    EXPECT_EQ(lib.calls[1].value, 0);
    EXPECT_EQ(lib.calls[1].index, 0);
    EXPECT_EQ(lib.calls[2].index, 0x81);
}

TEST_F(USBStuffTest, RepliesAreLeastSignificantByteFirst) {
    lib.replies = {{0x34, 0x12, 0x02}, {0x34, 0x12, 0x02}};
    EXPECT_EQ(usb.ReadSPIWord(), 0x021234);
    EXPECT_EQ(usb.ReadADCWord(), 0x1234);
    EXPECT_EQ(lib.calls[0].request, 221);
    EXPECT_EQ(lib.calls[0].direction, 1);
    EXPECT_EQ(lib.calls[0].length, 3);
    EXPECT_EQ(lib.calls[1].request, 233);
}

TEST_F(USBStuffTest, FailedReadGivesWhatTheBufferLastHeld) {
    EXPECT_EQ(usb.ReadSPIWord(), 0) << "nothing has ever arrived";
    lib.replies = {{0x50, 0x99, 0x02}};
    EXPECT_EQ(usb.ReadSPIWord(), 0x029950);
    lib.requestStatus = 3005;
    lib.replies = {{0xAA, 0xBB, 0xCC}};  // garbage of a failed transfer
    EXPECT_EQ(usb.ReadSPIWord(), 0x029950);
    EXPECT_EQ(usb.usbStatus, 3005);
}

TEST_F(USBStuffTest, I2CWrappersLeaveTheStatusAlone) {
    usb.usbStatus = 17;
    lib.requestStatus = 3001;
    lib.replies = {{41}};
    EXPECT_EQ(usb.WriteI2C(0x55, 3), 3001);
    usb.ReadI2C(1);
    EXPECT_EQ(usb.usbStatus, 17);
    EXPECT_EQ(lib.calls[0].request, 236);
    EXPECT_EQ(lib.calls[0].value, 3);
    EXPECT_EQ(lib.calls[0].index, 0x55);
    EXPECT_EQ(lib.calls[1].value, 1);
    EXPECT_EQ(lib.calls[1].direction, 1);
    EXPECT_EQ(lib.calls[1].length, 1);
    lib.requestStatus = 0;
    lib.replies = {{41}};
    EXPECT_EQ(usb.ReadI2C(1), 41);
    EXPECT_EQ(usb.replyBuffer[0], 41);
}

TEST_F(USBStuffTest, SwitchRequestCanLeaveTheStatusAlone) {
    lib.requestStatus = 3001;
    usb.usbStatus = 0;
    usb.SendRequest(228, 2, false);
    EXPECT_EQ(usb.usbStatus, 0);
    usb.SendRequest(228, 2);
    EXPECT_EQ(usb.usbStatus, 3001);
    EXPECT_EQ(lib.calls[0].value, 2);
}

TEST_F(USBStuffTest, LinkChangesAreReported) {
    std::vector<qz::LinkState> seen;
    usb.onLinkChange = [&](qz::LinkState s) { seen.push_back(s); };
    usb.WriteSPIWord(1);
    EXPECT_TRUE(seen.empty());
    lib.link = qz::LinkState::Lost;
    usb.WriteSPIWord(1);
    usb.WriteSPIWord(1);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0], qz::LinkState::Lost);
    EXPECT_STREQ(qz::linkText(qz::LinkState::Lost), "board lost");
    EXPECT_STREQ(qz::linkText(qz::LinkState::Virtual), "virtual board");
    EXPECT_STREQ(qz::linkText(qz::LinkState::Connected), "board connected");
    EXPECT_STREQ(qz::linkText(qz::LinkState::NoBoard), "no board");
}
