#pragma once
// The check of an entry field on Enter: a function of the field's text that gives the
// value to write, the tidied text to show, or the message of a refusal. A refused field
// is emptied and takes the focus; that, and the writing, are the panel's.

#include "levels/FieldTable.h"
#include "levels/Messages.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qz {

struct FieldCheck {
    bool ok = false;
    int32_t value = 0;   // the value to write, when ok
    std::string text;    // the tidied text, when ok
    std::string message; // the refusal, when not ok
};

// A hexadecimal field: the text is read as hexadecimal (parseHex), tested against the
// field's upper bound and, for txtCLHx1 alone, its lower bound; then upper-cased and
// tidied by PadHex4. A negative value (an eight-digit text with its top bit set, as
// "FFFF8000") is refused, with the text of the bound it fails: tooSmall where the field
// has a lower bound (txtCLHx1), tooLarge elsewhere. Cut to 16 bits it would let by a code
// the field refuses when typed short ("FFFFFF80" in txtRampStep would send 0xFF80, far
// past its 0x7F). In the word box, eight digits
// that PadHex4 would cut to four show as the six of the word.
FieldCheck checkHexField(const HexField& field, std::string_view text);

// txtFINx1 also reads OFFSETx1(0) of the console, for the outputV that follows: when
// that box holds no code (readDacCode), txtFINx1 is refused as not a valid number.
FieldCheck checkFINx1Entry(std::string_view text, std::string_view offsetText);

// Text1, the console's word box: any 24-bit word; a negative eight-digit text is refused
// with its bound text. Eight digits show as the six of the word ("00812345" is "812345").
FieldCheck checkWordEntry(const std::string& text);

// The check Text1 makes when it loses the focus: a hexadecimal number, upper-cased.
FieldCheck checkWordOnLeave(const std::string& text);

// A word to send, with its six-digit text for Text1 or txtWrite.
struct DacWrite {
    int32_t word = 0;
    std::string text;
};

// DACLOAD's word: DAClast = dacadd OR lx, lx being a 16-bit code (higher bits dropped).
DacWrite composeDACLOAD(int32_t lx, int32_t dacadd);

// The ramp fields' word: rampWord = addressWord OR value; it leaves DAClast alone.
DacWrite composeRampWrite(int32_t value, int32_t addressWord);

// A decimal field: the text is read as a single-precision number (parseSingle).
struct DecimalCheck {
    bool ok = false;
    float value = 0.0f;  // when ok
    std::string text;    // the text to show, when ok
    std::string message; // the refusal, when not ok
};

// A resistor box: a number from its lower to its upper bound, both taken (as single
// precision). The text stays as typed.
DecimalCheck checkDecimalField(const DecimalField& field, std::string_view text);

// txtV: a number from VoutMin to VoutMax, both taken; the text is upper-cased. A panel
// that has work to do between the parse and the bound test (txtV sends PMUreg and
// updates the limits first) parses with parseSingle and then calls this.
DecimalCheck checkVoltageEntry(std::string_view text, float VoutMin, float VoutMax);

} // namespace qz
