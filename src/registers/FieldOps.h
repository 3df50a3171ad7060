#pragma once
// How each list, check box and option of the console and the front panel changes its
// shadow word: the word is ANDed with the item's mask, which clears the field and the
// register's unused data bits, then ORed with the item's bits.

#include <cstdint>
#include <string_view>

namespace qz {

enum class Shadow { SYS, PMU, DPS2, ALM };

struct FieldOp {
    int32_t keep;  // the bits that stay
    int32_t set;   // the bits ORed in after
};

inline constexpr int32_t kKeepAll = -1;

// The operations of one control; for a check box item 0 is unchecked and item 1 checked.
struct ControlOps {
    const char* name;
    Shadow shadow;
    int items;
    FieldOp ops[8];
    bool twin;  // a control of the same name on the front panel mirrors it
};

// The control of that name, or nullptr.
const ControlOps* findControl(std::string_view name);

// The word after item of control; a word outside the items comes back unchanged.
int32_t applyField(int32_t word, const ControlOps& control, int item);

} // namespace qz
