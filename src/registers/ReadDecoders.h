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

} // namespace qz
