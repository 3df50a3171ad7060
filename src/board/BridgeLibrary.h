#pragma once
// The four operations of the USB bridge library, as the program calls them.
// Every operation returns a status code: 0 is success, the others are listed in
// StatusCodes.h. Outputs come back through the reference and pointer arguments.

#include <cstdint>
#include <string>

namespace qz {

// USB identity of the evaluation board.
inline constexpr int32_t kBoardVendor = 1110;   // 0x0456
inline constexpr int32_t kBoardProduct = 45599; // 0xB21F

// Size of the path array that Search_For_Boards fills, one byte per board found.
inline constexpr int kPathArraySize = 128;

enum class Direction : int32_t { ToBoard = 0, FromBoard = 1 };

// What the status bar says about the link.
enum class LinkState { Virtual, Connected, NoBoard, Lost };

class BridgeLibrary {
public:
    virtual ~BridgeLibrary() = default;

    // Counts the attached boards of this vendor and product; writes one path byte per
    // board into paths[0..127].
    virtual int32_t Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                                      uint8_t* paths) = 0;
    // Opens the board with this path byte; writes a non-zero handle on success.
    virtual int32_t Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) = 0;
    // Loads the Intel HEX file named by the NUL-terminated path into the bridge controller.
    virtual int32_t Download_Firmware(int32_t handle, const uint8_t* path) = 0;
    // One vendor control transfer. direction 0: length bytes from buffer to the board;
    // direction 1: up to length bytes from the board into buffer.
    virtual int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                                   int32_t direction, int32_t length, uint8_t* buffer) = 0;

    // Not operations of the library: what the status bar and the window titles show.
    virtual LinkState linkState() const = 0;
    virtual std::string titleSuffix() const { return {}; }
    // Why the last Connect failed, where the library can say more than its status code
    // (for standard error); empty otherwise.
    virtual std::string connectProblem() const { return {}; }
};

} // namespace qz
