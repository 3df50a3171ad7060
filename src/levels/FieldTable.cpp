#include "levels/FieldTable.h"

#include "registers/RegisterMap.h"

#include <algorithm>
#include <array>

namespace qz {

namespace {

using enum HexFieldId;
using enum FurtherStep;

// One row per field, in the order of HexFieldId. The CPL and CPH rows carry no address:
// it comes from the comparator table by index.
constexpr std::array<HexField, kHexFieldCount> kHexFields{{
    {OFFSETx1, "OFFSETx1", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x0B0000, "8000", OutputV, OFFSETx1},
    {txtFINx1, "txtFINx1", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x080000, "8000", OutputVFirst,
     txtFINx1},
    {txtFINM, "txtFINM", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x090000, "FFFF", None, txtFINM},
    {txtFINC, "txtFINC", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x0A0000, "8000", None, txtFINC},
    {txtDGS, "txtDGS", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x3D0000, "8000", None, txtDGS},
    // The ramp's start code goes to FIN x1.
    {txtstart, "txtstart", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x080000, "8000", None, txtstart},
    {txtCLLx1, "txtCLLx1", 0x7FFF, kCLLx1TooLarge, 0, nullptr, 0x0D0000, "0000", None, txtCLLx1},
    {txtCLLM, "txtCLLM", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x0E0000, "FFFF", ReloadX1, txtCLLx1},
    {txtCLLC, "txtCLLC", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x0F0000, "8000", ReloadX1, txtCLLx1},
    {txtCLHx1, "txtCLHx1", 0xFFFF, kCLHx1TooLarge, 0x8000, kCLHx1TooSmall, 0x100000, "FFFF", None,
     txtCLHx1},
    {txtCLHM, "txtCLHM", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x110000, "FFFF", ReloadX1, txtCLHx1},
    {txtCLHC, "txtCLHC", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x120000, "8000", ReloadX1, txtCLHx1},
    {txtCPLx1, "txtCPLx1", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "0000", None, txtCPLx1},
    {txtCPLM, "txtCPLM", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "FFFF", None, txtCPLM},
    {txtCPLC, "txtCPLC", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "8000", None, txtCPLC},
    {txtCPHx1, "txtCPHx1", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "FFFF", None, txtCPHx1},
    {txtCPHM, "txtCPHM", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "FFFF", None, txtCPHM},
    {txtCPHC, "txtCPHC", 0xFFFF, kCodeTooLarge, 0, nullptr, 0, "8000", None, txtCPHC},
    {txtRAMP, "txtRAMP", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x3E0000, "FFFF", RampWrite, txtRAMP},
    {txtRampStep, "txtRampStep", 0x7F, kSevenBitTooLarge, 0, nullptr, 0x3F0000, "7F", RampWrite,
     txtRampStep},
    // The divider takes eight bits though its refusal names seven, as the panel words it.
    {txtRCLKDiv, "txtRCLKDiv", 0xFF, kSevenBitTooLarge, 0, nullptr, 0x400000, "7F", RampWrite,
     txtRCLKDiv},
    {Text1, "Text1", 0xFFFFFF, kWordTooLarge, 0, nullptr, 0, "", SendWord, Text1},
    {frmMain_OFFSETx1, "OFFSETx1", 0xFFFF, kCodeTooLarge, 0, nullptr, 0x0B0000, "8000", FrontOffset,
     frmMain_OFFSETx1},
    {txtAddrPtr, "txtAddrPtr", 0xFF, kByteTooLarge, 0, nullptr, 0, "", Hold, txtAddrPtr},
    {txtPTR, "txtPTR", 0xFF, kByteTooLarge, 0, nullptr, 0, "", Hold, txtPTR},
    {txtdata, "txtdata", 0xFF, kByteTooLarge, 0, nullptr, 0, "0", Hold, txtdata},
}};

constexpr bool inIdOrder() {
    for (size_t i = 0; i < kHexFields.size(); ++i)
        if (static_cast<size_t>(kHexFields[i].id) != i) return false;
    return true;
}
static_assert(inIdOrder(), "the rows of kHexFields follow HexFieldId");

struct ComparatorBox {
    HexFieldId id;
    Comparator which;
    DacMember member;
};

constexpr ComparatorBox kComparatorBoxes[] = {
    {txtCPLx1, Comparator::CPL, DacMember::X1}, {txtCPLM, Comparator::CPL, DacMember::M},
    {txtCPLC, Comparator::CPL, DacMember::C},   {txtCPHx1, Comparator::CPH, DacMember::X1},
    {txtCPHM, Comparator::CPH, DacMember::M},   {txtCPHC, Comparator::CPH, DacMember::C},
};

} // namespace

HexField hexField(HexFieldId id, int index) {
    HexField f = kHexFields[static_cast<size_t>(id)];
    for (const ComparatorBox& box : kComparatorBoxes) {
        if (box.id != id) continue;
        const int row = std::clamp(index, 0, kComparatorRows - 1);
        f.addressWord = writeWord(comparatorAddress(box.which, row, box.member), 0);
    }
    return f;
}

const DecimalField* rsenseField(RsenseBox box) {
    switch (box) {
    case RsenseBox::EXT1: return &ktxtEXT1rsense;
    case RsenseBox::EXT2: return &ktxtEXT2Rsense;
    case RsenseBox::None: break;
    }
    return nullptr;
}

} // namespace qz
