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

void Session::addLinkListener(std::function<void(LinkState)> listener) {
    linkListeners_.push_back(std::move(listener));
}

} // namespace qz
