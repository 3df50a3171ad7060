#include "board/IntelHex.h"

#include <algorithm>
#include <charconv>

namespace qz {

namespace {

// Two hexadecimal digits a byte; from_chars takes no sign or prefix for an unsigned type,
// so a pair parses only when both of its characters are digits.
bool readBytes(std::string_view digits, std::vector<uint8_t>& out) {
    if (digits.size() % 2 != 0) return false;
    out.clear();
    out.reserve(digits.size() / 2);
    for (const char* p = digits.data(); p != digits.data() + digits.size(); p += 2) {
        uint8_t byte = 0;
        const auto [end, ec] = std::from_chars(p, p + 2, byte, 16);
        if (ec != std::errc{} || end != p + 2) return false;
        out.push_back(byte);
    }
    return true;
}

HexImage fail(size_t lineNo, const std::string& why) {
    HexImage img;
    img.error = "line " + std::to_string(lineNo) + ": " + why;
    return img;
}

} // namespace

HexImage parseIntelHex(std::string_view text) {
    HexImage img;
    uint32_t base = 0;
    size_t lineNo = 0;
    size_t pos = 0;
    std::vector<uint8_t> rec;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        ++lineNo;
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
            line.remove_suffix(1);
        if (line.empty()) continue;
        if (line.front() != ':') return fail(lineNo, "record does not start with ':'");
        if (!readBytes(line.substr(1), rec)) return fail(lineNo, "not hexadecimal");
        if (rec.size() < 5) return fail(lineNo, "record too short");
        const size_t count = rec[0];
        if (rec.size() != count + 5) return fail(lineNo, "length does not match the byte count");
        uint8_t sum = 0;
        for (uint8_t b : rec) sum = static_cast<uint8_t>(sum + b);
        if (sum != 0) return fail(lineNo, "bad checksum");
        const uint32_t offset = (uint32_t(rec[1]) << 8) | rec[2];
        const uint8_t type = rec[3];
        const uint8_t* data = rec.data() + 4;
        switch (type) {
        case 0x00: {
            if (count == 0) break;
            const uint32_t addr = base + offset;
            if (addr + count > 0x10000) return fail(lineNo, "address beyond 64 KiB");
            HexSegment* last = img.segments.empty() ? nullptr : &img.segments.back();
            if (last && last->address + last->bytes.size() == addr) {
                last->bytes.insert(last->bytes.end(), data, data + count);
            } else {
                img.segments.push_back({addr, std::vector<uint8_t>(data, data + count)});
            }
            break;
        }
        case 0x01:
            if (count != 0) return fail(lineNo, "end record with data");
            img.ok = true;
            return img;
        case 0x02:
            if (count != 2) return fail(lineNo, "bad extended segment record");
            base = ((uint32_t(data[0]) << 8) | data[1]) << 4;
            break;
        case 0x04:
            if (count != 2) return fail(lineNo, "bad extended linear record");
            base = ((uint32_t(data[0]) << 8) | data[1]) << 16;
            break;
        case 0x03:
        case 0x05:
            break; // start address: nothing to load
        default:
            return fail(lineNo, "unknown record type");
        }
    }
    return fail(lineNo, "no end record");
}

std::vector<HexSegment> chunkSegments(const std::vector<HexSegment>& segments, size_t maxChunk) {
    std::vector<HexSegment> out;
    for (const HexSegment& s : segments) {
        for (size_t off = 0; off < s.bytes.size(); off += maxChunk) {
            const size_t n = std::min(maxChunk, s.bytes.size() - off);
            out.push_back({s.address + static_cast<uint32_t>(off),
                           std::vector<uint8_t>(s.bytes.begin() + off, s.bytes.begin() + off + n)});
        }
    }
    return out;
}

} // namespace qz
