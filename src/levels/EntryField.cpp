#include "levels/EntryField.h"

#include "levels/Numbers.h"
#include "levels/TransferLaw.h"
#include "registers/HexText.h"

#include <algorithm>
#include <cctype>

namespace qz {

namespace {

std::string upper(std::string_view s) {
    std::string u(s);
    std::transform(u.begin(), u.end(), u.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return u;
}

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
    if (*v > field.upper) return refuse(field.tooLarge);
    if (field.tooSmall && *v < field.lower) return refuse(field.tooSmall);
    const int32_t value = *v < 0 ? *v & field.cutMask : *v;
    FieldCheck r;
    r.ok = true;
    r.value = value;
    r.text = upper(text);
    PadHex4(r.text);
    // The box must show what is sent. Only a cut value, or a word box's eight digits that
    // PadHex4 shortens, read otherwise; they show the code itself.
    if (parseHex(r.text) != value) r.text = NumberToHex(value, field.cutMask == 0xFFFF ? 4 : 6);
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
    r.text = upper(text);
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
    r.text = upper(text);
    return r;
}

} // namespace qz
