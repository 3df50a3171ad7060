#pragma once
// The chip's registers as the program knows them: address, read command, the name on
// the panels, and the data bits' labels. Field masks live with the panels' operations.

#include "board/Comparators.h"
#include "registers/BitLabels.h"

#include <cstdint>
#include <optional>

namespace qz {

// The addresses the panels name.
namespace reg {
inline constexpr int kSystemControl = 0x01;
inline constexpr int kDPS1 = 0x02;
inline constexpr int kDPS2 = 0x03;
inline constexpr int kComp1 = 0x04;
inline constexpr int kComp2 = 0x05;
inline constexpr int kAlarmSetup = 0x06;
inline constexpr int kDiag = 0x07;
inline constexpr int kFinX1 = 0x08;
inline constexpr int kOffset = 0x0B;
inline constexpr int kRampEnd = 0x3E;
inline constexpr int kRampStep = 0x3F;
inline constexpr int kRclkDivider = 0x40;
inline constexpr int kRampEnable = 0x41;     // 0x41FFFF enables and starts the ramp
inline constexpr int kRampInterrupt = 0x42;  // 0x420000 interrupts it
inline constexpr int kAlarmStatus = 0x43;
inline constexpr int kAlarmStatusClear = 0x44; // the read also clears the latched alarms
} // namespace reg

struct Register {
    int address;
    int32_t readCommand;  // -1: never read back
    const char* name;
};

// Every register written or read, in address order.
const Register* findRegister(int address);

// The read command of a register: the address with the R/W bit set, in bits 23..16.
constexpr int32_t readCommandOf(int address) { return (0x80 | (address & 0x7F)) << 16; }
// The write word of a register with its data: the address in bits 22..16, the data in
// bits 15..0; neither can spill into the other.
constexpr int32_t writeWord(int address, int32_t data) {
    return (address & 0x7F) << 16 | (data & 0xFFFF);
}

// The comparator DACs: one x1, m, c triple per current range, CPL and CPH, in the order
// of the read page's range list. The "Voltage Range" row stands apart from the others:
// no step rule reaches it.
enum class Comparator { CPL = 0, CPH = 1 };
enum class DacMember { X1 = 0, M = 1, C = 2 };
inline constexpr int kComparatorRows = static_cast<int>(kComparatorDacs.size());
struct ComparatorRowName {
    const char* item;    // in the read page's range list
    const char* caption; // beside the row of boxes on the write page
};
inline constexpr ComparatorRowName kComparatorRowNames[kComparatorRows] = {
    {"5uA", "\u00B15uA"},          {"25uA", "\u00B125uA"},       {"250uA", "\u00B1250uA"},
    {"2.5mA", "\u00B12.5mA"},      {"25mA", "\u00B125mA"},       {"Ext1 Range", "\u00B1Ext 1"},
    {"Ext2 Range", "\u00B1Ext 2"}, {"Voltage Range", "Voltage Range"}};
inline constexpr const char* kComparatorItems[2] = {"CPL", "CPH"};
// The members of a DAC as its read list offers them.
inline constexpr const char* kDacMemberItems[3] = {"x1 ", "m", "c"};
int comparatorAddress(Comparator which, int row, DacMember member);

// The DACs of the read page's other two lists, in list order; the item is the register's
// name in the map.
inline constexpr int kFinAuxDacs[] = {0x08, 0x09, 0x0A, 0x0C, 0x3D};
inline constexpr int kClampDacs[] = {0x0D, 0x0E, 0x0F, 0x10, 0x11, 0x12};

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

// The fields of the words, as captions over their bits; R/W has none.
inline constexpr BitGroup kComp1Groups[] = {{"REGISTER ADDRESS", 22, 16}, {"CDUT", 15, 12},
                                            {"DUTALM", 11, 8},            {"SAFEMODE", 7, 7},
                                            {"UNUSED DATA BITS", 6, 0}};
inline constexpr BitGroup kComp2Groups[] = {
    {"REGISTER ADDRESS", 22, 16}, {"MANUAL", 15, 15}, {"Rz", 14, 12}, {"Rp", 11, 9},
    {"GM", 8, 7},                 {"CF", 6, 4},       {"CcX", 3, 1},  {"UNUSED DATA BITS", 0, 0}};
inline constexpr BitGroup kDiagGroups[] = {{"REGISTER ADDRESS", 22, 16}, {"DIAG SELECT", 15, 12},
                                           {"TSENSE SELECT", 11, 7},     {"TEST FORCE AMP", 6, 5},
                                           {"UNUSED DATA BITS", 4, 0}};

} // namespace qz
