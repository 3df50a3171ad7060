#pragma once
// How each list, check box and option of the console and the front panel changes its
// shadow word: the word is ANDed with the item's mask, which clears the field and the
// register's unused data bits, then ORed with the item's bits.

#include "registers/General.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace qz {

enum class Shadow { SYS, PMU, DPS2, ALM };

struct FieldOp {
    int32_t keep;  // the bits that stay
    int32_t set;   // the bits ORed in after
};

inline constexpr int32_t kKeepAll = -1;

// What a control does besides its field, in the order the handlers do it.
enum class FieldEffect {
    None,
    CurrentGain,  // item 0: imeasGain 20, item 1: 10
    CurrentRange, // the front panel's IRangeIndex and clamp unit follow the item
    GainWarning,  // item 1 shows the MEASOUT gain warning first, without waiting for it
    SendAtOnce,   // the console sends the word at once, WRITE button or not
    AlarmDigit,   // the console's txtWALM box of the control's bit gets its "0" or "1"
};

// The operations of one control; for a check box item 0 is unchecked and item 1 checked.
struct ControlOps {
    const char* name;
    Shadow shadow;
    int items;
    FieldOp ops[8];
    bool twin;  // a control of the same name on the other panel mirrors it
    FieldEffect effect = FieldEffect::None;
};

// The items of a list that both panels show alike, in list order; empty for a control
// without such a list (the range list is named by each panel its own way).
std::span<const char* const> listItems(std::string_view control);

// The control of that name, or nullptr.
const ControlOps* findControl(std::string_view name);
// Every control of the table.
std::span<const ControlOps> allControls();

// The word after item of control; a word outside the items comes back unchanged.
int32_t applyField(int32_t word, const ControlOps& control, int item);

// The first item whose bits the word holds: what a list shows that no pick has set yet.
// -1 when none does.
int itemInWord(int32_t word, const ControlOps& control);

// The shadow word a control works on.
int32_t& shadowWord(General& general, Shadow shadow);

// The current-sense gain of IMEASG's item: 20 for item 0, 10 for item 1.
float currentGainOf(int item);

// The bit of an alarm setup box (chk1 is bit 15, chk10 bit 6): the bit its item 1 sets.
int alarmBitOf(const ControlOps& control);

} // namespace qz
