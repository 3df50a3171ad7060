#pragma once
// Intel HEX reader for the bridge controller's firmware image.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qz {

// A run of bytes that starts at one RAM address.
struct HexSegment {
    uint32_t address = 0;
    std::vector<uint8_t> bytes;
};

struct HexImage {
    bool ok = false;
    std::string error;                 // why the text was refused, for the log
    std::vector<HexSegment> segments;  // in file order, adjacent records merged
};

// Parses the text of a HEX file. Accepts data (00), end (01), extended segment (02)
// and extended linear (04) records, and skips the start-address records (03, 05).
// Refuses a malformed line, a bad checksum, an address beyond 64 KiB (the bridge
// controller's RAM is written through a 16-bit address) and a missing end record.
HexImage parseIntelHex(std::string_view text);

// Splits the image into transfers of at most maxChunk bytes each.
std::vector<HexSegment> chunkSegments(const std::vector<HexSegment>& segments, size_t maxChunk);

} // namespace qz
