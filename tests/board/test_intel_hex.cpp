#include "board/IntelHex.h"

#include <gtest/gtest.h>

using qz::chunkSegments;
using qz::parseIntelHex;

namespace {
// Two adjacent data records at 0x0000 and 0x0004, one at 0x0100, CRLF line ends.
const char* kGood = ":0400000002001E00DC\r\n"
                    ":04000400E4F5A0750A\r\n"
                    ":02010000A5A5B3\r\n"
                    ":00000001FF\r\n";
} // namespace

TEST(IntelHex, GoodFileMergesAdjacentRecordsInOrder) {
    const qz::HexImage img = parseIntelHex(kGood);
    ASSERT_TRUE(img.ok) << img.error;
    ASSERT_EQ(img.segments.size(), 2u);
    EXPECT_EQ(img.segments[0].address, 0x0000u);
    EXPECT_EQ(img.segments[0].bytes,
              (std::vector<uint8_t>{0x02, 0x00, 0x1E, 0x00, 0xE4, 0xF5, 0xA0, 0x75}));
    EXPECT_EQ(img.segments[1].address, 0x0100u);
    EXPECT_EQ(img.segments[1].bytes, (std::vector<uint8_t>{0xA5, 0xA5}));
}

TEST(IntelHex, RefusesBadChecksumMissingEndAndMalformedRecords) {
    EXPECT_FALSE(parseIntelHex(":0400000002001E00DD\n:00000001FF\n").ok);  // checksum off by one
    EXPECT_FALSE(parseIntelHex(":0400000002001E00DC\n").ok);               // no end record
    EXPECT_FALSE(parseIntelHex("").ok);
    EXPECT_FALSE(parseIntelHex("0400000002001E00DC\n:00000001FF\n").ok);   // no colon
    EXPECT_FALSE(parseIntelHex(":0400000002001EDC\n:00000001FF\n").ok);    // short of its count
    EXPECT_FALSE(parseIntelHex(":04000000020G1E00DC\n:00000001FF\n").ok);  // not hexadecimal
    EXPECT_FALSE(parseIntelHex(":0400000602001E00D6\n:00000001FF\n").ok);  // unknown type 06
    const qz::HexImage bad = parseIntelHex(":0400000002001E00DD\n:00000001FF\n");
    EXPECT_NE(bad.error.find("checksum"), std::string::npos);
}

TEST(IntelHex, ExtendedAddressesBeyondTheRamAreRefused) {
    // Extended linear address 0x0001 puts the data at 0x10000.
    EXPECT_FALSE(parseIntelHex(":020000040001F9\n:0100000055AA\n:00000001FF\n").ok);
    // A record that runs past 0xFFFF.
    EXPECT_FALSE(parseIntelHex(":02FFFF00AABB9B\n:00000001FF\n").ok);
    // Extended linear address 0 and a start address record are fine.
    const qz::HexImage img =
        parseIntelHex(":020000040000FA\n:0400000300000000F9\n:0100100055 9A\n:00000001FF\n");
    EXPECT_FALSE(img.ok);  // a space inside a record is not hexadecimal
    const qz::HexImage ok =
        parseIntelHex(":020000040000FA\n:0400000300000000F9\n:01001000559A\n:00000001FF\n\n");
    ASSERT_TRUE(ok.ok) << ok.error;
    EXPECT_EQ(ok.segments.at(0).address, 0x0010u);
}

TEST(IntelHex, TextAfterTheEndRecordIsIgnored) {
    EXPECT_TRUE(parseIntelHex(":00000001FF\ngarbage\n").ok);
}

TEST(IntelHex, ChunksNeverExceedTheLimitAndKeepAddresses) {
    qz::HexSegment big{0x0100, std::vector<uint8_t>(10000, 0x11)};
    const auto chunks = chunkSegments({big}, 4096);
    ASSERT_EQ(chunks.size(), 3u);
    EXPECT_EQ(chunks[0].address, 0x0100u);
    EXPECT_EQ(chunks[1].address, 0x0100u + 4096);
    EXPECT_EQ(chunks[2].address, 0x0100u + 8192);
    EXPECT_EQ(chunks[2].bytes.size(), 10000u - 8192);
}
