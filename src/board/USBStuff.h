#pragma once
// The board session and the request wrappers: every transaction with the board goes
// through here. Failures after the start are silent: a status lands in usbStatus and
// nothing else happens, and a read that fails gives what replyBuffer last held.

#include "board/BridgeLibrary.h"
#include "board/Message.h"

#include <array>
#include <functional>
#include <ostream>
#include <string>

namespace qz {

// A vendor request as it went to the board, and the bytes a read brought back.
struct RequestSeen {
    int32_t request, value, index, direction, length, status;
    std::array<uint8_t, 64> reply;
};

class USBStuff {
public:
    explicit USBStuff(BridgeLibrary& library);

    // Session state.
    int32_t hBoard = 0;
    int16_t usbStatus = 0;
    bool noBoard = false;
    std::array<uint8_t, 64> replyBuffer{};
    std::string firmwarePath;
    // Which of the boards the search finds is used (0: the first), and its path byte.
    int boardIndex = 0;
    uint8_t boardPath = 0;
    std::array<uint8_t, 513> firmwareBytes{};

    // Where the firmware file lies: the program's own directory.
    std::string applicationDirectory = ".";
    MessageSink messageBox;
    std::ostream* diagnostics;  // standard error unless a test says otherwise
    std::function<void(LinkState)> onLinkChange;
    // Told of every vendor request after it went out (the recorder listens here).
    std::function<void(const RequestSeen&)> onRequest;

    static constexpr const char* kFirmwareFile = "QZ7740SPI.hex";
    static constexpr size_t kMaxFirmwarePath = 512;

    // Finds the board, connects, loads the firmware and starts the board's service.
    void LoadUSB();
    void ShowUSBStatus(int32_t status);
    void CopyToByteBuffer(const std::string& text);

    void WriteSPIWord(int32_t word);
    int32_t ReadSPIWord();
    int32_t ReadADCWord();
    int32_t ReadI2C(int32_t pointer);
    int32_t WriteI2C(int32_t data, int32_t pointer);
    // A request of board/Wire.h without data stage (reset, pins, switch, ADC conversion).
    // The switch channel request of the console's option buttons leaves usbStatus alone.
    void SendRequest(int32_t request, int32_t value = 0, bool storeStatus = true);

    LinkState linkState() const { return library_.linkState(); }
    // Whether the board this session uses is on the bus: a search, and nothing else.
    bool boardOnBus();
    std::string titleSuffix() const { return library_.titleSuffix(); }
    BridgeLibrary& library() { return library_; }

private:
    int32_t request(int32_t request, int32_t value, int32_t index, int32_t direction,
                    int32_t length, uint8_t* buffer);
    void message(const std::string& title, const std::string& text, MsgIcon icon);

    BridgeLibrary& library_;
    LinkState lastLink_;
};

// The status bar's word for a link state.
const char* linkText(LinkState state);

} // namespace qz
