#include "registers/BitMirror.h"

#include <cstddef>

namespace qz {

bool DecToBin(int32_t& word, int32_t limit, BitDigits& digits) {
    if (word < 0 || word > limit) return false;
    for (std::size_t k = 0; k < digits.size(); ++k) {
        digits[k] = (word % 2 != 0) ? '1' : '0';
        word /= 2;
    }
    return true;
}

} // namespace qz
