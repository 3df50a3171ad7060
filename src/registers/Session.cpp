#include "registers/Session.h"

#include "registers/HexText.h"

namespace qz {

Session::Session(std::unique_ptr<BridgeLibrary> library)
    : library_(std::move(library)), usb(*library_) {
    usb.onLinkChange = [this](LinkState state) {
        for (auto& listener : linkListeners_) listener(state);
    };
}

void Session::SPIout(int32_t code) {
    if (showWordSent) showWordSent(NumberToHex(code, 6));
    usb.WriteSPIWord(code);
}

int32_t Session::readWord(int32_t command) {
    SPIout(command);
    return usb.ReadSPIWord();
}

int32_t Session::readAlarmStatus(int32_t command) {
    SPIout(command);
    // Ten empty turns stood here for the chip to gather its status; they take no
    // measurable time, and the fetch follows the command at once.
    for (int turn = 0; turn < 10; ++turn) {
    }
    return usb.ReadSPIWord();
}

void Session::addLinkListener(std::function<void(LinkState)> listener) {
    linkListeners_.push_back(std::move(listener));
}

void Session::setBoardBack(bool back) {
    if (back == boardBack_) return;
    boardBack_ = back;
    for (auto& listener : backListeners_) listener(back);
}

void Session::addBackListener(std::function<void(bool)> listener) {
    backListeners_.push_back(std::move(listener));
}

} // namespace qz
