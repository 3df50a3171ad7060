#include "board/StatusCodes.h"
#include "board/USBStuff.h"
#include "board/VirtualBoard.h"
#include "board/Wire.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace wire = qz::wire;
using qz::status::UnexpectedEndpointError;
using Ints = std::vector<int>;

namespace {

class VirtualBoardTest : public ::testing::Test {
protected:
    qz::VirtualBoard board;
    qz::USBStuff usb{board};

    void SetUp() override { usb.LoadUSB(); }
    int32_t read(int address) {
        usb.WriteSPIWord((address + 128) << 16);
        return usb.ReadSPIWord();
    }
    int32_t send(int32_t request, int32_t value = 0) {
        usb.SendRequest(request, value);
        return usb.usbStatus;
    }
};

} // namespace

TEST_F(VirtualBoardTest, RegistersReadBackWithTheirAddressFromTheirPowerOnCodes) {
    // What the console shows before any entry: FIN x1 and every c mid-scale, every m full
    // scale, the low clamp and comparator x1 at 0, the high ones at full scale.
    for (auto [address, code] : std::vector<std::pair<int, int>>{
             {0x02, 0}, {0x08, 0x8000}, {0x0D, 0}, {0x10, 0xFFFF}, {0x13, 0}, {0x17, 0xFFFF},
             {0x27, 0x8000}, {0x3A, 0xFFFF}, {0x46, 0xFFFF}, {0x4A, 0x8000}, {0x43, 0xFFC0}})
        EXPECT_EQ(read(address), address << 16 | code) << std::hex << address;
    // 0x43 is read-only, 0x4B no register; a write between a read and its fetch loses the reply.
    for (int32_t w : {0x029950, 0x48ABCD, 0x430000, 0x4B1234, 0x820000, 0x012200})
        usb.WriteSPIWord(w);
    EXPECT_EQ(usb.ReadSPIWord(), 0);
    EXPECT_EQ(Ints({read(0x02), read(0x48), read(0x43), read(0x4B)}),
              Ints({0x029950, 0x48ABCD, 0x43FFC0, 0x4B0000}));
    EXPECT_EQ(send(wire::kChipReset), 0);
    EXPECT_EQ(read(0x48), 0x48FFFF) << "a reset brings the power-on codes back";
}

TEST_F(VirtualBoardTest, TheSiliconRevisionShowsOnlyBehindTheKeyWordsInTheirOrder) {
    const auto keys = [&](Ints words) {
        for (int32_t w : words) usb.WriteSPIWord(w);
        return read(wire::kRevisionRead >> 16 & 0x7F);
    };
    const auto [k0, k1, k2] = wire::kRevisionKeys;
    EXPECT_EQ(keys({}), 0x530000);
    EXPECT_EQ(keys({k0, k1, k2}), 0x530002);
    EXPECT_EQ(keys({}), 0x530002) << "open across reads";
    EXPECT_EQ(keys({wire::kRevisionClose}), 0x530000);
    EXPECT_EQ(keys({k1, k0, k2}), 0x530000) << "out of order";
    EXPECT_EQ(keys({k0, 0x012200, k1, k2}), 0x530000) << "broken by another word";
    EXPECT_EQ(keys({k0, k0, k1, k2}), 0x530002) << "a repeated first key starts afresh";
}

// The pins, the ADC and the switch's channels 0 and 1 are seen through the console's tests.
TEST_F(VirtualBoardTest, SwitchAndSensorAnswerTheirRequestsAndOthersStall) {
    EXPECT_EQ(send(wire::kSwitchChannel, 3), 0);
    EXPECT_EQ(send(wire::kSwitchChannel, 4), UnexpectedEndpointError);
    EXPECT_EQ(board.pins().switchChannel, 3);
    // The sensor by pointer: local and external temperature, status, external fraction are
    // its own readings; the other registers keep what is written. With no point of the die
    // on GPO the external channel reads the room; after it the status is busy twice.
    EXPECT_EQ(Ints({usb.WriteI2C(0x5A, 9), usb.WriteI2C(99, 0), usb.WriteI2C(1, 300)}),
              Ints({0, 0, UnexpectedEndpointError}));
    EXPECT_EQ(Ints({usb.ReadI2C(0), usb.ReadI2C(1), usb.ReadI2C(2), usb.ReadI2C(2), usb.ReadI2C(2),
                    usb.ReadI2C(16)}),
              Ints({26, 26, 0x80, 0x80, 0, 0}));
    EXPECT_EQ(usb.ReadI2C(9), 0x5A);
    // The force amplifier's first PNP point runs warmer than the cool block's first, and
    // the readings wander by quarters from one to the next.
    const auto external = [this] { return usb.ReadI2C(1) * 4 + (usb.ReadI2C(16) >> 6); };
    usb.WriteSPIWord(0x070400);
    const int cool = external();
    usb.WriteSPIWord(0x070800);
    std::vector<int> warm;
    for (int i = 0; i < 8; ++i) warm.push_back(external());
    EXPECT_GE(warm[0] - cool, 12) << "three degrees at the least";
    const auto [low, high] = std::minmax_element(warm.begin(), warm.end());
    EXPECT_GT(*high, *low) << "the readings move";
    EXPECT_LE(*high - *low, 8) << "by two degrees at the most";
    for (int req : {220, 222, 223, 225, 231, 237, 0, -5, wire::kAdcRead})
        EXPECT_EQ(send(req), UnexpectedEndpointError) << req;
}
