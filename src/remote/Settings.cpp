// The units that work a panel's controls: the number goes into the box in the panel's
// own unit and its Enter runs, or the list and check box take the pick, as the
// operator's hand would; a query answers the value in force, in SI units.

#include "remote/Instrument.h"

#include "diagnostics/frmDIAG.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "frontpanel/frmMain.h"
#include "levels/Clamps.h"
#include "levels/Numbers.h"
#include "levels/Ranges.h"
#include "levels/TransferLaw.h"
#include "registers/RegisterMap.h"
#include "registers/FieldOps.h"
#include "measure/frmMeasure.h"
#include "remote/Commands.h"
#include "runs/Measure.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <tuple>

namespace qz::remote {

namespace {

using Refused = Instrument::Refused;
using Kind = Numeric::Kind;

// A number as it goes into a panel's box: plain decimals, up to 7 significant digits,
// no exponent, which every box of the panels reads. A number the box cannot hold in
// those (smaller than its last decimal) is refused rather than cut to another.
std::string entryNumber(double v) {
    if (v == 0.0) return "0";
    const int exponent = static_cast<int>(std::floor(std::log10(std::fabs(v))));
    const int decimals = std::clamp(6 - exponent, 0, 20);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", decimals, v);
    std::string out = buffer;
    if (out.find('.') != std::string::npos) {
        while (out.back() == '0') out.pop_back();
        if (out.back() == '.') out.pop_back();
    }
    if (!std::isfinite(v) || std::fabs(std::strtod(out.c_str(), nullptr) - v) > std::fabs(v) * 1e-6)
        throw Refused{{err::kNumericData, "Numeric data error; " + numberText(v) + " has more digits than the box takes"}};
    return out;
}

// A single-precision limit in as few digits as take it back exactly, so that a box that
// reads single precision gets the limit itself.
std::string singleText(float v) {
    char buffer[32];
    for (int digits = 7; digits <= 9; ++digits) {
        std::snprintf(buffer, sizeof buffer, "%.*g", digits, static_cast<double>(v));
        if (std::strtof(buffer, nullptr) == v) break;
    }
    return buffer;
}

Numeric numericParam(const Instrument::Call& call, size_t k = 0) {
    const NumericParse p = parseNumeric(call.params[k], call.command.unit, call.command.limits);
    if (!p.numeric) throw Refused{p.error};
    return *p.numeric;
}

// MIN, MAX or DEF given with a query, or nothing.
std::optional<Kind> limitAsked(const Instrument::Call& call) {
    if (call.params.empty()) return std::nullopt;
    const Numeric n = numericParam(call);
    if (n.kind == Kind::Value) throw Refused{standardError(err::kIllegalValue)};
    return n.kind;
}

double pickLimit(Kind kind, double min, double max, double def) {
    return kind == Kind::Min ? min : kind == Kind::Max ? max : def;
}

// The value in force of a box that holds a number, in the single precision the panels
// take it in.
std::string acceptedNumber(const QLineEdit* box, double scale = 1.0) {
    const auto v = parseNumber(forms::acceptedText(box).toStdString());
    return v ? singleText(static_cast<float>(*v * scale)) : kNotANumber;
}

// The item a quoted name chooses: the item's text without its "±", in any case, whole or
// up to a space ("2.5mA" is "±2.5mA Current Range"); -1 when none.
int itemNamed(const QComboBox* list, const std::string& name) {
    for (int i = 0; i < list->count(); ++i) {
        const std::string item = list->itemText(i).remove(QChar(0x00B1)).trimmed().toStdString();
        if (equalNoCase(item, name)) return i;
        if (item.size() > name.size() && item[name.size()] == ' ' &&
            equalNoCase(std::string_view(item).substr(0, name.size()), name))
            return i;
    }
    return -1;
}

QComboBox* listOf(QWidget* w) {
    auto* list = qobject_cast<QComboBox*>(w);
    if (!list) throw Refused{standardError(err::kExecution)};
    return list;
}

} // namespace

// The operator's pick: the item is chosen and the list's click runs, even for the item
// already chosen.
void Instrument::pick(QComboBox* list, int index) {
    list->setCurrentIndex(index);
    check(forms::operate(list));
}

void Instrument::enterBox(QLineEdit* box, const std::string& text, const std::function<forms::Outcome()>& enter) {
    const QString before = box->text();
    box->setText(QString::fromStdString(text));
    const forms::Outcome outcome = enter ? enter() : forms::enter(box);
    if (!outcome) box->setText(before);
    check(outcome);
}

// --- The force voltage ------------------------------------------------------------------

// The voltage MIN or MAX stands for: Z/S or F/S itself, or, where the transfer law codes
// no more at the very limit, the last single-precision value before it that it still
// takes; DEF is 0 V.
float Instrument::forceLimit(Numeric::Kind kind) {
    frmMain* m = front();
    const auto range = m->outputRange();
    if (!range) throw Refused{standardError(err::kExecution)};
    if (kind == Kind::Def) return 0.0f;
    const float limit = kind == Kind::Min ? range->first : range->second;
    if (m->forceCheck(singleText(limit))) return limit;
    float good = 0.0f, bad = limit;
    while (true) {
        const float middle = good + (bad - good) / 2;
        if (middle == good || middle == bad) return good;
        (m->forceCheck(singleText(middle)) ? good : bad) = middle;
    }
}

std::string Instrument::voltSet(const Call& call) {
    frmMain* m = front();
    const Numeric n = numericParam(call);
    const std::string text = n.kind == Kind::Value ? entryNumber(n.value) : singleText(forceLimit(n.kind));
    // The panel sends the range words before it tests the request against its limits; a
    // remote request is tested first by the panel's own check, so that a refused one
    // sends nothing.
    check(m->forceCheck(text));
    enterBox(m->txtV, text);
    return {};
}

std::string Instrument::voltAsk(const Call& call) {
    if (const auto kind = limitAsked(call)) return singleText(forceLimit(*kind));
    return acceptedNumber(front()->txtV);
}

// --- Current ranges ---------------------------------------------------------------------

std::vector<double> Instrument::frontFullScales() {
    frmMain* m = front();
    const qz::General& g = session_.general;
    std::vector<double> out;
    for (int i = 0; i < qz::kCurrentRangeCount; ++i) {
        const qz::CurrentRange& r = *qz::currentRange(i);
        double R = r.rsense;
        if (r.rsenseBox != qz::RsenseBox::None) {
            const QLineEdit* box = r.rsenseBox == qz::RsenseBox::EXT1 ? m->txtEXT1rsense : m->txtEXT2Rsense;
            R = qz::parseSingle(box->text().toStdString()).value_or(0.0f);
        }
        out.push_back(qz::rangeFullScale(R, g.VREF, g.imeasGain));
    }
    return out;
}

std::vector<double> Instrument::sweepFullScales() const {
    const qz::General& g = session_.general;
    std::vector<double> out;
    for (const qz::SenseRange& r : qz::kSenseRanges) out.push_back(qz::rangeFullScale(r.rsense, g.VREF, g.imeasGain));
    return out;
}

void Instrument::pickRange(QWidget* w, const std::vector<double>& fullScales, const Call& call, int defaultIndex) {
    QComboBox* list = listOf(w);
    if (const auto name = parseQuoted(call.params[0])) {
        const int index = itemNamed(list, *name);
        if (index < 0) throw Refused{standardError(err::kIllegalValue)};
        return pick(list, index);
    }
    const Numeric n = numericParam(call);
    const auto smallest = std::min_element(fullScales.begin(), fullScales.end());
    const auto largest = std::max_element(fullScales.begin(), fullScales.end());
    int index = defaultIndex;
    if (n.kind == Kind::Min) index = static_cast<int>(smallest - fullScales.begin());
    if (n.kind == Kind::Max) index = static_cast<int>(largest - fullScales.begin());
    if (n.kind == Kind::Value) {
        const auto covering = qz::smallestRangeCovering(fullScales, n.value);
        if (!covering)
            throw Refused{{err::kOutOfRange, "Data out of range; the largest range's full scale is " +
                                                 numberText(*largest) + " A"}};
        index = *covering;
    }
    pick(list, index);
}

std::string Instrument::rangeSet(const Call& call) {
    const bool front = call.command.arg == 0;
    pickRange(control(call), front ? frontFullScales() : sweepFullScales(), call, front ? 3 : 0);
    return {};
}

std::string Instrument::rangeAsk(const Call& call) {
    const bool front = call.command.arg == 0;
    const std::vector<double> fullScales = front ? frontFullScales() : sweepFullScales();
    if (const auto kind = limitAsked(call)) {
        const double def = fullScales[front ? 3 : 0];
        return numberText(pickLimit(*kind, *std::min_element(fullScales.begin(), fullScales.end()),
                                    *std::max_element(fullScales.begin(), fullScales.end()), def));
    }
    // A list with no item chosen yet, or on a panel not loaded, runs on its first range.
    QWidget* list = shown(call);
    const int index = list ? std::max(listOf(list)->currentIndex(), 0) : 0;
    return numberText(fullScales[static_cast<size_t>(std::min<int>(index, static_cast<int>(fullScales.size()) - 1))]);
}

std::string Instrument::rangeNameOf(QString item) {
    item = item.remove(QChar(0x00B1)).trimmed();
    item.remove(QStringLiteral(" Current Range"));
    return "\"" + item.trimmed().toStdString() + "\"";
}

std::string Instrument::rangeName(const Call& call) {
    QWidget* list = shown(call);
    return rangeNameOf(list ? listOf(list)->currentText() : QString::fromUtf8(qz::kSenseRanges[0].item));
}

// --- Clamps -----------------------------------------------------------------------------

std::string Instrument::clampSet(const Call& call) {
    const bool high = call.command.arg == 1;
    frmMain* m = front();
    auto* box = static_cast<QLineEdit*>(control(call));
    const qz::General& g = session_.general;
    const qz::CurrentRange* range = qz::currentRange(g.IRangeIndex);
    if (!range) throw Refused{standardError(err::kExecution)};
    const Numeric n = numericParam(call);
    double amps = n.value;
    if (n.kind != Kind::Value) {
        const std::optional<float> R = m->presentRsense();
        if (!R) throw Refused{{err::kExecution, "Execution error; the external range has no sense resistor"}};
        const double L = qz::clampLimit(*R, g.VREF);
        amps = high ? pickLimit(n.kind, 0.0, L, L) : pickLimit(n.kind, -L, 0.0, -L);
    }
    // The box takes the current in the unit of the range, as the operator types it.
    enterBox(box, entryNumber(amps / range->toAmperes));
    return {};
}

std::string Instrument::clampAsk(const Call& call) {
    const bool high = call.command.arg == 1;
    frmMain* m = front();
    if (const auto kind = limitAsked(call)) {
        const std::optional<float> R = m->presentRsense();
        if (!R) throw Refused{{err::kExecution, "Execution error; the external range has no sense resistor"}};
        const double L = qz::clampLimit(*R, session_.general.VREF);
        return numberText(high ? pickLimit(*kind, 0.0, L, L) : pickLimit(*kind, -L, 0.0, -L));
    }
    const std::optional<double> amps = m->clampAmps(high);
    return amps ? numberText(*amps) : kNotANumber;
}

// --- DAC codes and VREF ------------------------------------------------------------------

// A box that takes a 16-bit DAC code in hexadecimal: the front panel's OFFSET, and the
// console's m and c of the FIN DAC, which the force voltage reads. DEF is the row's arg.
QLineEdit* Instrument::codeBox(const Call& call) {
    const Command& c = call.command;
    return forms::controlOf<QLineEdit>(nav_, forms::ControlRef{c.form, c.control, c.array ? 0 : -1});
}

std::string Instrument::codeSet(const Call& call) {
    const Numeric n = numericParam(call);
    double code = pickLimit(n.kind, 0, 0xFFFF, call.command.arg);
    if (n.kind == Kind::Value) {
        if (n.value != std::floor(n.value)) throw Refused{standardError(err::kIllegalValue)};
        if (n.value < 0 || n.value > 0xFFFF) throw Refused{standardError(err::kOutOfRange)};
        code = n.value;
    }
    // The box takes its code in hexadecimal, as the operator types it.
    enterBox(codeBox(call), QString::number(static_cast<int>(code), 16).toUpper().toStdString());
    return {};
}

std::string Instrument::codeAsk(const Call& call) {
    if (const auto kind = limitAsked(call)) return numberText(pickLimit(*kind, 0, 0xFFFF, call.command.arg));
    const auto code = qz::parseHex(forms::acceptedText(codeBox(call)).toStdString());
    return code ? std::to_string(*code) : kNotANumber;
}

std::string Instrument::vrefSet(const Call& call) {
    const Numeric n = numericParam(call);
    const double v = pickLimit(n.kind, 2.0, 5.0, 5.0);
    const double volts = n.kind == Kind::Value ? n.value : v;
    const int index = volts == 5.0 ? 0 : volts == 2.5 ? 1 : 2;
    frmMain* m = front();
    // As the operator's click: the option is chosen, then its handler takes or refuses it.
    enterBox(m->txtVREF, index == 2 ? entryNumber(volts) : m->txtVREF->text().toStdString(), [m, index] {
        m->optRef[static_cast<size_t>(index)]->setChecked(true);
        return m->optRef_Click(index);
    });
    return {};
}

std::string Instrument::vrefAsk(const Call& call) {
    if (const auto kind = limitAsked(call)) return numberText(pickLimit(*kind, 2.0, 5.0, 5.0));
    return numberText(session_.general.VREF);
}

// --- The measurement panel's boxes ------------------------------------------------------

// The whole volts the measurement panel's voltage boxes take, for the OFFSET code in the
// chip; DEF is the box's start text (the row's number).
double Instrument::entryLimit(const Call& call, Numeric::Kind kind) {
    if (kind == Kind::Def) return call.command.arg;
    const int32_t offset =
        session_.readWord(qz::readCommandOf(qz::reg::kOffset)) - qz::writeWord(qz::reg::kOffset, 0);
    const qz::EntryVoltageRange r = qz::entryVoltageRange(session_.general.VREF, offset);
    return kind == Kind::Min ? std::ceil(r.lowestShown) : std::floor(r.highestShown);
}

std::string Instrument::entrySet(const Call& call) {
    const Numeric n = numericParam(call);
    const double v = n.kind == Kind::Value ? n.value : entryLimit(call, n.kind);
    enterBox(static_cast<QLineEdit*>(control(call)), entryNumber(v));
    return {};
}

std::string Instrument::entryAsk(const Call& call) {
    if (const auto kind = limitAsked(call)) return numberText(entryLimit(call, *kind));
    // The box's start text is the row's number.
    QWidget* box = shown(call);
    return box ? acceptedNumber(static_cast<QLineEdit*>(box)) : singleText(static_cast<float>(call.command.arg));
}

// The step box takes whole millivolts; the remote gives volts like the sweep's ends.
std::string Instrument::stepSet(const Call& call) {
    const Numeric n = numericParam(call);
    const double v = n.kind == Kind::Value ? n.value : pickLimit(n.kind, 0.0, 1.0, 1.0);
    enterBox(static_cast<QLineEdit*>(control(call)), entryNumber(v * 1000.0));
    return {};
}

std::string Instrument::stepAsk(const Call& call) {
    if (const auto kind = limitAsked(call)) return numberText(pickLimit(*kind, 0.0, 1.0, 1.0));
    // The box starts at 1000 mV.
    QWidget* box = shown(call);
    return box ? acceptedNumber(static_cast<QLineEdit*>(box), 0.001) : singleText(1.0f);
}

// --- Lists and check boxes --------------------------------------------------------------

std::string Instrument::listSet(const Call& call) {
    QComboBox* list = listOf(control(call));
    int index = -1;
    if (const auto name = parseQuoted(call.params[0])) {
        index = itemNamed(list, *name);
        if (index < 0) throw Refused{standardError(err::kIllegalValue)};
    } else {
        index = static_cast<int>(wholeParam(call.params[0], 0, list->count() - 1));
    }
    pick(list, index);
    return {};
}

std::string Instrument::listAsk(const Call& call) { return std::to_string(itemInForce(call)); }

// A list's item, or while it shows its start text, the item its shadow word holds.
int Instrument::itemInForce(const Call& call) {
    QWidget* list = shown(call);
    const int index = list ? listOf(list)->currentIndex() : -1;
    if (index >= 0) return index;
    const qz::ControlOps* ops = qz::findControl(call.command.control);
    return ops ? qz::itemInWord(qz::shadowWord(session_.general, ops->shadow), *ops) : -1;
}

// A list whose items stand for numbers: the number chooses its item.
std::string Instrument::valueSet(const Call& call) {
    QComboBox* list = listOf(control(call));
    const std::span<const double> values = call.command.values;
    const Numeric n = numericParam(call);
    size_t index = 0;
    if (n.kind == Kind::Min) index = static_cast<size_t>(std::min_element(values.begin(), values.end()) - values.begin());
    if (n.kind == Kind::Max) index = static_cast<size_t>(std::max_element(values.begin(), values.end()) - values.begin());
    if (n.kind == Kind::Value) {
        const auto found = std::find_if(values.begin(), values.end(), [&](double v) {
            return std::fabs(v - n.value) <= 1e-9 * std::max(1.0, std::fabs(v));
        });
        if (found == values.end()) {
            std::string allowed;
            for (double v : values) allowed += (allowed.empty() ? "" : ", ") + numberText(v);
            throw Refused{{err::kIllegalValue, "Illegal parameter value; one of " + allowed}};
        }
        index = static_cast<size_t>(found - values.begin());
    }
    pick(list, static_cast<int>(index));
    return {};
}

std::string Instrument::valueAsk(const Call& call) {
    const std::span<const double> values = call.command.values;
    if (const auto kind = limitAsked(call))
        return numberText(pickLimit(*kind, *std::min_element(values.begin(), values.end()),
                                    *std::max_element(values.begin(), values.end()), values[0]));
    // A list of the measurement panel that shows its start text runs as its first item.
    const int index = std::clamp(itemInForce(call), 0, static_cast<int>(values.size()) - 1);
    return numberText(values[static_cast<size_t>(index)]);
}

// A list whose items are named by words of character data.
std::string Instrument::choiceSet(const Call& call) {
    QComboBox* list = listOf(control(call));
    const std::span<const char* const> words = call.command.words;
    for (size_t i = 0; i < words.size(); ++i)
        if (mnemonicMatches(words[i], call.params[0])) {
            pick(list, static_cast<int>(i));
            return {};
        }
    throw Refused{standardError(err::kIllegalValue)};
}

std::string Instrument::choiceAsk(const Call& call) {
    const std::span<const char* const> words = call.command.words;
    QWidget* list = shown(call);
    const int index = std::clamp(list ? listOf(list)->currentIndex() : 0, 0, static_cast<int>(words.size()) - 1);
    return shortForm(words[static_cast<size_t>(index)]);
}

std::string Instrument::checkSet(const Call& call) {
    auto* box = qobject_cast<QAbstractButton*>(control(call));
    const auto on = parseBoolean(call.params[0]);
    if (!box || !on) throw Refused{standardError(err::kIllegalValue)};
    // A click changes the state, so a box already in the state asked for takes no click.
    if (box->isChecked() == *on) return {};
    box->setChecked(*on);
    check(forms::operate(box));
    return {};
}

std::string Instrument::checkAsk(const Call& call) {
    if (!shown(call)) return itemInForce(call) == 1 ? "1" : "0";
    auto* box = qobject_cast<QAbstractButton*>(control(call));
    return box && box->isChecked() ? "1" : "0";
}

// --- Readings ---------------------------------------------------------------------------

int Instrument::frontItem(const QComboBox* list) {
    if (list->currentIndex() >= 0) return list->currentIndex();
    const qz::ControlOps* ops = qz::findControl(list->objectName().toStdString());
    return ops ? qz::itemInWord(qz::shadowWord(session_.general, ops->shadow), *ops) : -1;
}

// One reading of MEASOUT set to item of cboMEASURE, scaled as the measurement panel
// scales its runs: MEASOUT gain 0.2, the OFFSET and the current-sense gain read back.
// The source and the gain go back to what they were, each by its own word when it
// changed.
double Instrument::reading(int measureItem, bool amps) {
    frmMain* m = front();
    const int gainBefore = frontItem(m->MEASOUTG);
    const int sourceBefore = frontItem(m->cboMEASURE);
    if (m->MEASOUTG->currentIndex() != 0) pick(m->MEASOUTG, 0);
    const qz::Prepared prepared = qz::PrepareMeasure(session_);
    pick(m->cboMEASURE, measureItem);
    const int32_t code = qz::ReadADCCode(session_);
    if (sourceBefore >= 0 && sourceBefore != measureItem) pick(m->cboMEASURE, sourceBefore);
    if (gainBefore > 0) pick(m->MEASOUTG, gainBefore);
    const qz::General& g = session_.general;
    qz::Scaling s;
    s.VREF = g.VREF;
    s.offsetCode = prepared.offsetCode;
    s.measGain = prepared.measGain;
    s.rsense = qz::senseRange(g.IRangeIndex).rsense;
    return amps ? s.MeasuredAmps(code) : s.MeasuredVolts(code);
}

std::string Instrument::measVolt(const Call&) { return numberText(reading(2, false)); }
std::string Instrument::measCurr(const Call&) { return numberText(reading(1, true)); }

std::string Instrument::measTemp(const Call&) {
    const std::optional<int32_t> t = diag()->readTemperature();
    if (!t) throw Refused{{err::kHardware, "Hardware error; the temperature sensor does not answer"}};
    return std::to_string(*t);
}

// --- The diagnostics panel's nodes ------------------------------------------------------

std::string Instrument::nodeSet(const Call& call) {
    const bool bankB = call.command.arg == 1;
    // The number is checked before the panel is loaded: its load sends words.
    constexpr int64_t kOptions = std::tuple_size_v<decltype(frmDIAG::optDIAGA)>;
    const int64_t k = wholeParam(call.params[0], 0, kOptions - 1);
    frmDIAG* d = diag();
    auto& options = bankB ? d->optDIAGB : d->optDIAGA;
    if (!options[static_cast<size_t>(k)]) throw Refused{standardError(err::kOutOfRange)};
    const int index = static_cast<int>(k);
    options[static_cast<size_t>(index)]->setChecked(true);
    if (bankB)
        d->optDIAGB_Click(index);
    else
        d->optDIAGA_Click(index);
    return {};
}

std::string Instrument::nodeAsk(const Call& call) {
    auto* d = static_cast<frmDIAG*>(nav_.loaded(forms::Form::frmDIAG));
    if (!d) return std::to_string(frmDIAG::kStartNode);
    const auto& options = call.command.arg == 1 ? d->optDIAGB : d->optDIAGA;
    for (size_t i = 0; i < options.size(); ++i)
        if (options[i] && options[i]->isChecked()) return std::to_string(i);
    return "-1";
}

} // namespace qz::remote
