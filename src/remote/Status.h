#pragma once
// The status model of the remote control, as IEEE 488.2 and SCPI lay it out: the standard
// event status register with its enable, the status byte with its summary bits and its
// service request enable, and the two SCPI registers (operation, questionable), each a
// condition, a latched event and an enable.

#include <cstdint>

namespace qz::remote {

namespace esr {
inline constexpr uint8_t kOperationComplete = 0x01;
inline constexpr uint8_t kQueryError = 0x04;
inline constexpr uint8_t kDeviceError = 0x08;
inline constexpr uint8_t kExecutionError = 0x10;
inline constexpr uint8_t kCommandError = 0x20;
} // namespace esr

namespace stb {
inline constexpr uint8_t kErrorQueue = 0x04;    // the error queue is not empty
inline constexpr uint8_t kQuestionable = 0x08;  // questionable event & enable
inline constexpr uint8_t kMessage = 0x10;       // an answer waits to be read
inline constexpr uint8_t kEventStatus = 0x20;   // event status & its enable
inline constexpr uint8_t kRequestService = 0x40;
inline constexpr uint8_t kOperation = 0x80;     // operation event & enable
} // namespace stb

// SCPI's operation register: a run in progress is "measuring".
inline constexpr uint16_t kOperMeasuring = 0x0010;

// A SCPI status register: the condition as it is now, the event latched on each rise of
// a condition bit (and on what the device latches itself), read and cleared at once.
struct StatusRegister {
    uint16_t condition = 0;
    uint16_t event = 0;
    uint16_t enable = 0;

    void setCondition(uint16_t now) {
        event |= static_cast<uint16_t>(now & ~condition);
        condition = now;
    }
    uint16_t takeEvent() {
        const uint16_t e = event;
        event = 0;
        return e;
    }
    bool summary() const { return (event & enable) != 0; }
};

class StatusModel {
  public:
    // The bit of the error's class: command -1xx, execution -2xx, device -3xx and the
    // device's own (positive) codes, query -4xx.
    void errorRaised(int code);
    void operationComplete() { esr_ |= esr::kOperationComplete; }

    // *ESR?: the register, then cleared.
    uint8_t takeEsr();
    uint8_t esr() const { return esr_; }
    // *STB?: the summary bits of the registers; the message bit as the caller knows it.
    uint8_t statusByte(bool errorQueueNotEmpty, bool messageAvailable) const;

    // *CLS: the event registers cleared, the enables kept.
    void clear();
    // STAT:PRES: the SCPI enables back to 0 (the 488.2 ones stay).
    void preset();

    uint8_t ese = 0;
    uint8_t sre = 0;
    StatusRegister operation;
    StatusRegister questionable;

  private:
    uint8_t esr_ = 0;
};

} // namespace qz::remote
