#pragma once
// Chooses the bridge library the program runs on.

#include "board/BridgeLibrary.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace qz {

struct BridgeOptions {
    bool simulate = false;                 // the virtual board instead of USB
    std::string tracePath;                 // empty: no trace
    std::chrono::nanoseconds latency{0};   // per request, virtual board only
};

// The library for these options, wrapped in a trace when one is asked for; nullptr with
// a reason in error when the trace file cannot be opened.
std::unique_ptr<BridgeLibrary> makeBridge(const BridgeOptions& options, std::string& error);

// What the library's search finds, one line per board in the order --board counts them:
// "1: virtual board, path 1" or "2: usb, path 5".
std::vector<std::string> listBoards(BridgeLibrary& library);

} // namespace qz
