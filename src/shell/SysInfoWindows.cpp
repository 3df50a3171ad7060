// The registry and the start of a program, which only Windows has; elsewhere every key
// is missing and no tool can be started.

#include "shell/SysInfo.h"

#ifdef _WIN32
#include <windows.h>

#include <vector>
#endif

namespace qz {

#ifdef _WIN32

bool GetKeyValue(uint32_t KeyRoot, const std::string& KeyName, const std::string& SubKeyRef,
                 std::string& KeyVal) {
    // The predefined roots are negative 32-bit numbers, widened with their sign.
    const auto root = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(KeyRoot)));
    HKEY hKey = nullptr;
    if (RegOpenKeyExA(root, KeyName.c_str(), 0, kKeyAccess, &hKey) != ERROR_SUCCESS) {
        KeyVal.clear();
        return false;
    }
    char buffer[kKeyBufferSize] = {};
    DWORD size = kKeyBufferSize;
    DWORD type = 0;
    if (RegQueryValueExA(hKey, SubKeyRef.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer),
                         &size) != ERROR_SUCCESS) {
        KeyVal.clear();
        RegCloseKey(hKey);
        return false;
    }
    try {
        keyValueText(type, std::string_view(buffer, size), KeyVal);
    } catch (...) {
        RegCloseKey(hKey);
        throw;
    }
    RegCloseKey(hKey);
    return true;
}

bool runProgram(const std::string& path) {
    STARTUPINFOA si = {};
    si.cb = sizeof si;
    si.dwFlags = STARTF_USESHOWWINDOW;
    si.wShowWindow = SW_SHOWNORMAL;
    PROCESS_INFORMATION pi = {};
    // Quoted, so that a path with spaces is not read as a program and its arguments.
    const std::string quoted = path.starts_with('"') ? path : '"' + path + '"';
    std::vector<char> command(quoted.begin(), quoted.end());
    command.push_back('\0');
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si,
                        &pi))
        return false;
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return true;
}

#else

bool GetKeyValue(uint32_t, const std::string&, const std::string&, std::string& KeyVal) {
    KeyVal.clear();
    return false;
}

bool runProgram(const std::string&) { return false; }

#endif

} // namespace qz
