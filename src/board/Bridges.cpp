#include "board/Bridges.h"

#include "board/LibusbPort.h"
#include "board/TraceLibrary.h"
#include "board/UsbBridge.h"
#include "board/VirtualBoard.h"

#include <algorithm>
#include <array>

namespace qz {

std::unique_ptr<BridgeLibrary> makeBridge(const BridgeOptions& options, std::string& error) {
    std::unique_ptr<BridgeLibrary> library;
    if (options.simulate)
        library = std::make_unique<VirtualBoard>(options.latency);
    else
        library = std::make_unique<UsbBridge>(std::make_unique<LibusbPort>());
    if (options.tracePath.empty()) return library;
    std::string why;
    auto traced = TraceLibrary::open(std::move(library), options.tracePath, why);
    if (!traced) {
        error = "cannot write the trace file " + options.tracePath + ": " + why;
        return nullptr;
    }
    return traced;
}

std::vector<std::string> listBoards(BridgeLibrary& library) {
    std::array<uint8_t, kPathArraySize> paths{};
    int16_t count = 0;
    library.Search_For_Boards(kBoardVendor, kBoardProduct, count, paths.data());
    const char* kind = library.linkState() == LinkState::Virtual ? "virtual board" : "usb";
    std::vector<std::string> lines;
    for (int i = 0; i < std::min<int>(count, kPathArraySize); ++i)
        lines.push_back(std::to_string(i + 1) + ": " + kind + ", path " +
                        std::to_string(paths[static_cast<size_t>(i)]));
    return lines;
}

} // namespace qz
