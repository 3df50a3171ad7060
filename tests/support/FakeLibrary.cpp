#include "support/FakeLibrary.h"

#include <algorithm>

namespace qztest {

namespace {
Call named(const char* op) {
    Call c;
    c.op = op;
    return c;
}
} // namespace

int32_t FakeLibrary::Search_For_Boards(int32_t, int32_t, int16_t& count, uint8_t* paths) {
    calls.push_back(named("SEARCH"));
    count = boards;
    for (int i = 0; i < boards; ++i) paths[i] = static_cast<uint8_t>(7 + i);
    return searchStatus;
}

int32_t FakeLibrary::Connect(int32_t, int32_t, uint8_t path, int32_t& handle) {
    Call c = named("CONNECT");
    c.value = path;
    calls.push_back(c);
    if (connectStatus == 0) handle = 5;
    return connectStatus;
}

int32_t FakeLibrary::Download_Firmware(int32_t, const uint8_t* path) {
    Call c = named("FIRMWARE");
    c.path = reinterpret_cast<const char*>(path);
    calls.push_back(c);
    return firmwareStatus;
}

int32_t FakeLibrary::Vendor_Request(int32_t, int32_t request, int32_t value, int32_t index,
                                    int32_t direction, int32_t length, uint8_t* buffer) {
    Call c = named("VR");
    c.request = request;
    c.value = value;
    c.index = index;
    c.direction = direction;
    c.length = length;
    calls.push_back(c);
    if (direction == 1 && !replies.empty()) {
        const std::vector<uint8_t> r = replies.front();
        replies.pop_front();
        std::copy_n(r.begin(), std::min<size_t>(r.size(), static_cast<size_t>(length)), buffer);
    }
    return requestStatus;
}

} // namespace qztest
