#include "levels/EntryField.h"

#include "levels/Numbers.h"
#include "levels/TransferLaw.h"
#include "registers/HexText.h"

namespace qz {

namespace {

FieldCheck refuse(const char* message) {
    FieldCheck r;
    r.message = message;
    return r;
}

DecimalCheck refuseDecimal(const char* message) {
    DecimalCheck r;
    r.message = message;
    return r;
}

} // namespace

FieldCheck checkHexField(const HexField& field, std::string_view text) {
    const auto v = parseHex(text);
    if (!v) return refuse(kNotValidNumber);
    // A negative number (eight digits, the top bit set) lies past every field's range, and
    // below it: a field with a lower bound of its own says so with its words for too small.
    if (*v < 0) return refuse(field.tooSmall ? field.tooSmall : field.tooLarge);
    if (*v > field.upper) return refuse(field.tooLarge);
    if (field.tooSmall && *v < field.lower) return refuse(field.tooSmall);
    FieldCheck r;
    r.ok = true;
    r.value = *v;
    r.text = upperCase(text);
    PadHex4(r.text);
    // The box must show what is sent: eight digits in the word box, which PadHex4 cuts to
    // four, show the six of the word.
    if (parseHex(r.text) != r.value) r.text = NumberToHex(r.value, 6);
    return r;
}

FieldCheck checkFINx1Entry(std::string_view text, std::string_view offsetText) {
    if (!parseHex(text) || !readDacCode(offsetText)) return refuse(kNotValidNumber);
    return checkHexField(hexField(HexFieldId::txtFINx1), text);
}

FieldCheck checkWordEntry(const std::string& text) {
    return checkHexField(hexField(HexFieldId::Text1), text);
}

FieldCheck checkWordOnLeave(const std::string& text) {
    const auto v = parseHex(text);
    if (!v) return refuse(kNotValidNumber);
    FieldCheck r;
    r.ok = true;
    r.value = *v;
    r.text = upperCase(text);
    return r;
}

DacWrite composeDACLOAD(int32_t lx, int32_t dacadd) {
    DacWrite w;
    w.word = dacadd | (lx & 0xFFFF);
    w.text = NumberToHex(w.word, 6);
    return w;
}

DacWrite composeRampWrite(int32_t value, int32_t addressWord) {
    return composeDACLOAD(value, addressWord);
}

DecimalCheck checkDecimalField(const DecimalField& field, std::string_view text) {
    const auto v = parseSingle(text);
    if (!v) return refuseDecimal(kNotValidNumber);
    if (!(*v <= field.upper && *v >= field.lower)) return refuseDecimal(field.outside);
    DecimalCheck r;
    r.ok = true;
    r.value = *v;
    r.text = std::string(text);
    return r;
}

DecimalCheck checkVoltageEntry(std::string_view text, float VoutMin, float VoutMax) {
    const auto v = parseSingle(text);
    if (!v) return refuseDecimal(kNotValidNumber);
    if (!(*v <= VoutMax && *v >= VoutMin)) return refuseDecimal(kVoltageOutsideLimits);
    DecimalCheck r;
    r.ok = true;
    r.value = *v;
    r.text = upperCase(text);
    return r;
}

} // namespace qz
