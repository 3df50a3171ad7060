#pragma once
// Status codes of the bridge library and their texts.

#include <cstdint>

namespace qz::status {

inline constexpr int32_t OK = 0;
inline constexpr int32_t NoDevicesFound = 1001;
inline constexpr int32_t ConnectionError = 1002;
inline constexpr int32_t GetStringDescFailed = 1003;
inline constexpr int32_t InvalidPath = 1004;
inline constexpr int32_t PathNotMatching = 1005;
inline constexpr int32_t NoMatchingDevice = 2001;
inline constexpr int32_t NoDeviceConnected = 3001;
inline constexpr int32_t FirmwareNotFound = 3002;
inline constexpr int32_t FirmwareCorrupted = 3003;
inline constexpr int32_t FirmwareDownloadFailed = 3004;
inline constexpr int32_t TransferIncomplete = 3005;
inline constexpr int32_t UnexpectedEndpointError = 3006;
inline constexpr int32_t ResetFailed = 3007;
inline constexpr int32_t InvalidEndpointAddress = 3008;
inline constexpr int32_t BulkTransfer = 3009;
inline constexpr int32_t NoFirmwarePresent = 3010;

// The message of a status code, or nullptr for a code without one (0 among them).
const char* text(int32_t code);

} // namespace qz::status
