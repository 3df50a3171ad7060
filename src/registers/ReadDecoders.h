#pragma once
// What the console's read tabs make of a reply. A field left empty keeps its caption.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace qz {

struct SystemControlReadback {
    std::optional<std::string> temp; // lbltemp
    std::string gain1;               // lblGAIN1
    std::string gain0;               // lblGAIN0
    std::string fin;                 // lblfin
    std::string cpo;                 // lblcpo
    std::string pd;                  // lblPD
};

SystemControlReadback decodeSystemControl(int32_t reply);

// The read-back text of each value of the DPS1 range field (bits 13..11), which is also
// the current range index; the value 7 has no text.
inline constexpr std::array<const char*, 7> kRangeReadback{
    "Current Range = 5uA",        "Current Range = 25uA", "Current Range = 250uA",
    "Current Range = 2.5mA",      "Current Range = 25mA", "Current Range = Ext Range 2",
    "Current Range = Ext Range 1"};

struct DPS1Readback {
    std::string channel;              // RPMU(0)
    std::optional<std::string> range; // RPMU(1)
    std::string compare;              // RPMU(2)
    bool measoutHiZ = false;          // RPMU(3) shown with "MEASOUT Hi-Z", else hidden
    std::string clamps;               // RPMU(4)
    std::string source;               // RPMU(5)
};

DPS1Readback decodeDPS1(int32_t reply);

} // namespace qz
