#include "registers/RegisterMap.h"

#include <algorithm>

namespace qz {

namespace {

constexpr Register kRegisters[] = {
    {0x01, 0x810000, "SYSTEM CONTROL REGISTER"},
    {0x02, 0x820000, "DPS1 REGISTER"},
    {0x03, 0x830000, "DPS2 REGISTER"},
    {0x04, 0x840000, "COMPENSATION REGISTER 1"},
    {0x05, 0x850000, "COMPENSATION REGISTER 2"},
    {0x06, -1, "ALARM SETUP REGISTER"},
    {0x07, 0x870000, "DIAGNOSTIC REGISTER"},
    {0x08, 0x880000, "FIN DAC x1"},
    {0x09, 0x890000, "FIN DAC m"},
    {0x0A, 0x8A0000, "FIN DAC c"},
    {0x0B, 0x8B0000, "OFFSET DAC"},
    {0x0C, 0x8C0000, "OSD DAC"},
    {0x0D, 0x8D0000, "CLL DAC x1"},
    {0x0E, 0x8E0000, "CLL DAC m"},
    {0x0F, 0x8F0000, "CLL DAC c"},
    {0x10, 0x900000, "CLH DAC x1"},
    {0x11, 0x910000, "CLH DAC m"},
    {0x12, 0x920000, "CLH DAC c"},
    {0x3D, 0xBD0000, "DGS DAC"},
    {0x3E, 0xBE0000, "RAMP END CODE"},
    {0x3F, 0xBF0000, "RAMP STEP SIZE"},
    {0x40, 0xC00000, "RCLK DIVIDER"},
    {0x41, 0xC10000, "RAMP ENABLE"},
    {0x42, -1, "RAMP INTERRUPT"},
    {0x43, 0xC30000, "READ ALARM STATUS REGISTER"},
    {0x44, 0xC40000, "READ ALARM STATUS AND CLEAR"},
};

} // namespace

int comparatorAddress(Comparator which, int row, DacMember member) {
    const ComparatorDacs& dacs = kComparatorDacs[static_cast<size_t>(std::clamp(row, 0, kComparatorRows - 1))];
    return (which == Comparator::CPL ? dacs.cpl : dacs.cph) + static_cast<int>(member);
}

const Register* findRegister(int address) {
    for (const Register& r : kRegisters)
        if (r.address == address) return &r;
    return nullptr;
}

} // namespace qz
