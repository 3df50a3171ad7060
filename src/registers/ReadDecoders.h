#pragma once
// What the console's read tabs make of a reply. A field left empty keeps its caption.

#include <cstdint>
#include <optional>
#include <string>

namespace qz {

struct SystemControlReadback {
    std::optional<std::string> temp;  // lbltemp
    std::string gain1;                // lblGAIN1
    std::string gain0;                // lblGAIN0
    std::string fin;                  // lblfin
    std::string cpo;                  // lblcpo
    std::string pd;                   // lblPD
};

SystemControlReadback decodeSystemControl(int32_t reply);

struct DPS1Readback {
    std::string channel;                // RPMU(0)
    std::optional<std::string> range;   // RPMU(1)
    std::string compare;                // RPMU(2)
    bool measoutHiZ = false;            // RPMU(3) shown with "MEASOUT Hi-Z", else hidden
    std::string clamps;                 // RPMU(4)
    std::string source;                 // RPMU(5)
};

DPS1Readback decodeDPS1(int32_t reply);

// An alarm bit is active low: 1 is a green "OK", 0 a red "HOT".
struct AlarmLamp {
    int32_t colour;
    const char* caption;
};
AlarmLamp temperatureLamp(int32_t reply, int bit);

} // namespace qz
