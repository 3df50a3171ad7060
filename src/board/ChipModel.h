#pragma once
// The chip and the evaluation board around it as physics: the force output into the board's
// load, MEASOUT, the alarms, the comparator outputs and the ADC on MEASOUT, all worked out
// from the register file and the pins. The model is worked out afresh when a register or a
// pin changes, so a request costs a few multiplications and never an allocation.

#include "board/Comparators.h"

#include <array>
#include <cstdint>

namespace qz {

class ChipModel {
  public:
    using Registers = std::array<uint16_t, 128>;

    // The board's own figures. Its reference is 5 V whatever the program has selected.
    static constexpr double kVref = 5.0;
    static constexpr double kLoadOhms = 10000.0; // from the output to ground
    static constexpr double kAdcFullScale = 5.0;
    // The die as the board's sensor sees it on its external channel; T sense gives
    // 10 mV per kelvin of it.
    static constexpr double kDieCelsius = 41.25;
    static constexpr double kTSenseVolts = (kDieCelsius + 273.15) * 0.01;

    // Reads the board's register file through this reference for as long as it lives.
    explicit ChipModel(const Registers& registers);
    ChipModel(const ChipModel&) = delete;
    ChipModel& operator=(const ChipModel&) = delete;

    // After the registers took their power-on values: every DAC takes its m and c, and no
    // alarm is latched.
    void powerOn();
    // After a write to a register; a write of a DAC's x1 is when its m and c take effect.
    void written(int address);
    void setPins(bool hwInhibit, bool clampPin);

    // The alarm status word as a read of 0x43 or 0x44 gives it (bits 15..4).
    uint16_t alarmStatus() const;
    // What a read of 0x44 does after its reply: a latched alarm whose cause is gone lets go.
    void clearLatchedAlarms();
    // One conversion of the ADC on MEASOUT, with at most one code of noise from a fixed
    // sequence, so that the same requests always give the same codes.
    uint16_t convert();

    double outputVolts() const { return volts_; }
    double outputAmps() const { return amps_; }
    double measoutVolts() const { return measout_; }
    bool clamping() const { return clamping_; }

  private:
    void evaluate();
    int32_t dacCode(int x1Address) const;
    double offsetVolts() const;
    double forceVolts(int32_t code) const;
    double senseVolts(int32_t code) const;
    double measoutNode(int source, double ohms, double gain, int row) const;

    const Registers& regs_;
    Registers m_{}; // the m and c in effect for each DAC, by the address of its x1
    Registers c_{};
    bool hwInhibit_ = true;
    bool clampPin_ = false;
    double volts_ = 0.0;
    double amps_ = 0.0;
    double measout_ = 0.0;
    bool clamping_ = false;
    bool cpol_ = false;
    bool cpoh_ = false;
    uint16_t active_ = 0;  // the alarms whose cause is present, at their live bit
    uint16_t latched_ = 0; // the alarms that latched, at their live bit
    uint32_t noise_ = 0x2545F491u;
};

} // namespace qz
