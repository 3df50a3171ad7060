// The firmware file's reader on any bytes: an image or a refusal with its reason, never a
// crash, and an image that the download can write: every byte inside the controller's
// 64 KiB, and the chunks of the transfers carrying every byte once, none too long.

#include "Check.h"
#include "board/IntelHex.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const qz::HexImage image = qz::parseIntelHex(text);
    if (!image.ok) {
        FUZZ_CHECK(!image.error.empty());
        return 0;
    }
    size_t bytes = 0;
    for (const qz::HexSegment& s : image.segments) {
        FUZZ_CHECK(!s.bytes.empty());
        FUZZ_CHECK(s.address + s.bytes.size() <= 0x10000);
        bytes += s.bytes.size();
    }
    constexpr size_t kChunk = 4096;
    size_t chunked = 0;
    for (const qz::HexSegment& c : qz::chunkSegments(image.segments, kChunk)) {
        FUZZ_CHECK(!c.bytes.empty() && c.bytes.size() <= kChunk);
        FUZZ_CHECK(c.address + c.bytes.size() <= 0x10000);
        chunked += c.bytes.size();
    }
    FUZZ_CHECK(chunked == bytes);
    return 0;
}
