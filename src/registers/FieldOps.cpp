#include "registers/FieldOps.h"

#include <bit>

namespace qz {

namespace {

constexpr FieldOp keep(int32_t k, int32_t s = 0) { return {k, s}; }
constexpr FieldOp set(int32_t s) { return {kKeepAll, s}; }
constexpr int32_t clear(int32_t bits) { return ~bits; }

// A field of n items that keeps the same bits for every item and puts the index at shift.
constexpr ControlOps indexed(const char* name, Shadow sh, int n, int32_t k, int shift, bool twin,
                             FieldEffect effect = FieldEffect::None) {
    ControlOps c{name, sh, n, {}, twin, effect};
    for (int i = 0; i < n; ++i) c.ops[i] = {k, i << shift};
    return c;
}
// A check box that keeps the same bits either way and sets bit when checked.
constexpr ControlOps check(const char* name, Shadow sh, int32_t k, int32_t bit, bool twin) {
    return {name, sh, 2, {keep(k), keep(k, bit)}, twin};
}

// The alarm setup boxes: chkN latches or disables one alarm at bit 16 - N.
constexpr ControlOps alarmBox(const char* name, int n, int32_t k) {
    ControlOps c = check(name, Shadow::ALM, k, 1 << (16 - n), false);
    c.effect = FieldEffect::AlarmDigit;
    return c;
}

const ControlOps kControls[] = {
    // System control
    {"chkPD", Shadow::SYS, 2, {keep(0x1FC00), set(0x0200)}, true},
    {"chkFINGND", Shadow::SYS, 2, {keep(clear(0x9FF)), set(0x0800)}, false},
    {"CPEN", Shadow::SYS, 2, {keep(clear(0x5FF)), set(0x0400)}, false},
    {"IMEASG", Shadow::SYS, 2, {keep(clear(0x10FF)), set(0x1000)}, true, FieldEffect::CurrentGain},
    {"MEASOUTG", Shadow::SYS, 2, {set(0x2000), keep(clear(0x20FF))}, true, FieldEffect::GainWarning},
    {"tempset", Shadow::SYS, 4,
     {keep(0x13FFF & 0x3FE00), keep(0x13FFF, 0x4000), keep(0x13FFF, 0x8000), keep(0x13FFF, 0xC000)},
     true},
    // DPS1
    check("chkENABLECH", Shadow::PMU, 0x23FF0, 0x8000, true),
    indexed("cboCurrent", Shadow::PMU, 7, 0x287F0, 11, true, FieldEffect::CurrentRange),
    indexed("cboCompare", Shadow::PMU, 4, 0x2B9F0, 9, true),
    indexed("cboMEASURE", Shadow::PMU, 8, 0x2BF10, 5, true),
    check("chkMEASOUT", Shadow::PMU, 0x2BEF0, 0x0100, false),
    check("chkCLAMPEN", Shadow::PMU, 0x2BFE0, 0x0010, true),
    // DPS2
    {"cboSysforce", Shadow::DPS2, 2, {keep(0x37F00), keep(0x37F00, 0x8000)}, true},
    indexed("cboSlew", Shadow::DPS2, 8, 0x38F00, 12, true),
    check("chkGPO", Shadow::DPS2, 0x3F700, 0x0800, true),
    indexed("cboSlave", Shadow::DPS2, 4, 0x3F900, 9, true, FieldEffect::SendAtOnce),
    check("chk10k", Shadow::DPS2, 0x3FE00, 0x0100, true),
    {"Check2", Shadow::DPS2, 2, {keep(0x3FF00), keep(0x3FF80, 0x0080)}, false},
    // Alarm setup
    alarmBox("chk1", 1, 0xF7FC0),
    alarmBox("chk2", 2, 0xFBFC0),
    alarmBox("chk3", 3, 0xFDFC0),
    alarmBox("chk4", 4, 0xFEFC0),
    alarmBox("chk5", 5, 0xFF7C0),
    alarmBox("chk6", 6, 0xFFBC0),
    alarmBox("chk7", 7, 0xFFDC0),
    alarmBox("chk8", 8, 0xFFEC0),
    alarmBox("chk9", 9, 0xFFF40),
    alarmBox("chk10", 10, 0xFFF80),
};

struct ListItems {
    const char* control;
    size_t count;
    const char* items[8];
};

const ListItems kListItems[] = {
    {"tempset", 4, {"TJ = 130degC", "TJ = 120degC", "TJ = 110degC", "TJ = 100degC"}},
    {"IMEASG", 2, {"I MEAS GAIN = 20", "I MEAS GAIN = 10"}},
    {"MEASOUTG", 2, {"MEASOUT GAIN =0.2", "MEASOUT GAIN = 1"}},
    {"cboCompare", 4, {"Compare o/p Hi-Z", "Compare o/p Hi-Z", "Compare Current", "Compare Voltage"}},
    {"cboMEASURE", 8,
     {"MEASOUT Hi-Z ", "MEASOUT = ISENSE", "MEASOUT = VSENSE", "MEASOUT = KSENSE",
      "MEASOUT = TSENSE", "MEASOUT = DUTGND SENSE", "MEASOUT = DIAG A", "MEASOUT = DIAG B"}},
    {"cboSysforce", 2, {"Hi-Z SYS_FORCE & SENSE", "CONNECT TO FOHx MEASVHx"}},
    {"cboSlew", 8,
     {"1 V/us", "0.875 V/us", "0.75 V/us", "0.625 V/us", "0.5 V/us", "0.4375 V/us", "0.35 V/us",
      "0.3125 V/us"}},
    {"cboSlave", 4, {"MASTER - Copy Voltage", "MASTER - Copy Current", "SLAVE - FV", "SLAVE - F1"}},
};

} // namespace

std::span<const char* const> listItems(std::string_view control) {
    for (const ListItems& l : kListItems)
        if (control == l.control) return {l.items, l.count};
    return {};
}

std::span<const ControlOps> allControls() {
    return kControls;
}

const ControlOps* findControl(std::string_view name) {
    for (const ControlOps& c : kControls)
        if (name == c.name) return &c;
    return nullptr;
}

int32_t& shadowWord(General& g, Shadow shadow) {
    switch (shadow) {
    case Shadow::SYS: return g.SYSreg;
    case Shadow::PMU: return g.PMUreg;
    case Shadow::DPS2: return g.DPS2reg;
    case Shadow::ALM: return g.ALMreg;
    }
    return g.SYSreg;
}

float currentGainOf(int item) { return item == 1 ? 10.0f : 20.0f; }

int alarmBitOf(const ControlOps& control) {
    return std::countr_zero(static_cast<uint32_t>(control.ops[1].set));
}

int32_t applyField(int32_t word, const ControlOps& control, int item) {
    if (item < 0 || item >= control.items) return word;
    const FieldOp& op = control.ops[item];
    return (word & op.keep) | op.set;
}

int itemInWord(int32_t word, const ControlOps& control) {
    for (int i = 0; i < control.items; ++i)
        if (applyField(word, control, i) == word) return i;
    return -1;
}

} // namespace qz
