#include "board/TraceLibrary.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace qz {

namespace {
// v in upper-case hexadecimal, zero-padded to digits; v must fit in them.
void appendHex(std::string& s, uint32_t v, size_t digits) {
    char buf[8];
    char* const end = std::to_chars(buf, buf + sizeof buf, v, 16).ptr;
    s.append(digits - std::min(static_cast<size_t>(end - buf), digits), '0');
    for (const char* p = buf; p != end; ++p)
        s += static_cast<char>(std::toupper(static_cast<unsigned char>(*p)));
}
} // namespace

std::string traceVendorRequest(int32_t request, int32_t value, int32_t index, int32_t direction,
                               int32_t length, int32_t status, const uint8_t* buffer) {
    std::string s = "VR ";
    s += std::to_string(request);
    s += ' ';
    appendHex(s, static_cast<uint32_t>(value) & 0xFFFF, 4);
    s += ' ';
    appendHex(s, static_cast<uint32_t>(index) & 0xFFFF, 4);
    s += direction == 0 ? " OUT " : " IN ";
    s += std::to_string(length);
    s += " -> ";
    s += std::to_string(status);
    if (direction != 0) {
        // The colon stays on a failed read so that a reader can split every IN line at
        // " :"; the bytes of a failed read are not the board's, so none follow it.
        s += " :";
        for (int32_t i = 0; status == 0 && buffer && i < length; ++i) {
            s += ' ';
            appendHex(s, buffer[i], 2);
        }
    }
    return s;
}

TraceLibrary::TraceLibrary(std::unique_ptr<BridgeLibrary> inner, std::FILE* out)
    : inner_(std::move(inner)), out_(out) {}

TraceLibrary::~TraceLibrary() {
    if (out_) std::fclose(out_);
}

std::unique_ptr<TraceLibrary> TraceLibrary::open(std::unique_ptr<BridgeLibrary> inner,
                                                 const std::string& path, std::string& error) {
    std::FILE* f = std::fopen(path.c_str(), "w");
    if (!f) {
        error = std::strerror(errno);
        return nullptr;
    }
    return std::make_unique<TraceLibrary>(std::move(inner), f);
}

void TraceLibrary::line(const std::string& text) {
    std::fputs(text.c_str(), out_);
    std::fputc('\n', out_);
    std::fflush(out_);
}

int32_t TraceLibrary::Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                                        uint8_t* paths) {
    const int32_t st = inner_->Search_For_Boards(vendor, product, count, paths);
    line("SEARCH " + std::to_string(vendor) + ' ' + std::to_string(product) + " -> " +
         std::to_string(count) + ' ' + std::to_string(st));
    return st;
}

int32_t TraceLibrary::Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) {
    const int32_t st = inner_->Connect(vendor, product, path, handle);
    line("CONNECT " + std::to_string(path) + " -> " + std::to_string(handle) + ' ' +
         std::to_string(st));
    return st;
}

int32_t TraceLibrary::Download_Firmware(int32_t handle, const uint8_t* path) {
    const int32_t st = inner_->Download_Firmware(handle, path);
    std::string name;
    for (size_t i = 0; path && i < 513 && path[i] != 0; ++i) name += static_cast<char>(path[i]);
    line("FIRMWARE " + name + " -> " + std::to_string(st));
    return st;
}

int32_t TraceLibrary::Vendor_Request(int32_t handle, int32_t request, int32_t value,
                                     int32_t index, int32_t direction, int32_t length,
                                     uint8_t* buffer) {
    const int32_t st =
        inner_->Vendor_Request(handle, request, value, index, direction, length, buffer);
    line(traceVendorRequest(request, value, index, direction, length, st, buffer));
    return st;
}

} // namespace qz
