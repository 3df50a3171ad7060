#pragma once
// The entry fields of the console, the front panel and the sensor page: what each accepts, the words of
// its refusals, the register it writes, its start text, and what follows a good entry.

#include "levels/Ranges.h"

#include <cstdint>

namespace qz {

inline constexpr const char* kCodeTooLarge =
    "Number too large. Please reenter code between 0 and xFFFF.";
inline constexpr const char* kCLLx1TooLarge =
    "Number too large. Please reenter code between 0 and 7FFF.";
inline constexpr const char* kCLHx1TooLarge =
    "Number too large. Please reenter code between 0 and 0xFFFF.";
inline constexpr const char* kCLHx1TooSmall =
    "Number too small. Please reenter code between 0x8000 and 0xFFFF.";
inline constexpr const char* kSevenBitTooLarge =
    "Number too large. Please reenter code between 0 and x7F.";
inline constexpr const char* kWordTooLarge =
    "Number too large. Please reenter code between 0 and xFFFFFF.";
inline constexpr const char* kByteTooLarge =
    "Number too large. Please reenter code between 0 and FF.";

// What a good entry does once its value has passed.
enum class FurtherStep {
    None,         // DACLOAD(value, addressWord)
    OutputV,      // console OFFSETx1: DACLOAD, then outputV
    OutputVFirst, // txtFINx1: outputV on the text as typed, then tidy and DACLOAD
    ReloadX1,     // CLL and CLH m and c: DACLOAD, then the x1 box `reload` of the same
                  // index is checked as its own entry and loaded
    RampWrite,    // ramp fields: rampWord = addressWord OR value, sent apart from DAClast
    SendWord,     // Text1: the value is the whole word, sent as it is
    FrontOffset,  // frmMain OFFSETx1: DAClast to txtWrite and out, text copied to the
                  // console's OFFSETx1(0), then UpdateOutputLimits
    Hold,         // nothing is sent: the box holds the value for the buttons that read it
};

// The hexadecimal entry fields. The CPL and CPH boxes are arrays whose index (0..7) is
// the row of the comparator table, and the index chooses the register.
enum class HexFieldId {
    OFFSETx1,
    txtFINx1,
    txtFINM,
    txtFINC,
    txtDGS,
    txtstart,
    txtCLLx1,
    txtCLLM,
    txtCLLC,
    txtCLHx1,
    txtCLHM,
    txtCLHC,
    txtCPLx1,
    txtCPLM,
    txtCPLC,
    txtCPHx1,
    txtCPHM,
    txtCPHC,
    txtRAMP,
    txtRampStep,
    txtRCLKDiv,
    Text1,
    frmMain_OFFSETx1, // OFFSETx1 of frmMain
    txtAddrPtr,       // the temperature sensor's pointer to read
    txtPTR,           // its pointer to write
    txtdata,          // the byte to write
};
inline constexpr int kHexFieldCount = static_cast<int>(HexFieldId::txtdata) + 1;

struct HexField {
    HexFieldId id;
    const char* name;      // the control's name
    int32_t upper;         // highest value taken
    const char* tooLarge;  // a value above upper, or a negative one
    int32_t lower;         // lowest value taken, tested only where tooSmall is given
    const char* tooSmall;  // nullptr: no lower bound but 0, which tooLarge guards
    int32_t addressWord;   // the register address in bits 22..16; 0 for Text1
    const char* startText; // Text1 starts empty and then shows the last word sent
    FurtherStep step;
    HexFieldId reload; // ReloadX1: the x1 box to load again; else the field itself
};

// The field of that name; for the CPL and CPH boxes, of that index (0..7, held to it).
HexField hexField(HexFieldId id, int index = 0);

// The decimal fields of frmMain whose number stays in the box for later use: the sense
// resistors of the external ranges, in ohms. Both bounds are taken.
struct DecimalField {
    const char* name;
    float lower;
    float upper;
    const char* outside; // the refusal of a number outside the bounds
    const char* startText;
};

inline constexpr DecimalField ktxtEXT1rsense{
    "txtEXT1rsense", 0.4f, 256000.0f,
    "Number outside range. Please reenter Rsense between 1 and 256k.", "0.4"};
inline constexpr DecimalField ktxtEXT2Rsense{
    "txtEXT2Rsense", 0.4f, 256000.0f,
    "Number outside range. Please reenter Rsense between 0.4 and 256k.", "1"};

// The resistor box of an external range; nullptr for RsenseBox::None.
const DecimalField* rsenseField(RsenseBox box);

} // namespace qz
