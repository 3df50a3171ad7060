#pragma once
// The evaluation board in software: the bridge, the chip's register file, the ADC on
// MEASOUT, the temperature sensor, the channel switch and the board's pins. What the chip
// does with its registers (output, MEASOUT, alarms) is the ChipModel's.
// Deterministic: the same requests always give the same replies.

#include "board/BridgeLibrary.h"
#include "board/ChipModel.h"
#include "board/SensorModel.h"

#include <array>
#include <chrono>

namespace qz {

class VirtualBoard final : public BridgeLibrary {
public:
    struct Pins {
        bool hwInhibit = true;      // /HW-INH inhibiting until wire::kHwInhibitOff
        bool clampPin = false;      // CL EN pin, wire::kClampPinOn / kClampPinOff
        bool switchEnabled = false; // SW8130 enable, wire::kSwitchEnable / kSwitchDisable
        int switchChannel = 0;      // SW8130 input, wire::kSwitchChannel
    };

    // latency: time each vendor request takes, standing in for the USB round trip.
    explicit VirtualBoard(std::chrono::nanoseconds latency = std::chrono::nanoseconds{0});

    int32_t Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                              uint8_t* paths) override;
    int32_t Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) override;
    int32_t Download_Firmware(int32_t handle, const uint8_t* path) override;
    int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index,
                           int32_t direction, int32_t length, uint8_t* buffer) override;

    LinkState linkState() const override { return LinkState::Virtual; }
    std::string titleSuffix() const override { return " [virtual board]"; }

    // What the chip holds, for tests and for the models of later measurements. The alarm
    // status registers give what a read would, without clearing anything.
    bool hasRegister(int address) const;
    uint16_t reg(int address) const;
    const ChipModel& chip() const { return chip_; }
    static uint16_t powerOnValue(int address);
    const Pins& pins() const { return pins_; }
    bool serviceRunning() const { return serviceRunning_; }
    uint8_t sensorRegister(uint8_t pointer) const { return sensor_[pointer]; }
    int resets() const { return resets_; }

    static constexpr uint8_t kPathByte = 1;
    static constexpr int32_t kHandle = 1;
    static constexpr uint16_t kSiliconRevision = 0x02;
    static constexpr uint16_t kAdcMidScale = 0x8000; // the ADC before its first conversion

private:
    int32_t spiWrite(uint32_t word);
    void powerOn();
    void testDoor(uint32_t word);

    std::chrono::nanoseconds latency_;
    bool connected_ = false;
    bool firmwareLoaded_ = false;
    bool serviceRunning_ = false;
    ChipModel::Registers regs_{};
    ChipModel chip_{regs_};
    uint32_t spiReply_ = 0;  // what the chip shifts out at the next fetch
    int doorStep_ = 0;       // progress through the key words of the test registers
    bool doorOpen_ = false;
    uint16_t adcCode_ = kAdcMidScale;
    std::array<uint8_t, 256> sensor_{}; // the set-up registers the program writes
    SensorModel sensorModel_;
    Pins pins_;
    int resets_ = 0;
};

} // namespace qz
