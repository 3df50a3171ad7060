#include "board/VirtualBoard.h"

#include "board/StatusCodes.h"
#include "board/Wire.h"

#include <chrono>
#include <thread>

namespace qz {

namespace {

// The chip's register file and its power-on contents. The control registers come up
// cleared: powered down, channel inhibited, MEASOUT Hi-Z, 5uA range, nothing latched.
// The DAC registers come up at the codes the console shows before any entry: every m
// 0xFFFF, every c 0x8000, FIN x1 and OFFSET mid-scale, the low clamp and low comparator
// x1 at 0, the high ones at full scale; the ramp end, step and divider as their fields.
struct RegInit {
    int first;
    int last;
    uint16_t value;
};
constexpr RegInit kPowerOn[] = {
    {0x01, 0x07, 0x0000},  // system control, DPS1, DPS2, COMP1, COMP2, alarm setup, diag
    {0x08, 0x08, 0x8000},  // FIN x1
    {0x09, 0x09, 0xFFFF},  // FIN m
    {0x0A, 0x0A, 0x8000},  // FIN c
    {0x0B, 0x0B, 0x8000},  // OFFSET
    {0x0C, 0x0C, 0x8000},  // OSD
    {0x0D, 0x0D, 0x0000},  // CLL x1
    {0x0E, 0x0E, 0xFFFF},
    {0x0F, 0x0F, 0x8000},
    {0x10, 0x10, 0xFFFF},  // CLH x1
    {0x11, 0x11, 0xFFFF},
    {0x12, 0x12, 0x8000},
    {0x3D, 0x3D, 0x8000},  // DGS
    {0x3E, 0x3E, 0xFFFF},  // ramp end code
    {0x3F, 0x3F, 0x007F},  // ramp step size
    {0x40, 0x40, 0x007F},  // RCLK divider
    {0x41, 0x42, 0x0000},  // ramp enable, ramp interrupt
    {0x43, 0x44, 0xFFC0},  // alarm status, which the chip model gives at each read
    {0x52, 0x53, 0x0000},  // hidden test registers
    {0x56, 0x56, 0x0000},
};

// A comparator DAC register: which of x1, m, c it is (member 0, 1, 2) and whether it
// belongs to CPH.
bool comparatorTriple(int address, int& member, bool& high) {
    for (ComparatorDacs row : kComparatorDacs) {
        for (int base : {row.cpl, row.cph}) {
            if (address >= base && address <= base + 2) {
                member = address - base;
                high = base == row.cph;
                return true;
            }
        }
    }
    return false;
}

// Which addresses hold a register, worked out once from the two tables above.
constexpr std::array<bool, 128> kIsRegister = [] {
    std::array<bool, 128> t{};
    for (const RegInit& r : kPowerOn)
        for (int a = r.first; a <= r.last; ++a) t[static_cast<size_t>(a)] = true;
    for (ComparatorDacs row : kComparatorDacs)
        for (int k = 0; k < 3; ++k) t[row.cpl + k] = t[row.cph + k] = true;
    return t;
}();

// The register whose read command gives the silicon revision once the keys are in.
constexpr int kRevisionRegister = (wire::kRevisionRead >> 16) & 0x7F;
constexpr int kAlarmStatus = 0x43;
constexpr int kAlarmStatusClear = 0x44;

// The sensor's registers by pointer: local and external temperature in degrees, the
// status (below 64 once a conversion is ready) and the fraction of the external reading.
constexpr uint8_t kSensorLocal = 0, kSensorExternal = 1, kSensorStatus = 2, kSensorFraction = 16;
bool sensorReadOnly(int pointer) {
    return pointer == kSensorLocal || pointer == kSensorExternal || pointer == kSensorStatus ||
           pointer == kSensorFraction;
}


// A request that lasts exactly so long, as a USB transfer of fixed length would: a sleep
// alone ends late by the scheduler's wake-up time, a tenth of a millisecond or more, so
// the last stretch is spent yielding.
void holdFor(std::chrono::nanoseconds latency) {
    const auto end = std::chrono::steady_clock::now() + latency;
    const auto wake = end - std::chrono::microseconds(150);
    if (std::chrono::steady_clock::now() < wake) std::this_thread::sleep_until(wake);
    while (std::chrono::steady_clock::now() < end) std::this_thread::yield();
}
} // namespace

VirtualBoard::VirtualBoard(std::chrono::nanoseconds latency) : latency_(latency) {
    powerOn();
    chip_.setPins(pins_.hwInhibit, pins_.clampPin);
}

uint16_t VirtualBoard::powerOnValue(int address) {
    for (const RegInit& r : kPowerOn)
        if (address >= r.first && address <= r.last) return r.value;
    int member = 0;
    bool high = false;
    if (comparatorTriple(address, member, high)) {
        if (member == 1) return 0xFFFF;
        if (member == 2) return 0x8000;
        return high ? 0xFFFF : 0x0000;
    }
    return 0;
}

bool VirtualBoard::hasRegister(int address) const {
    return address >= 0 && address <= 0x7F && kIsRegister[static_cast<size_t>(address)];
}

uint16_t VirtualBoard::reg(int address) const {
    if (address == kAlarmStatus || address == kAlarmStatusClear) return chip_.alarmStatus();
    return hasRegister(address) ? regs_[static_cast<size_t>(address)] : 0;
}

void VirtualBoard::powerOn() {
    for (int a = 0; a < 0x80; ++a) regs_[static_cast<size_t>(a)] = powerOnValue(a);
    spiReply_ = 0;
    doorStep_ = 0;
    doorOpen_ = false;
    chip_.powerOn();
}

int32_t VirtualBoard::Search_For_Boards(int32_t vendor, int32_t product, int16_t& count,
                                        uint8_t* paths) {
    count = 0;
    if (vendor != kBoardVendor || product != kBoardProduct) return status::NoDevicesFound;
    count = 1;
    paths[0] = kPathByte;
    return status::OK;
}

int32_t VirtualBoard::Connect(int32_t vendor, int32_t product, uint8_t path, int32_t& handle) {
    if (vendor != kBoardVendor || product != kBoardProduct || path != kPathByte)
        return status::NoMatchingDevice;
    connected_ = true;
    handle = kHandle;
    return status::OK;
}

int32_t VirtualBoard::Download_Firmware(int32_t handle, const uint8_t*) {
    if (!connected_ || handle != kHandle) return status::NoDeviceConnected;
    firmwareLoaded_ = true;
    serviceRunning_ = false;
    return status::OK;
}

int32_t VirtualBoard::Vendor_Request(int32_t handle, int32_t request, int32_t value,
                                     int32_t index, int32_t direction, int32_t length,
                                     uint8_t* buffer) {
    if (latency_.count() > 0) holdFor(latency_);
    if (!connected_ || handle != kHandle) return status::NoDeviceConnected;
    if (!firmwareLoaded_) return status::NoFirmwarePresent;
    if (request == wire::kStartService && direction == 0 && length == 0) {
        serviceRunning_ = true;
        return status::OK;
    }
    if (!serviceRunning_) return status::NoFirmwarePresent;

    const bool out = direction == 0 && length == 0;
    const bool in = direction == 1 && buffer != nullptr;
    switch (request) {
    case wire::kChipReset:
        if (!out) break;
        powerOn();
        ++resets_;
        return status::OK;
    case wire::kSpiWord:
        if (out) {
            if (value < 0 || value > 0xFFFF || index < 0 || index > 0xFF) break;
            return spiWrite(static_cast<uint32_t>(index) << 16 | static_cast<uint32_t>(value));
        }
        if (in && length == 3) {
            buffer[0] = static_cast<uint8_t>(spiReply_);
            buffer[1] = static_cast<uint8_t>(spiReply_ >> 8);
            buffer[2] = static_cast<uint8_t>(spiReply_ >> 16);
            return status::OK;
        }
        break;
    case wire::kHwInhibitOff:
    case wire::kHwInhibitOn:
        if (!out) break;
        pins_.hwInhibit = request == wire::kHwInhibitOn;
        chip_.setPins(pins_.hwInhibit, pins_.clampPin);
        return status::OK;
    case wire::kSwitchChannel:
        if (!out || value < 0 || value > 3) break;
        pins_.switchChannel = value;
        return status::OK;
    case wire::kSwitchEnable:
    case wire::kSwitchDisable:
        if (!out) break;
        pins_.switchEnabled = request == wire::kSwitchEnable;
        return status::OK;
    case wire::kAdcConvert:
        if (!out) break;
        adcCode_ = chip_.convert();
        return status::OK;
    case wire::kAdcRead:
        if (!in || length != 3) break;
        buffer[0] = static_cast<uint8_t>(adcCode_);
        buffer[1] = static_cast<uint8_t>(adcCode_ >> 8);
        buffer[2] = 0;
        return status::OK;
    case wire::kClampPinOn:
    case wire::kClampPinOff:
        if (!out) break;
        pins_.clampPin = request == wire::kClampPinOn;
        chip_.setPins(pins_.hwInhibit, pins_.clampPin);
        return status::OK;
    case wire::kSensor:
        if (value < 0 || value > 0xFF) break;
        if (out) {
            if (index < 0 || index > 0xFF) break;
            if (!sensorReadOnly(value))
                sensor_[static_cast<size_t>(value)] = static_cast<uint8_t>(index);
            return status::OK;
        }
        if (in && length == 1) {
            // The readings come from the sensor's model: the chip as it stands now.
            sensorModel_.setChip(regs_[0x07], chip_.outputVolts() * chip_.outputAmps());
            if (!sensorModel_.read(value, buffer[0])) buffer[0] = sensor_[static_cast<size_t>(value)];
            return status::OK;
        }
        break;
    default:
        break;
    }
    // An unknown request or a wrong direction or length: the firmware stalls it.
    return status::UnexpectedEndpointError;
}

int32_t VirtualBoard::spiWrite(uint32_t word) {
    testDoor(word);
    const int address = static_cast<int>((word >> 16) & 0x7F);
    const uint16_t data = static_cast<uint16_t>(word & 0xFFFF);
    if (word & 0x800000) {
        uint16_t reply = reg(address);
        if (address == kRevisionRegister) reply = doorOpen_ ? kSiliconRevision : 0;
        spiReply_ = static_cast<uint32_t>(address) << 16 | reply;
        if (address == kAlarmStatusClear) chip_.clearLatchedAlarms();
        return status::OK;
    }
    // A write shifts nothing useful out.
    spiReply_ = 0;
    if (hasRegister(address) && address != kAlarmStatus && address != kAlarmStatusClear) {
        regs_[static_cast<size_t>(address)] = data;
        chip_.written(address);
    }
    return status::OK;
}

void VirtualBoard::testDoor(uint32_t word) {
    const auto key = [](int step) { return static_cast<uint32_t>(wire::kRevisionKeys[step]); };
    if (word == static_cast<uint32_t>(wire::kRevisionClose)) {
        doorOpen_ = false;
        doorStep_ = 0;
        return;
    }
    if (doorOpen_) return;
    if (word == key(doorStep_)) {
        if (++doorStep_ == static_cast<int>(wire::kRevisionKeys.size())) {
            doorOpen_ = true;
            doorStep_ = 0;
        }
        return;
    }
    doorStep_ = word == key(0) ? 1 : 0;
}

} // namespace qz
