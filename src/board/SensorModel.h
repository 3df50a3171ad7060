#pragma once
// The board's temperature sensor as the virtual board gives it: a local channel near the
// room's 26 degrees and an external channel on the chip's GPO, where the diagnostic word
// routes a point of the die's thermal array. Readings move a little from one to the next,
// the points of the force amplifier run warmer than the cool block, and the output's power
// warms the die. After each external reading the sensor is busy for two status polls.
// Deterministic: the same reads give the same bytes.

#include <cstdint>

namespace qz {

class SensorModel {
  public:
    // What the chip shows the sensor now: its diagnostic word and the output's power.
    void setChip(int32_t diagWord, double outputWatts);
    // The byte of a read of pointer 0, 1, 2 or 16; false for another pointer.
    bool read(int pointer, uint8_t& byte);

    // The external channel's temperature, in quarters of a degree, as the next read gives it.
    double externalCelsius() const;

    static constexpr double kRoomCelsius = 26.0;
    static constexpr double kCelsiusPerWatt = 40.0; // the die's heating by the output's power

  private:
    int point_ = 0;      // the thermal array point on GPO, 0 when none is routed
    double watts_ = 0.0;
    uint32_t readings_ = 0; // external readings taken
    int busy_ = 0;          // status polls still to answer busy
};

} // namespace qz
