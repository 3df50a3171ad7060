#pragma once
// The chip's registers as the program knows them: address, read command, the name on
// the panels, and the data bits' labels. Field masks live with the panels' operations.

#include "registers/BitLabels.h"

#include <cstdint>
#include <optional>

namespace qz {

struct Register {
    int address;
    int32_t readCommand;  // -1: never read back
    const char* name;
};

// Every register written or read, in address order.
const Register* findRegister(int address);

// The read command of a register: the address with the R/W bit set, in bits 23..16.
constexpr int32_t readCommandOf(int address) { return (address + 128) * 65536; }
// The write word of a register with its data.
constexpr int32_t writeWord(int address, int32_t data) { return address * 65536 + data; }

// The comparator DACs: one x1, m, c triple per current range, CPL and CPH, in the order
// of the read page's range list. The "Voltage Range" row stands apart from the others:
// no step rule reaches it.
enum class Comparator { CPL = 0, CPH = 1 };
enum class DacMember { X1 = 0, M = 1, C = 2 };
inline constexpr int kComparatorRows = 8;
inline constexpr const char* kComparatorRowNames[kComparatorRows] = {
    "5uA", "25uA", "250uA", "2.5mA", "25mA", "Ext1 Range", "Ext2 Range", "Voltage Range"};
int comparatorAddress(Comparator which, int row, DacMember member);

// Bit labels of the data bits, bit 15 first.
inline constexpr DataLabels kDPS1Labels{
    "SW_INH", "RESERVED", "i2", "i1", "i0", "C V/I", "CMP", "ME3",
    "ME2",    "ME1",      "ME0", "CL EN", "D3", "D2", "D1", "D0"};
inline constexpr DataLabels kDPS2Labels{
    "SFO", "SR2", "SR1", "SR0", "GPO", "SLAVE", "GANGI", "INT10k",
    "D7",  "D6",  "D5",  "D4",  "D3",  "D2",    "D1",    "D0"};
inline constexpr DataLabels kAlarmSetupLabels{
    "LATCH", "DISABLE", "LATCH", "DISABLE", "LATCH", "DISABLE", "LATCH", "DISABLE",
    "LATCH", "DISABLE", "B5",    "B4",      "B3",    "B2",      "B1",    "B0"};
inline constexpr DataLabels kAlarmStatusLabels{
    "LTALM",   "TMPALM", "LOSALM", "OSALM", "LDUT", "DUT", "LCLALM", "CLALM",
    "LGRDALM", "GRDALM", "CPOL",   "CPOH",  "B3",   "B2",  "B1",     "B0"};
inline constexpr DataLabels kDacLabels{
    "D15", "D14", "D13", "D12", "D11", "D10", "D9", "D8",
    "D7",  "D6",  "D5",  "D4",  "D3",  "D2",  "D1", "D0"};
inline constexpr DataLabels kComp1Labels{
    "CDUT3", "CDUT2", "CDUT1", "CDUT0", "ESR3", "ESR2", "ESR1", "ESR0",
    "SAFEMODE", "D6", "D5",    "D4",    "D3",   "D2",   "D1",   "D0"};
inline constexpr DataLabels kComp2Labels{
    "MANUAL", "Rz2", "Rz1", "Rz0", "Rp2", "Rp1", "Rp0", "GM1",
    "GM0",    "CF2", "CF1", "CF0", "Cc1", "Cc2", "Cc3", "D0"};
inline constexpr DataLabels kDiagLabels{
    "DIAG3", "DIAG2", "DIAG1", "DIAG0", "TSEN4", "TSEN3", "TSEN2", "TSEN1",
    "TSEN0", "FA1",   "FA0",   "D4",    "D3",    "D2",    "D1",    "D0"};

} // namespace qz
