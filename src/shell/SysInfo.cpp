#include "shell/SysInfo.h"

#include "levels/Numbers.h"

#include <filesystem>
#include <stdexcept>

namespace qz {

void keyValueText(uint32_t type, std::string_view data, std::string& keyVal) {
    if (!data.empty() && data.back() == '\0') data.remove_suffix(1);
    if (type == kREG_SZ) {
        keyVal = std::string(data);
    } else if (type == kREG_DWORD) {
        static constexpr char kDigits[] = "0123456789ABCDEF";
        std::string hex;
        for (auto it = data.rbegin(); it != data.rend(); ++it) {
            const auto byte = static_cast<unsigned char>(*it);
            hex += kDigits[byte >> 4];
            hex += kDigits[byte & 0xF];
        }
        // As "&h" + text: up to 32 bits, the top bit the sign.
        const std::optional<int32_t> n = parseHex(hex);
        if (!n) throw std::invalid_argument("not a double word: &h" + hex);
        keyVal = std::to_string(*n);
    }
}

bool StartSysInfo(const SysInfoSystem& system) {
    const auto exists = [&system](const std::string& path) {
        if (system.fileExists) return system.fileExists(path);
        std::error_code ec;
        return std::filesystem::exists(path, ec);
    };
    try {
        std::string path;
        if (system.getKeyValue(kHKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH",
                               path))
            return system.run(path);
        if (system.getKeyValue(kHKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Shared Tools Location",
                               "MSINFO", path) &&
            exists(path + "\\MSINFO32.EXE"))
            return system.run(path + "\\MSINFO32.EXE");
    } catch (...) {
        // Any error on the way ends in the same message as a tool not found.
    }
    return false;
}

} // namespace qz
