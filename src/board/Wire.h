#pragma once
// What crosses the wire to the board, named once for the program and the virtual board:
// the vendor requests of the board's firmware, and the SPI words of the chip's hidden
// test registers that give its silicon revision.

#include <array>
#include <cstdint>

namespace qz::wire {

// The bridge controller's own request, before it has the board's firmware: a write to its
// RAM at the address in the value field. A byte at kCpuControl holds its CPU in reset (1)
// or frees it (0), which starts the firmware.
inline constexpr uint8_t kFirmwareLoad = 0xA0;
inline constexpr uint16_t kCpuControl = 0xE600;

// Vendor requests. A request without a data stage goes out with value and index 0 unless
// its line says otherwise.
inline constexpr int32_t kChipReset = 219;      // pulse the chip's hardware reset
inline constexpr int32_t kSpiWord = 221;        // OUT: one 24-bit word; IN 3: the reply
inline constexpr int32_t kStartService = 224;   // once, after the firmware download
inline constexpr int32_t kHwInhibitOff = 226;   // /HW-INH to its not-inhibiting level
inline constexpr int32_t kHwInhibitOn = 227;    // /HW-INH to its inhibiting level
inline constexpr int32_t kSwitchChannel = 228;  // value: SW8130 input 0..3
inline constexpr int32_t kSwitchEnable = 229;
inline constexpr int32_t kSwitchDisable = 230;
inline constexpr int32_t kAdcConvert = 232;     // start one ADC conversion
inline constexpr int32_t kAdcRead = 233;        // IN 3: the conversion, low byte first
inline constexpr int32_t kClampPinOn = 234;     // CL EN pin
inline constexpr int32_t kClampPinOff = 235;
inline constexpr int32_t kSensor = 236;         // value: sensor pointer; OUT index: data

// The silicon revision: three key words open the test registers, the read command of
// register 0x53 fetches the revision in its low byte, and one word closes them again.
inline constexpr std::array<int32_t, 3> kRevisionKeys{0x56A7C2, 0x56B1D8, 0x52C4E8};
inline constexpr int32_t kRevisionRead = 0xD30000;
inline constexpr int32_t kRevisionClose = 0x56B1DA;

} // namespace qz::wire
