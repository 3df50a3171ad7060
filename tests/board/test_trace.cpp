#include "board/TraceLibrary.h"
#include "board/VirtualBoard.h"
#include "support/TraceFile.h"

#include <gtest/gtest.h>

using qztest::TraceFile;

TEST(Trace, EveryCallWritesOneLineInItsForm) {
    TraceFile file;
    {
        std::string why;
        auto lib = qz::TraceLibrary::open(std::make_unique<qz::VirtualBoard>(), file.path(), why);
        ASSERT_TRUE(lib) << why;
        int16_t count = 0;
        uint8_t paths[128] = {};
        int32_t handle = 0;
        lib->Search_For_Boards(1110, 45599, count, paths);
        lib->Connect(1110, 45599, paths[0], handle);
        const uint8_t fw[] = "/opt/qz/QZ7740SPI.hex";
        lib->Download_Firmware(handle, fw);
        uint8_t dummy = 0;
        lib->Vendor_Request(handle, 224, 0, 0, 0, 0, &dummy);
        lib->Vendor_Request(handle, 221, 0x2345, 0x81, 0, 0, &dummy);
        uint8_t reply[3] = {};
        lib->Vendor_Request(handle, 221, 0, 0, 1, 3, reply);
        lib->Vendor_Request(handle, 231, 0, 0, 0, 0, &dummy);  // not a request of the board
    }
    EXPECT_EQ(file.lines(), (std::vector<std::string>{
                                "SEARCH 1110 45599 -> 1 0",
                                "CONNECT 1 -> 1 0",
                                "FIRMWARE /opt/qz/QZ7740SPI.hex -> 0",
                                "VR 224 0000 0000 OUT 0 -> 0",
                                "VR 221 2345 0081 OUT 0 -> 0",
                                // register 0x01 powers on at 0; the reply carries its address
                                "VR 221 0000 0000 IN 3 -> 0 : 00 00 01",
                                "VR 231 0000 0000 OUT 0 -> 3006",
                            }));
}

TEST(Trace, RequestLineFormatsValuesAsHexAndBytesUpperCase) {
    const uint8_t bytes[3] = {0x45, 0x23, 0x01};
    EXPECT_EQ(qz::traceVendorRequest(221, 0, 0, 1, 3, 0, bytes), "VR 221 0000 0000 IN 3 -> 0 : 45 23 01");
    EXPECT_EQ(qz::traceVendorRequest(236, 0x10, 0xAB, 0, 0, 3001, nullptr),
              "VR 236 0010 00AB OUT 0 -> 3001");
    const uint8_t one[1] = {0xfe};
    EXPECT_EQ(qz::traceVendorRequest(236, 2, 0, 1, 1, 0, one), "VR 236 0002 0000 IN 1 -> 0 : FE");
}

TEST(Trace, UnwritableFileIsRefusedWithAReason) {
    std::string why;
    auto lib = qz::TraceLibrary::open(std::make_unique<qz::VirtualBoard>(),
                                      "/nonexistent-dir/trace.log", why);
    EXPECT_FALSE(lib);
    EXPECT_FALSE(why.empty());
}
