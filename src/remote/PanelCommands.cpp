// The commands that work a panel's controls: the text goes into the box, or the list and
// check box take the pick, and the panel's own handler runs as on the operator's Enter or
// click; the answer of a query is what the control holds.

#include "remote/Instrument.h"

#include "diagnostics/frmDIAG.h"
#include "forms/Controls.h"
#include "forms/Entry.h"
#include "frontpanel/frmMain.h"
#include "levels/Messages.h"
#include "levels/Numbers.h"
#include "levels/TransferLaw.h"
#include "measure/frmMeasure.h"
#include "runs/Measure.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

#include <algorithm>
#include <cctype>

namespace qz::remote {

namespace {

using Refused = Instrument::Refused;

std::string textOf(const QLineEdit* box) { return box->text().toStdString(); }

// The item a quoted name chooses: the item's text without its "±", in any case, whole or
// up to a space ("2.5mA" is "±2.5mA Current Range"); -1 when none.
int itemNamed(const QComboBox* list, const std::string& name) {
    for (int i = 0; i < list->count(); ++i) {
        std::string item = list->itemText(i).remove(QChar(0x00B1)).trimmed().toStdString();
        if (equalNoCase(item, name)) return i;
        if (item.size() > name.size() && item[name.size()] == ' ' &&
            equalNoCase(std::string_view(item).substr(0, name.size()), name))
            return i;
    }
    return -1;
}

} // namespace

// The operator's entry: the text in the box, then its Enter. A refused entry empties the
// box on the panel; a refused remote value leaves the setting as it was instead.
void Instrument::enterBox(QLineEdit* box, const std::string& text, const std::function<void()>& enter) {
    const QString before = box->text();
    const size_t messages = target_ ? target_->size() : 0;
    box->setText(QString::fromStdString(text));
    enter();
    if (target_ && target_->size() > messages) box->setText(before);
}

// The text a number parameter puts in a panel's box: as sent, or in decimal for #H.
std::string Instrument::entryText(const std::string& param) const {
    if (!parseNumber(param)) throw Refused{standardError(err::kNumericData)};
    if (param.size() > 1 && param[0] == '#') return std::to_string(*parseWhole(param));
    return param;
}

std::string Instrument::sourVolt(const Params& p) {
    frmMain* m = front();
    const std::string text = entryText(p[0]);
    // The panel sends the range words before it tests the request against its limits; a
    // remote request is tested first with the panel's own rules, so that a refused one
    // sends nothing.
    if (const auto refusal = m->forceRefusal(text)) {
        if (refusal->message.empty()) return {}; // refused on its code box, and queued so
        throw Refused{{refusal->outOfRange ? err::kOutOfRange : err::kIllegalValue, refusal->message}};
    }
    m->txtV->setText(QString::fromStdString(text));
    m->txtV_Enter();
    return {};
}

std::string Instrument::sourVoltQ(const Params&) { return textOf(front()->txtV); }

std::string Instrument::clampHigh(const Params& p) {
    frmMain* m = front();
    enterBox(m->txtclamph, entryText(p[0]), [m] { m->txtclamph_Enter(); });
    return {};
}

std::string Instrument::clampLow(const Params& p) {
    frmMain* m = front();
    enterBox(m->txtClampl, entryText(p[0]), [m] { m->txtClampl_Enter(); });
    return {};
}

std::string Instrument::clampHighQ(const Params&) { return textOf(front()->txtclamph); }
std::string Instrument::clampLowQ(const Params&) { return textOf(front()->txtClampl); }

std::string Instrument::offset(const Params& p) {
    // The box takes its code in hexadecimal, as the operator types it.
    const auto v = parseWhole(p[0]);
    if (!v) throw Refused{standardError(parseNumber(p[0]) ? err::kIllegalValue : err::kNumericData)};
    if (*v < 0 || *v > 0xFFFFFFFFLL) throw Refused{standardError(err::kOutOfRange)};
    frmMain* m = front();
    enterBox(m->OFFSETx1, QString::number(*v, 16).toUpper().toStdString(), [m] { m->OFFSETx1_Enter(); });
    return {};
}

std::string Instrument::offsetQ(const Params&) {
    const auto code = qz::parseHex(textOf(front()->OFFSETx1));
    return code ? std::to_string(*code) : std::string();
}

std::string Instrument::vref(const Params& p) {
    const std::string text = entryText(p[0]);
    const double v = *parseNumber(text);
    const int index = v == 5.0 ? 0 : v == 2.5 ? 1 : 2;
    frmMain* m = front();
    // As the operator's click: the option is chosen, then its handler takes or refuses it.
    enterBox(m->txtVREF, index == 2 ? text : m->txtVREF->text().toStdString(), [m, index] {
        m->optRef[static_cast<size_t>(index)]->setChecked(true);
        m->optRef_Click(index);
    });
    return {};
}

std::string Instrument::vrefQ(const Params&) { return numberText(session_.general.VREF); }

// One reading of MEASOUT set to item of cboMEASURE, scaled as the measurement panel
// scales its runs: MEASOUT gain 0.2, the OFFSET and the current-sense gain read back.
double Instrument::reading(int measureItem, bool amps) {
    frmMain* m = front();
    if (m->MEASOUTG->currentIndex() != 0) forms::setListIndex(m->MEASOUTG, 0);
    const qz::Prepared prepared = qz::PrepareMeasure(session_);
    m->cboMEASURE->setCurrentIndex(measureItem);
    forms::click(m->cboMEASURE);
    const int32_t code = qz::ReadADCCode(session_);
    const qz::General& g = session_.general;
    qz::Scaling s;
    s.VREF = g.VREF;
    s.offsetCode = prepared.offsetCode;
    s.measGain = prepared.measGain;
    s.rsense = qz::senseRange(g.IRangeIndex).rsense;
    return amps ? s.MeasuredAmps(code) : s.MeasuredVolts(code);
}

std::string Instrument::measVolt(const Params&) { return numberText(reading(2, false)); }
std::string Instrument::measCurr(const Params&) { return numberText(reading(1, true)); }

std::string Instrument::measTemp(const Params&) {
    frmDIAG* d = diag();
    d->cmdReadI2C_Click();
    const std::string t = textOf(d->txtLocal);
    if (!parseNumber(t)) throw Refused{{err::kHardware, "Temperature sensor not ready"}};
    return t;
}

// The alarm status as the front panel's buttons read it; the answer has a bit set for
// each alarm present (the chip's bits are active low), bits 15 to 6, the comparators left out.
std::string Instrument::alarmRead(bool clear) {
    frmMain* m = front();
    if (clear)
        m->cmdCLEAR_Click();
    else
        m->cmdCheckAlarms_Click();
    const auto word = qz::parseHex(textOf(m->txtRead));
    return std::to_string(word ? (~*word) & 0xFFC0 : 0);
}

std::string Instrument::alarms(const Params&) { return alarmRead(false); }
std::string Instrument::alarmsClear(const Params&) { return alarmRead(true); }

std::string Instrument::sweStart(const Params& p) {
    frmMeasure* f = measure();
    enterBox(f->txtstartV, entryText(p[0]), [f] { f->txtstartV_Enter(); });
    return {};
}
std::string Instrument::sweStop(const Params& p) {
    frmMeasure* f = measure();
    enterBox(f->txtendV, entryText(p[0]), [f] { f->txtendV_Enter(); });
    return {};
}
std::string Instrument::sweStep(const Params& p) {
    frmMeasure* f = measure();
    enterBox(f->txtstep, entryText(p[0]), [f] { f->txtstep_Enter(); });
    return {};
}
std::string Instrument::timeVolt(const Params& p) {
    frmMeasure* f = measure();
    enterBox(f->txtForceV, entryText(p[0]), [f] { f->txtForceV_Enter(); });
    return {};
}
std::string Instrument::sweStartQ(const Params&) { return textOf(measure()->txtstartV); }
std::string Instrument::sweStopQ(const Params&) { return textOf(measure()->txtendV); }
std::string Instrument::sweStepQ(const Params&) { return textOf(measure()->txtstep); }
std::string Instrument::timeVoltQ(const Params&) { return textOf(measure()->txtForceV); }

std::string Instrument::diagNode(bool bankB, const Params& p) {
    const auto k = parseWhole(p[0]);
    if (!k) throw Refused{standardError(err::kNumericData)};
    frmDIAG* d = diag();
    auto& options = bankB ? d->optDIAGB : d->optDIAGA;
    if (*k < 0 || *k >= static_cast<int64_t>(options.size()) || !options[static_cast<size_t>(*k)])
        throw Refused{standardError(err::kOutOfRange)};
    const int index = static_cast<int>(*k);
    options[static_cast<size_t>(index)]->setChecked(true);
    if (bankB)
        d->optDIAGB_Click(index);
    else
        d->optDIAGA_Click(index);
    return {};
}

std::string Instrument::diagNodeQuery(bool bankB) {
    frmDIAG* d = diag();
    const auto& options = bankB ? d->optDIAGB : d->optDIAGA;
    for (size_t i = 0; i < options.size(); ++i)
        if (options[i] && options[i]->isChecked()) return std::to_string(i);
    return "-1";
}

std::string Instrument::diagNodeA(const Params& p) { return diagNode(false, p); }
std::string Instrument::diagNodeB(const Params& p) { return diagNode(true, p); }
std::string Instrument::diagNodeAQ(const Params&) { return diagNodeQuery(false); }
std::string Instrument::diagNodeBQ(const Params&) { return diagNodeQuery(true); }

std::string Instrument::listSet(const Params& p) {
    auto* list = qobject_cast<QComboBox*>(currentControl());
    if (!list) throw Refused{standardError(err::kExecution)};
    int index = -1;
    if (const auto name = parseQuoted(p[0])) {
        index = itemNamed(list, *name);
        if (index < 0) throw Refused{standardError(err::kIllegalValue)};
    } else {
        const auto k = parseWhole(p[0]);
        if (!k) throw Refused{standardError(parseNumber(p[0]) ? err::kIllegalValue : err::kNumericData)};
        if (*k < 0 || *k >= list->count()) throw Refused{standardError(err::kOutOfRange)};
        index = static_cast<int>(*k);
    }
    // The operator's pick: the item is chosen and the list's click runs, even for the
    // item already chosen.
    list->setCurrentIndex(index);
    forms::click(list);
    return {};
}

std::string Instrument::listQuery(const Params&) {
    auto* list = qobject_cast<QComboBox*>(currentControl());
    return list ? std::to_string(list->currentIndex()) : std::string();
}

std::string Instrument::checkSet(const Params& p) {
    auto* box = qobject_cast<QAbstractButton*>(currentControl());
    const auto on = parseBoolean(p[0]);
    if (!box || !on) throw Refused{standardError(err::kIllegalValue)};
    // A click changes the state, so a box already in the state asked for takes no click.
    forms::setChecked(box, *on);
    return {};
}

std::string Instrument::checkQuery(const Params&) {
    auto* box = qobject_cast<QAbstractButton*>(currentControl());
    return box && box->isChecked() ? "1" : "0";
}

} // namespace qz::remote
