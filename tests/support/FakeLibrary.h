#pragma once
// A bridge library that answers as a test tells it and remembers every call.

#include "board/BridgeLibrary.h"

#include <deque>
#include <string>
#include <vector>

namespace qztest {

struct Call {
    std::string op;  // "SEARCH", "CONNECT", "FIRMWARE", "VR"
    int32_t request = 0, value = 0, index = 0, direction = 0, length = 0;
    std::string path;
};

class FakeLibrary : public qz::BridgeLibrary {
public:
    int16_t boards = 1;
    int32_t searchStatus = 0;
    int32_t connectStatus = 0;
    std::string connectWhy; // what connectProblem() says
    int32_t firmwareStatus = 0;
    int32_t requestStatus = 0;
    // Replies of the next direction-1 requests, in order; each is copied into the buffer.
    std::deque<std::vector<uint8_t>> replies;
    std::vector<Call> calls;
    qz::LinkState link = qz::LinkState::Connected;

    int32_t Search_For_Boards(int32_t, int32_t, int16_t& count, uint8_t* paths) override;
    int32_t Connect(int32_t, int32_t, uint8_t path, int32_t& handle) override;
    int32_t Download_Firmware(int32_t, const uint8_t* path) override;
    int32_t Vendor_Request(int32_t, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override;
    qz::LinkState linkState() const override { return link; }
    std::string connectProblem() const override { return connectWhy; }
};

} // namespace qztest
