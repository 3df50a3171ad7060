#include "board/USBStuff.h"

#include "board/StatusCodes.h"
#include "board/Wire.h"

#include <algorithm>
#include <iostream>

namespace qz {

const char* linkText(LinkState state) {
    switch (state) {
    case LinkState::Virtual: return "virtual board";
    case LinkState::Connected: return "board connected";
    case LinkState::NoBoard: return "no board";
    case LinkState::Lost: return "board lost";
    }
    return "";
}

USBStuff::USBStuff(BridgeLibrary& library)
    : diagnostics(&std::cerr), library_(library), lastLink_(library.linkState()) {}

void USBStuff::message(const std::string& title, const std::string& text, MsgIcon icon) {
    if (messageBox) messageBox(title, text, icon);
}

int32_t USBStuff::request(int32_t req, int32_t value, int32_t index, int32_t direction,
                          int32_t length, uint8_t* buffer) {
    int32_t st;
    if (direction == 0) {
        st = library_.Vendor_Request(hBoard, req, value, index, direction, length, buffer);
    } else {
        // A reply lands only when the request succeeded: a failed read leaves the
        // previous bytes where they were.
        std::array<uint8_t, 64> reply{};
        const int32_t n = std::clamp<int32_t>(length, 0, static_cast<int32_t>(reply.size()));
        st = library_.Vendor_Request(hBoard, req, value, index, direction, n, reply.data());
        if (st == status::OK) std::copy_n(reply.begin(), n, buffer);
    }
    if (onRequest) {
        RequestSeen seen{req, value, index, direction, length, st, {}};
        if (direction != 0 && st == status::OK)
            std::copy_n(buffer, std::clamp<int32_t>(length, 0, static_cast<int32_t>(seen.reply.size())), seen.reply.begin());
        onRequest(seen);
    }
    const LinkState now = library_.linkState();
    if (now != lastLink_) {
        lastLink_ = now;
        if (onLinkChange) onLinkChange(now);
    }
    return st;
}

void USBStuff::LoadUSB() {
    std::array<uint8_t, 128> paths{};
    int16_t count = 0;
    usbStatus = static_cast<int16_t>(library_.Search_For_Boards(kBoardVendor, kBoardProduct,
                                                                count, paths.data()));
    if (count <= boardIndex) {
        message(": " + std::to_string(usbStatus), "No Evaluation Board Found",
                MsgIcon::Exclamation);
        noBoard = true;
    }
    ShowUSBStatus(usbStatus);

    usbStatus = static_cast<int16_t>(
        library_.Connect(kBoardVendor, kBoardProduct, paths[static_cast<size_t>(boardIndex) % paths.size()], hBoard));
    boardPath = paths[static_cast<size_t>(boardIndex) % paths.size()];
    if (const std::string problem = library_.connectProblem(); !problem.empty())
        *diagnostics << "qz7740: " << problem << '\n';
    ShowUSBStatus(usbStatus);

    firmwarePath = applicationDirectory + "/" + kFirmwareFile;
    CopyToByteBuffer(firmwarePath);
    if (firmwarePath.size() > kMaxFirmwarePath) {
        // The library's path buffer holds 512 characters; a longer path is never handed on.
        usbStatus = static_cast<int16_t>(status::FirmwareNotFound);
    } else {
        usbStatus = static_cast<int16_t>(library_.Download_Firmware(hBoard, firmwareBytes.data()));
    }
    // A file that could not be loaded names the path tried, for the bench log.
    if (usbStatus == status::FirmwareNotFound || usbStatus == status::FirmwareCorrupted ||
        usbStatus == status::FirmwareDownloadFailed)
        *diagnostics << "qz7740: firmware " << firmwarePath << ": " << status::text(usbStatus)
                     << '\n';
    ShowUSBStatus(usbStatus);

    uint8_t dummy = 0;
    usbStatus = static_cast<int16_t>(request(wire::kStartService, 0, 0, 0, 0, &dummy));
    ShowUSBStatus(usbStatus);
    lastLink_ = library_.linkState();
    if (onLinkChange) onLinkChange(lastLink_);
}

bool USBStuff::boardOnBus() {
    std::array<uint8_t, 128> paths{};
    int16_t count = 0;
    library_.Search_For_Boards(kBoardVendor, kBoardProduct, count, paths.data());
    return count > boardIndex;
}

void USBStuff::ShowUSBStatus(int32_t st) {
    if (noBoard) return;
    if (const char* text = status::text(st)) message(kAppTitle, text, MsgIcon::None);
}

void USBStuff::CopyToByteBuffer(const std::string& text) {
    const size_t n = std::min(text.size(), firmwareBytes.size() - 1);
    std::copy_n(reinterpret_cast<const uint8_t*>(text.data()), n, firmwareBytes.begin());
    firmwareBytes[n] = 0;
}

void USBStuff::WriteSPIWord(int32_t word) {
    uint8_t dummy = 0;
    usbStatus = static_cast<int16_t>(
        request(wire::kSpiWord, word & 0xFFFF, (word & 0xFF0000) / 65536, 0, 0, &dummy));
}

int32_t USBStuff::ReadSPIWord() {
    usbStatus = static_cast<int16_t>(request(wire::kSpiWord, 0, 0, 1, 3, replyBuffer.data()));
    return replyBuffer[0] + 256 * replyBuffer[1] + 65536 * replyBuffer[2];
}

int32_t USBStuff::ReadADCWord() {
    usbStatus = static_cast<int16_t>(request(wire::kAdcRead, 0, 0, 1, 3, replyBuffer.data()));
    return replyBuffer[0] + 256 * replyBuffer[1];
}

int32_t USBStuff::ReadI2C(int32_t pointer) {
    try {
        request(wire::kSensor, pointer, 0, 1, 1, replyBuffer.data());
        return replyBuffer[0];
    } catch (...) {
        return 0;
    }
}

int32_t USBStuff::WriteI2C(int32_t data, int32_t pointer) {
    try {
        uint8_t dummy = 0;
        return request(wire::kSensor, pointer, data, 0, 0, &dummy);
    } catch (...) {
        return 0;
    }
}

void USBStuff::SendRequest(int32_t req, int32_t value, bool storeStatus) {
    uint8_t dummy = 0;
    const int32_t st = request(req, value, 0, 0, 0, &dummy);
    if (storeStatus) usbStatus = static_cast<int16_t>(st);
}

} // namespace qz
