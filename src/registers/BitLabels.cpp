#include "registers/BitLabels.h"

namespace qz {

RowCaptions rowCaptions(const DataLabels& data) {
    RowCaptions c;
    c[23] = "R/W";
    for (int k = 22; k >= 16; --k) c[static_cast<size_t>(k)] = "B" + std::to_string(k);
    for (size_t i = 0; i < 16; ++i) c[15 - i] = data[i];
    return c;
}

} // namespace qz
