#include "board/Bridges.h"

#include "board/LibusbPort.h"
#include "board/TraceLibrary.h"
#include "board/UsbBridge.h"
#include "board/VirtualBoard.h"

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

} // namespace qz
