#pragma once
// The About dialog's way to the system information tool: where the tool is looked for in
// the registry, and how a registry value becomes text. The registry and the start of a
// program are Windows services (SysInfoWindows.cpp); elsewhere there is no tool to find.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qz {

inline constexpr uint32_t kHKEY_LOCAL_MACHINE = 0x80000002;
// The access GetKeyValue opens a key with.
inline constexpr uint32_t kKeyAccess = 0x2003F;
// Query buffer of GetKeyValue, in characters.
inline constexpr uint32_t kKeyBufferSize = 1024;

inline constexpr uint32_t kREG_SZ = 1;
inline constexpr uint32_t kREG_DWORD = 4;

inline constexpr const char* kSysInfoUnavailable = "System Information Is Unavailable At This Time";

// What GetKeyValue makes of the value it read: a NUL at the end is dropped; a text
// (type 1) is taken as it is; a double word (type 4) is read as hexadecimal, its last
// byte first, two digits a byte, as a signed 32-bit number, and given as decimal text;
// any other type leaves keyVal as it was. A double word that is no such number throws
// std::invalid_argument, which StartSysInfo traps.
void keyValueText(uint32_t type, std::string_view data, std::string& keyVal);

// GetKeyValue(KeyRoot, KeyName, SubKeyRef, KeyVal): the value SubKeyRef of the key
// KeyName below the root; false, with KeyVal emptied, when the key or the value cannot be
// read. Without a registry (any system but Windows) every key is missing.
bool GetKeyValue(uint32_t KeyRoot, const std::string& KeyName, const std::string& SubKeyRef,
                 std::string& KeyVal);

// Starts the program at path in a normal window; false when it could not be started,
// and always false where there is no such tool.
bool runProgram(const std::string& path);

// What StartSysInfo reaches of the system; the real one by default, tests give others.
struct SysInfoSystem {
    std::function<bool(uint32_t, const std::string&, const std::string&, std::string&)> getKeyValue =
        GetKeyValue;
    std::function<bool(const std::string&)> fileExists;  // default: a file at that path
    std::function<bool(const std::string&)> run = runProgram;
};

// StartSysInfo, with errors trapped: the tool at the registry's MSINFO PATH, else
// MSINFO32.EXE in the shared tools' folder if it is there. False when neither could be
// started; the caller then shows kSysInfoUnavailable.
bool StartSysInfo(const SysInfoSystem& system = {});

} // namespace qz
