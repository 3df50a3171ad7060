#include "board/StatusCodes.h"
#include "board/VirtualBoard.h"

#include <gtest/gtest.h>

namespace {

class VirtualBoardTest : public ::testing::Test {
protected:
    qz::VirtualBoard board;
    int32_t handle = 0;

    void SetUp() override {
        int16_t count = 0;
        uint8_t paths[128] = {};
        ASSERT_EQ(board.Search_For_Boards(1110, 45599, count, paths), 0);
        ASSERT_EQ(count, 1);
        ASSERT_EQ(board.Connect(1110, 45599, paths[0], handle), 0);
        ASSERT_EQ(handle, 1);
        ASSERT_EQ(board.Download_Firmware(handle, nullptr), 0);
        ASSERT_EQ(out(224), 0);
    }
    int32_t out(int32_t req, int32_t value = 0, int32_t index = 0) {
        uint8_t d = 0;
        return board.Vendor_Request(handle, req, value, index, 0, 0, &d);
    }
    int32_t word(int32_t w) { return out(221, w & 0xFFFF, (w >> 16) & 0xFF); }
    int32_t fetch() {
        uint8_t b[3] = {};
        EXPECT_EQ(board.Vendor_Request(handle, 221, 0, 0, 1, 3, b), 0);
        return b[0] | b[1] << 8 | b[2] << 16;
    }
    int32_t read(int address) {
        word((address + 128) << 16);
        return fetch();
    }
};

} // namespace

TEST(VirtualBoardStart, NothingAnswersBeforeTheServiceStarts) {
    qz::VirtualBoard board;
    uint8_t d = 0;
    EXPECT_EQ(board.Vendor_Request(1, 221, 0, 1, 0, 0, &d), qz::status::NoDeviceConnected);
    int32_t h = 0;
    EXPECT_EQ(board.Connect(1110, 45599, 2, h), qz::status::NoMatchingDevice);
    board.Connect(1110, 45599, 1, h);
    EXPECT_EQ(board.Vendor_Request(h, 221, 0, 1, 0, 0, &d), qz::status::NoFirmwarePresent);
    board.Download_Firmware(h, nullptr);
    EXPECT_EQ(board.Vendor_Request(h, 221, 0, 1, 0, 0, &d), qz::status::NoFirmwarePresent);
    EXPECT_FALSE(board.serviceRunning());
    EXPECT_EQ(board.Vendor_Request(h, 224, 0, 0, 0, 0, &d), 0);
    EXPECT_TRUE(board.serviceRunning());
    EXPECT_EQ(board.Vendor_Request(h, 221, 0, 1, 0, 0, &d), 0);
    EXPECT_EQ(board.titleSuffix(), " [virtual board]");
    EXPECT_EQ(board.linkState(), qz::LinkState::Virtual);
}

TEST_F(VirtualBoardTest, WrittenWordsReadBackWithTheirAddress) {
    word(0x012200);
    EXPECT_EQ(read(0x01), 0x012200);
    word(0x088000 | 0x1234);
    EXPECT_EQ(read(0x08), 0x089234);
    word(0x48ABCD);  // CPH x1 of the voltage range
    EXPECT_EQ(read(0x48), 0x48ABCD);
    EXPECT_EQ(board.reg(0x48), 0xABCD);
}

TEST_F(VirtualBoardTest, PowerOnCodesMatchTheConsoleFields) {
    EXPECT_EQ(read(0x08), 0x088000);  // FIN x1
    EXPECT_EQ(read(0x09), 0x09FFFF);  // FIN m
    EXPECT_EQ(read(0x0A), 0x0A8000);  // FIN c
    EXPECT_EQ(read(0x0B), 0x0B8000);  // OFFSET
    EXPECT_EQ(read(0x0D), 0x0D0000);  // CLL x1
    EXPECT_EQ(read(0x10), 0x10FFFF);  // CLH x1
    EXPECT_EQ(read(0x13), 0x130000);  // CPL x1, 5uA
    EXPECT_EQ(read(0x17), 0x17FFFF);  // CPL m, 25uA
    EXPECT_EQ(read(0x27), 0x278000);  // CPL c, Ext2
    EXPECT_EQ(read(0x3A), 0x3AFFFF);  // CPH x1, Ext2
    EXPECT_EQ(read(0x46), 0x46FFFF);  // CPL m, voltage range
    EXPECT_EQ(read(0x4A), 0x4A8000);  // CPH c, voltage range
    EXPECT_EQ(read(0x3D), 0x3D8000);  // DGS
    EXPECT_EQ(read(0x3E), 0x3EFFFF);
    EXPECT_EQ(read(0x3F), 0x3F007F);
    EXPECT_EQ(read(0x40), 0x40007F);
    EXPECT_EQ(read(0x02), 0x020000);
    EXPECT_FALSE(board.hasRegister(0x4B));
    EXPECT_EQ(read(0x4B), 0x4B0000);
}

TEST_F(VirtualBoardTest, ResetRequestRestoresPowerOnValues) {
    word(0x029950);
    word(0x08ABCD);
    EXPECT_EQ(out(219), 0);
    EXPECT_EQ(board.resets(), 1);
    EXPECT_EQ(read(0x02), 0x020000);
    EXPECT_EQ(read(0x08), 0x088000);
}

TEST_F(VirtualBoardTest, AWriteBetweenReadAndFetchLosesTheReply) {
    word(0x029950);
    word(0x820000);
    word(0x012200);
    EXPECT_EQ(fetch(), 0);
}

TEST_F(VirtualBoardTest, SiliconRevisionOnlyBehindTheKeyWords) {
    EXPECT_EQ(read(0x53) & 0xFF, 0);
    word(0x56A7C2);
    word(0x56B1D8);
    word(0x52C4E8);
    EXPECT_EQ(read(0x53), 0x530002);
    EXPECT_EQ(read(0x53), 0x530002) << "the door stays open across reads";
    word(0x56B1DA);
    EXPECT_EQ(read(0x53), 0x530000);
    // Out of order, or broken by another word, the keys open nothing.
    word(0x56B1D8);
    word(0x56A7C2);
    word(0x52C4E8);
    EXPECT_EQ(read(0x53), 0x530000);
    word(0x56A7C2);
    word(0x012200);
    word(0x56B1D8);
    word(0x52C4E8);
    EXPECT_EQ(read(0x53), 0x530000);
    word(0x56A7C2);
    word(0x56A7C2);
    word(0x56B1D8);
    word(0x52C4E8);
    EXPECT_EQ(read(0x53), 0x530002) << "a repeated first key starts the row afresh";
}

TEST_F(VirtualBoardTest, PinsAndSwitchKeepTheirState) {
    EXPECT_TRUE(board.pins().hwInhibit);
    out(226);
    EXPECT_FALSE(board.pins().hwInhibit);
    out(227);
    EXPECT_TRUE(board.pins().hwInhibit);
    out(228, 2);
    EXPECT_EQ(board.pins().switchChannel, 2);
    EXPECT_EQ(out(228, 4), qz::status::UnexpectedEndpointError);
    EXPECT_EQ(board.pins().switchChannel, 2);
    out(229);
    EXPECT_TRUE(board.pins().switchEnabled);
    out(230);
    EXPECT_FALSE(board.pins().switchEnabled);
    out(234);
    EXPECT_TRUE(board.pins().clampPin);
    out(235);
    EXPECT_FALSE(board.pins().clampPin);
}

TEST_F(VirtualBoardTest, AdcGivesMidScale) {
    out(232);
    uint8_t b[3] = {0xFF, 0xFF, 0xFF};
    EXPECT_EQ(board.Vendor_Request(handle, 233, 0, 0, 1, 3, b), 0);
    EXPECT_EQ(b[0], 0x00);
    EXPECT_EQ(b[1], 0x80);
    EXPECT_EQ(b[2], 0x00);
}

TEST_F(VirtualBoardTest, SensorRegistersByPointer) {
    auto sensor = [&](int pointer) {
        uint8_t b = 0xEE;
        EXPECT_EQ(board.Vendor_Request(handle, 236, pointer, 0, 1, 1, &b), 0);
        return int(b);
    };
    EXPECT_EQ(sensor(0), 26);
    EXPECT_EQ(sensor(1), 41);
    EXPECT_EQ(sensor(16), 0x40);
    EXPECT_LT(sensor(2), 64);
    EXPECT_EQ(out(236, 9, 0x5A), 0);
    EXPECT_EQ(sensor(9), 0x5A);
    out(236, 0, 99);  // the local temperature is the sensor's own reading
    EXPECT_EQ(sensor(0), 26);
    EXPECT_EQ(out(236, 300, 1), qz::status::UnexpectedEndpointError);
}

TEST_F(VirtualBoardTest, UnknownRequestsAndWrongShapesStall) {
    for (int req : {220, 222, 223, 225, 231, 237, 0, -5})
        EXPECT_EQ(out(req), qz::status::UnexpectedEndpointError) << req;
    uint8_t b[3] = {};
    EXPECT_EQ(board.Vendor_Request(handle, 221, 0, 0, 1, 2, b), qz::status::UnexpectedEndpointError);
    EXPECT_EQ(board.Vendor_Request(handle, 233, 0, 0, 0, 3, b), qz::status::UnexpectedEndpointError);
    EXPECT_EQ(board.Vendor_Request(handle, 221, 0x10000, 0, 0, 0, b), qz::status::UnexpectedEndpointError);
}

TEST_F(VirtualBoardTest, AlarmStatusIsReadOnlyAndReadsAsNoAlarm) {
    word(0x430000);
    EXPECT_EQ(read(0x43), 0x43FFC0);
    EXPECT_EQ(read(0x44), 0x44FFC0);
}
