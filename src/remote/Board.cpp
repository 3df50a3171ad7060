// The units that make the board's own requests one at a time, as the console's buttons
// and the sensor page make them, and those that show and close panels as their menus do.
// They are what a recording of those controls is written in.

#include "remote/Instrument.h"

#include "board/Wire.h"
#include "levels/Ranges.h"
#include "registers/HexText.h"
#include "forms/Navigator.h"
#include "remote/Commands.h"

#include <QWidget>


namespace qz::remote {

namespace {

// The panel a parameter names, as character data or a string, in any case.
forms::Form panelNamed(const std::string& param) {
    const std::string name = parseQuoted(param).value_or(param);
    for (forms::Form f : forms::kAllForms)
        if (equalNoCase(forms::formName(f).toStdString(), name)) return f;
    throw Instrument::Refused{{err::kIllegalValue, "Illegal parameter value; no panel " + name}};
}

} // namespace

std::string Instrument::regReply(const Call&) { return NumberToHex(session_.usb.ReadSPIWord() & 0xFFFFFF, 6); }

std::string Instrument::shadowSet(const Call& c) {
    const int32_t word = static_cast<int32_t>(wholeParam(c.params[0], 0, 0x7FFFFF));
    int32_t* shadow = session_.general.shadowAt(word >> 16);
    if (!shadow) throw Refused{{err::kOutOfRange, "Data out of range; the program keeps no word of that register"}};
    *shadow = word;
    return {};
}

std::string Instrument::shadowAsk(const Call& c) {
    const int32_t* shadow = session_.general.shadowAt(static_cast<int>(wholeParam(c.params[0], 1, 7)));
    return NumberToHex(*shadow & 0xFFFFFF, 6);
}

std::string Instrument::rangeIndexSet(const Call& c) {
    session_.general.IRangeIndex = static_cast<int16_t>(wholeParam(c.params[0], 0, qz::kCurrentRangeCount - 1));
    return {};
}

std::string Instrument::rangeIndexAsk(const Call&) { return std::to_string(session_.general.IRangeIndex); }

std::string Instrument::boardRequest(const Call& c) {
    session_.usb.SendRequest(c.command.arg == 0 ? wire::kChipReset : wire::kAdcConvert);
    return {};
}

std::string Instrument::boardSwitch(const Call& c) {
    const auto on = parseBoolean(c.params[0]);
    if (!on) throw Refused{standardError(err::kIllegalValue)};
    static constexpr int32_t kOn[] = {wire::kHwInhibitOn, wire::kClampPinOn, wire::kSwitchEnable};
    static constexpr int32_t kOff[] = {wire::kHwInhibitOff, wire::kClampPinOff, wire::kSwitchDisable};
    session_.usb.SendRequest((*on ? kOn : kOff)[c.command.arg]);
    return {};
}

std::string Instrument::boardChannel(const Call& c) {
    session_.usb.SendRequest(wire::kSwitchChannel, static_cast<int32_t>(wholeParam(c.params[0], 0, 3)), false);
    return {};
}

std::string Instrument::adcRead(const Call&) { return std::to_string(session_.usb.ReadADCWord()); }

std::string Instrument::sensorWrite(const Call& c) {
    const auto pointer = static_cast<int32_t>(wholeParam(c.params[0], 0, 0xFF));
    const auto data = static_cast<int32_t>(wholeParam(c.params[1], 0, 0xFF));
    session_.usb.WriteI2C(data, pointer);
    return {};
}

std::string Instrument::sensorRead(const Call& c) {
    return std::to_string(session_.usb.ReadI2C(static_cast<int32_t>(wholeParam(c.params[0], 0, 0xFF))));
}

std::string Instrument::panelOpen(const Call& c) {
    const forms::Form form = panelNamed(c.params[0]);
    if (!nav_.show(form)) throw Refused{{err::kExecution, "Execution error; this program has no such panel"}};
    return {};
}

std::string Instrument::panelClose(const Call& c) {
    const forms::Form form = panelNamed(c.params[0]);
    if (form == forms::Form::frmMain || form == forms::Form::frmMAINQZ7740)
        throw Refused{{err::kIllegalValue, "Illegal parameter value; the console and the front panel stay loaded"}};
    nav_.unload(form);
    return {};
}

} // namespace qz::remote
