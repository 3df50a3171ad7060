#include "remote/Status.h"

namespace qz::remote {

void StatusModel::errorRaised(int code) {
    if (code > 0) esr_ |= esr::kDeviceError;
    else if (code <= -100 && code > -200) esr_ |= esr::kCommandError;
    else if (code <= -200 && code > -300) esr_ |= esr::kExecutionError;
    else if (code <= -300 && code > -400) esr_ |= esr::kDeviceError;
    else if (code <= -400 && code > -500) esr_ |= esr::kQueryError;
}

uint8_t StatusModel::takeEsr() {
    const uint8_t e = esr_;
    esr_ = 0;
    return e;
}

uint8_t StatusModel::statusByte(bool errorQueueNotEmpty, bool messageAvailable) const {
    uint8_t b = 0;
    if (errorQueueNotEmpty) b |= stb::kErrorQueue;
    if (questionable.summary()) b |= stb::kQuestionable;
    if (messageAvailable) b |= stb::kMessage;
    if ((esr_ & ese) != 0) b |= stb::kEventStatus;
    if (operation.summary()) b |= stb::kOperation;
    if ((b & sre & ~stb::kRequestService) != 0) b |= stb::kRequestService;
    return b;
}

void StatusModel::clear() {
    esr_ = 0;
    operation.event = 0;
    questionable.event = 0;
}

void StatusModel::preset() {
    operation.enable = 0;
    questionable.enable = 0;
}

} // namespace qz::remote
