#pragma once
// One run of the program: the bridge library, the board session and the shared
// variables. Every panel gets the Session in its constructor; a test makes a fresh one.

#include "board/BridgeLibrary.h"
#include "board/USBStuff.h"
#include "registers/General.h"
#include "registers/RunLog.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qz {

class Session {
public:
    explicit Session(std::unique_ptr<BridgeLibrary> library);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Every word to the chip leaves here: the console's word box is told first, then
    // the word goes to the board.
    void SPIout(int32_t code);

    // One read of the chip: the read command through SPIout, then the reply fetched at
    // once; nothing may stand between the two.
    int32_t readWord(int32_t command);
    // A read of the alarm status: the same with ten empty turns between command and fetch.
    int32_t readAlarmStatus(int32_t command);

    // The console's word box, which shows every word as it goes out.
    std::function<void(const std::string& hex)> showWordSent;

    // Status bars listen here for the state of the link.
    void addLinkListener(std::function<void(LinkState)> listener);

    // A lost board that is on the bus again: the status bars offer to start it afresh,
    // which runs `reconnect`.
    void setBoardBack(bool back);
    bool boardBack() const { return boardBack_; }
    void addBackListener(std::function<void(bool)> listener);
    std::function<void()> reconnect;

private:
    std::unique_ptr<BridgeLibrary> library_;
    std::vector<std::function<void(LinkState)>> linkListeners_;
    std::vector<std::function<void(bool)>> backListeners_;
    bool boardBack_ = false;

public:
    USBStuff usb;
    General general;
    RunLog runs;
};

} // namespace qz
