#include "board/SensorModel.h"

#include <cmath>

namespace qz {

namespace {
// The thermal array's codes on GPO (bits 11..7 of the diagnostic word): the cool block,
// then the force amplifier's PNP and NPN points.
constexpr int kCoolFirst = 8, kPnpFirst = 16, kNpnFirst = 24;

// A slow wander of a degree, up and down over 32 readings, and a quarter of jitter either
// way from one reading to the next.
double wander(uint32_t n) {
    const int phase = static_cast<int>(n % 32);
    const double slow = (phase < 16 ? phase : 32 - phase) / 16.0 - 0.5;
    const int jitter = static_cast<int>((n * 2654435761u) >> 30) % 3 - 1;
    return slow + 0.25 * jitter;
}
} // namespace

void SensorModel::setChip(int32_t diagWord, double outputWatts) {
    point_ = (diagWord >> 7) & 0x1F;
    watts_ = std::fabs(outputWatts);
}

double SensorModel::externalCelsius() const {
    if (point_ < kCoolFirst) return kRoomCelsius; // nothing on GPO: the room
    double base = 36.0 + 0.25 * (point_ - kCoolFirst);
    if (point_ >= kPnpFirst) base = 40.0 + 0.5 * (point_ - kPnpFirst);
    if (point_ >= kNpnFirst) base = 41.0 + 0.5 * (point_ - kNpnFirst);
    const double c = base + watts_ * kCelsiusPerWatt + wander(readings_);
    return std::round(c * 4.0) / 4.0;
}

bool SensorModel::read(int pointer, uint8_t& byte) {
    switch (pointer) {
    case 0: // local, whole degrees: the room, a degree warmer now and then
        byte = static_cast<uint8_t>(kRoomCelsius + (readings_ / 48 % 2));
        return true;
    case 1: { // external, whole degrees; a conversion starts after it
        byte = static_cast<uint8_t>(std::floor(externalCelsius()));
        busy_ = 2;
        return true;
    }
    case 2: // status: below 64 once a reading is ready
        byte = busy_ > 0 ? 0x80 : 0x00;
        if (busy_ > 0) --busy_;
        return true;
    case 16: { // the external channel's quarters in the top two bits
        const double c = externalCelsius();
        byte = static_cast<uint8_t>(static_cast<int>((c - std::floor(c)) * 4.0) << 6);
        ++readings_;
        return true;
    }
    default:
        return false;
    }
}

} // namespace qz
