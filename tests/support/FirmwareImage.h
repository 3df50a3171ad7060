#pragma once
// A firmware file for the download tests, in Intel HEX with CR LF: an address record and a
// start record, 5,008 bytes of 0xAB from address 0, 0x55 at 0x2000, the end record, and
// text after the end, which the reader ignores.

#include <cstdio>
#include <string>

namespace qztest {

inline std::string firmwareImage() {
    std::string text = ":020000040000FA\r\n:0400000300000000F9\r\n";
    for (int addr = 0; addr < 5008; addr += 16) {
        char line[48]; // with its checksum, which makes the bytes of the record add up to 0
        std::snprintf(line, sizeof line, ":10%04X00%s%02X\n", addr, "ABABABABABABABABABABABABABABABAB",
                      -(addr / 256 + addr % 256 + 16 * 0xAC) & 0xFF);
        text += line;
    }
    return text + ":01200000558a\n:00000001FF\ntext after the end\n";
}

} // namespace qztest
