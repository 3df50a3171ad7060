// The dispatch of a unit through the command table, the common commands, the status
// registers, the raw words, the runs and their data.

#include "remote/Instrument.h"

#include "diagnostics/frmDIAG.h"
#include "forms/MessageBox.h"
#include "forms/Recording.h"
#include "forms/RemoteLocal.h"
#include "frontpanel/frmMain.h"
#include "levels/Messages.h"
#include "levels/Numbers.h"
#include "measure/frmMeasure.h"
#include "registers/HexText.h"
#include "registers/RegisterMap.h"
#include "remote/Commands.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTimer>


namespace qz::remote {

namespace {

Instrument::Outcome failed() { return {Instrument::Outcome::Kind::Failed, {}}; }

// The chip's alarms on the questionable register: the bits SCPI gives voltage, current
// and temperature where one fits, the others on bits of the device's own. Each alarm has
// a latched bit and, one below it, a live one.
struct AlarmBit {
    int latchedBit;
    uint16_t questionable;
};
constexpr AlarmBit kAlarmBits[] = {
    {15, 0x0010}, // TEMP: temperature
    {13, 0x0001}, // OPEN SENSE: the voltage is not held
    {11, 0x0200}, // DUTGND
    {9, 0x0002},  // CLAMP: current
    {7, 0x0400},  // GUARD
};

} // namespace

Instrument::Instrument(qz::Session& session, forms::Navigator& nav, Config config)
    : session_(session), nav_(nav), config_(std::move(config)) {
    session_.runs.onChange = [this] { runChanged(); };
}

Instrument::~Instrument() { session_.runs.onChange = nullptr; }

Error Instrument::errorOf(const forms::Box& refusal) {
    if (refusal.title == qz::kEntryErrorTitle)
        return {refusal.text == qz::kNotValidNumber ? err::kIllegalValue : err::kOutOfRange, refusal.text};
    return {err::kExecution, refusal.text};
}

void Instrument::report(const forms::Outcome& outcome) {
    try {
        check(outcome);
    } catch (const Refused& r) {
        raise(r.error);
    }
}

void Instrument::check(const forms::Outcome& outcome) {
    // A warning leaves the setting made; it is the device's own note, a positive code.
    for (const forms::Box& note : outcome.notes) raise({err::kWarning, note.title + "; " + note.text});
    if (outcome.refusal) throw Refused{errorOf(*outcome.refusal)};
}

QWidget* Instrument::shown(const Call& call) {
    if (!nav_.loaded(call.command.form)) return nullptr;
    return control(call);
}

frmMain* Instrument::front() { return static_cast<frmMain*>(nav_.load(forms::Form::frmMain)); }
frmMeasure* Instrument::measure() { return static_cast<frmMeasure*>(nav_.load(forms::Form::frmMeasure)); }
frmDIAG* Instrument::diag() { return static_cast<frmDIAG*>(nav_.load(forms::Form::frmDIAG)); }

QWidget* Instrument::control(const Call& call) {
    QWidget* c = forms::controlOf<QWidget>(nav_, call.command.form, QString::fromLatin1(call.command.control));
    if (!c) throw Refused{standardError(err::kExecution)};
    return c;
}

std::vector<forms::ControlRef> Instrument::panelControls() {
    std::vector<forms::ControlRef> refs;
    for (const Command& c : commandTable())
        if (c.control) refs.push_back({c.form, c.control, c.array ? 0 : -1});
    return refs;
}

int64_t Instrument::wholeParam(const std::string& p, int64_t low, int64_t high) {
    const NumericParse n = parseNumeric(p, SiUnit::None, false);
    if (!n.numeric) throw Refused{n.error};
    const auto v = parseWhole(p);
    if (!v) throw Refused{standardError(err::kIllegalValue)};
    if (*v < low || *v > high) throw Refused{standardError(err::kOutOfRange)};
    return *v;
}

void Instrument::raise(Error e) {
    status_.errorRaised(e.code);
    errors_.push(std::move(e));
}

bool Instrument::actsAtOnce(const Unit& unit) const {
    Error ignored;
    const Command* c = findCommand(unit, ignored);
    return c && c->atOnce && !unit.query && unit.params.empty();
}

Instrument::Outcome Instrument::execute(const Unit& unit) {
    Error e;
    const Command* c = findCommand(unit, e);
    if (!c) {
        raise(e);
        return failed();
    }
    return dispatch(*c, unit);
}

Instrument::Outcome Instrument::dispatch(const Command& c, const Unit& unit) {
    const int n = static_cast<int>(unit.params.size());
    if (n < (unit.query ? c.askMin : c.setMin)) {
        raise(standardError(err::kMissingParameter));
        return failed();
    }
    if (n > (unit.query ? c.askMax : c.setMax)) {
        raise(standardError(err::kParameterNotAllowed));
        return failed();
    }
    if ((unit.query ? c.askAccess : c.setAccess) == Access::Writes && running()) {
        raise({err::kSettingsConflict, "Settings conflict; a run is in progress"});
        return failed();
    }
    Outcome out;
    const forms::Recording::RemoteScope clients;
    ++commandDepth_;
    try {
        out.answer = (this->*(unit.query ? c.ask : c.set))(Call{c, unit.params});
    } catch (const Refused& r) {
        raise(r.error);
        out.kind = Outcome::Kind::Failed;
    } catch (const WaitForRun&) {
        out.kind = Outcome::Kind::Wait;
    }
    --commandDepth_;
    if (out.kind != Outcome::Kind::Done) out.answer.clear();
    return out;
}

bool Instrument::running() const {
    return pending_ != Run::None || remoteRun_ || session_.runs.inProgress();
}

void Instrument::runChanged() {
    const bool now = running();
    status_.operation.setCondition(now ? kOperMeasuring : 0);
    if (!now && opcArmed_) {
        opcArmed_ = false;
        status_.operationComplete();
    }
    // Whoever waits on the run hears of it from the event loop, once the run's own
    // handler has returned.
    if (notifyPosted_) return;
    notifyPosted_ = true;
    QTimer::singleShot(0, this, [this] {
        notifyPosted_ = false;
        if (onRunChange) onRunChange();
    });
}

void Instrument::abort() {
    const bool wasPending = pending_ != Run::None;
    pending_ = Run::None;
    if (auto* m = static_cast<frmMeasure*>(nav_.loaded(forms::Form::frmMeasure)); m && m->running()) m->cmdStop_Click();
    if (auto* d = static_cast<frmDIAG*>(nav_.loaded(forms::Form::frmDIAG)); d && d->running()) d->stopRun();
    if (wasPending) runChanged();
}

void Instrument::clientLeft() {
    // Only what the client began ends with it; a run the operator started goes on.
    if (pending_ != Run::None || remoteRun_) abort();
}

void Instrument::newClient() {
    errors_.clear();
    status_.clear();
    opcArmed_ = false;
}

// --- Common commands --------------------------------------------------------------------

std::string Instrument::idn(const Call&) {
    std::string board = "no board";
    switch (session_.usb.linkState()) {
    case qz::LinkState::Virtual: board = "virtual board"; break;
    case qz::LinkState::Connected: board = "usb " + std::to_string(session_.usb.boardPath); break;
    case qz::LinkState::NoBoard:
    case qz::LinkState::Lost: break;
    }
    return "QZ7740,QZ7740 evaluation board," + board + "," + config_.version;
}

std::string Instrument::rst(const Call&) {
    // A run in progress stops first; the reset follows once its handler has returned.
    if (running()) {
        abort();
        throw WaitForRun{};
    }
    if (config_.reset)
        config_.reset();
    else
        front()->cmdRESET_Click();
    format_ = {};
    opcArmed_ = false;
    return {};
}

std::string Instrument::cls(const Call&) {
    errors_.clear();
    status_.clear();
    opcArmed_ = false;
    return {};
}

std::string Instrument::eseSet(const Call& c) {
    status_.ese = static_cast<uint8_t>(wholeParam(c.params[0], 0, 255));
    return {};
}
std::string Instrument::eseAsk(const Call&) { return std::to_string(status_.ese); }
std::string Instrument::esrAsk(const Call&) { return std::to_string(status_.takeEsr()); }
std::string Instrument::sreSet(const Call& c) {
    // Bit 6 of the status byte is the summary itself: the enable has no bit there.
    status_.sre = static_cast<uint8_t>(wholeParam(c.params[0], 0, 255) & ~stb::kRequestService);
    return {};
}
std::string Instrument::sreAsk(const Call&) { return std::to_string(status_.sre); }
std::string Instrument::stbAsk(const Call&) {
    return std::to_string(status_.statusByte(errors_.size() > 0, messageWaiting && messageWaiting()));
}

std::string Instrument::opcSet(const Call&) {
    if (running())
        opcArmed_ = true;
    else
        status_.operationComplete();
    return {};
}

std::string Instrument::opcAsk(const Call&) {
    if (running()) throw WaitForRun{};
    return "1";
}

std::string Instrument::wai(const Call&) {
    if (running()) throw WaitForRun{};
    return {};
}

std::string Instrument::tst(const Call&) {
    // A register that does nothing until the ramp is enabled takes a pattern and gives it
    // back; its value is put back afterwards.
    const int address = qz::reg::kRampEnd;
    const int32_t read = qz::readCommandOf(address);
    constexpr int32_t kPattern = 0xA55A;
    const int32_t before = session_.readWord(read) & 0xFFFF;
    bool link = session_.usb.usbStatus == 0;
    session_.SPIout((address << 16) | kPattern);
    link = link && session_.usb.usbStatus == 0;
    const int32_t back = session_.readWord(read) & 0xFFFF;
    link = link && session_.usb.usbStatus == 0;
    session_.SPIout((address << 16) | before);
    if (link && !session_.usb.noBoard && back == kPattern) return "0";
    raise({err::kSelfTest, link && !session_.usb.noBoard
                               ? "Self-test failed; the register did not read back the word written"
                               : "Self-test failed; the board does not answer"});
    return "1";
}

// --- System and status ------------------------------------------------------------------

std::string Instrument::systErr(const Call&) { return errors_.pop(); }
std::string Instrument::systErrCount(const Call&) { return std::to_string(errors_.size()); }
std::string Instrument::systVersion(const Call&) { return "1999.0"; }

std::string Instrument::systExit(const Call&) {
    abort();
    if (config_.exit) config_.exit();
    return {};
}

std::string Instrument::systLocal(const Call&) {
    forms::remoteLocal().goLocal();
    return {};
}

std::string Instrument::systRemote(const Call&) {
    forms::remoteLocal().goRemote();
    return {};
}

std::string Instrument::systLockout(const Call&) {
    forms::remoteLocal().lockout();
    return {};
}

std::string Instrument::lanControl(const Call&) { return std::to_string(controlPort ? controlPort() : 0); }

std::string Instrument::operEvent(const Call&) { return std::to_string(status_.operation.takeEvent()); }
std::string Instrument::operCondition(const Call&) { return std::to_string(status_.operation.condition); }
std::string Instrument::operEnableSet(const Call& c) {
    status_.operation.enable = static_cast<uint16_t>(wholeParam(c.params[0], 0, 65535));
    return {};
}
std::string Instrument::operEnableAsk(const Call&) { return std::to_string(status_.operation.enable); }

std::string Instrument::quesEvent(const Call&) {
    readAlarms(false);
    return std::to_string(status_.questionable.takeEvent());
}
std::string Instrument::quesCondition(const Call&) {
    readAlarms(false);
    return std::to_string(status_.questionable.condition);
}
std::string Instrument::quesEnableSet(const Call& c) {
    status_.questionable.enable = static_cast<uint16_t>(wholeParam(c.params[0], 0, 65535));
    return {};
}
std::string Instrument::quesEnableAsk(const Call&) { return std::to_string(status_.questionable.enable); }

std::string Instrument::statPreset(const Call&) {
    status_.preset();
    return {};
}

uint16_t Instrument::readAlarms(bool clear) {
    const int32_t word = front()->readAlarms(clear);
    const auto present = static_cast<uint16_t>((~word) & 0xFFC0);
    uint16_t live = 0, latched = 0;
    for (const AlarmBit& a : kAlarmBits) {
        if (present & (1u << a.latchedBit)) latched |= a.questionable;
        if (present & (1u << (a.latchedBit - 1))) live |= a.questionable;
    }
    status_.questionable.setCondition(live);
    status_.questionable.event |= latched;
    return present;
}

std::string Instrument::alarms(const Call& c) { return std::to_string(readAlarms(c.command.arg == 1)); }

// --- The chip's words -------------------------------------------------------------------

std::string Instrument::regWrite(const Call& c) {
    session_.SPIout(static_cast<int32_t>(wholeParam(c.params[0], 0, 0xFFFFFF)));
    return {};
}

std::string Instrument::regRead(const Call& c) {
    const int address = static_cast<int>(wholeParam(c.params[0], 0, 0x7F));
    return NumberToHex(session_.readWord(qz::readCommandOf(address)) & 0xFFFFFF, 6);
}

// --- Runs -------------------------------------------------------------------------------

// A run asked for by INIT begins from the event loop, after the unit's handler has
// returned, so that the lines arriving while it runs are served.
void Instrument::startRun(Run run) {
    if (running()) throw Refused{{err::kInitIgnored, "Init ignored; a run is in progress"}};
    measure(); // loaded now, so that its load's words go out with this command
    pending_ = run;
    runChanged();
    QTimer::singleShot(0, this, [this] { beginRun(); });
}

void Instrument::beginRun() {
    if (commandDepth_ > 0) {
        // A unit's handler is serving events: the run waits for it to return.
        QTimer::singleShot(0, this, [this] { beginRun(); });
        return;
    }
    const Run run = pending_;
    pending_ = Run::None;
    if (run == Run::None) return;
    remoteRun_ = true;
    const forms::Recording::RemoteScope clients;
    frmMeasure* m = measure();
    const forms::Outcome outcome = run == Run::Sweep ? m->plotSweep() : m->plotTime();
    remoteRun_ = false;
    report(outcome);
    runChanged();
}

std::string Instrument::initSweep(const Call&) {
    startRun(Run::Sweep);
    return {};
}

std::string Instrument::initTime(const Call&) {
    startRun(Run::Time);
    return {};
}

std::string Instrument::abor(const Call&) {
    abort();
    return {};
}

std::string Instrument::fetch(const Call& c) {
    if (running()) throw Refused{{err::kDataStale, "Data corrupt or stale; a run is in progress"}};
    const bool sweep = c.command.arg < 2;
    const qz::RunRecord* r = session_.runs.last(sweep ? qz::RunKind::Sweep : qz::RunKind::Time);
    if (!r)
        throw Refused{{err::kDataStale, sweep ? "Data corrupt or stale; no sweep has ended yet"
                                              : "Data corrupt or stale; no time run has ended yet"}};
    const bool readings = c.command.arg % 2 == 0;
    return formatValues(readings ? r->readings : r->forced, format_);
}

std::string Instrument::formatSet(const Call& c) {
    const std::string& type = c.params[0];
    if (mnemonicMatches("ASCii", type)) {
        if (c.params.size() > 1) wholeParam(c.params[1], 0, 64);
        format_.data = DataFormat::Ascii;
        return {};
    }
    if (!mnemonicMatches("REAL", type)) throw Refused{standardError(err::kIllegalValue)};
    const int64_t bits = c.params.size() > 1 ? wholeParam(c.params[1], 0, 64) : 64;
    if (bits != 32 && bits != 64) throw Refused{{err::kIllegalValue, "Illegal parameter value; REAL takes 32 or 64"}};
    format_.data = bits == 32 ? DataFormat::Real32 : DataFormat::Real64;
    return {};
}

std::string Instrument::formatAsk(const Call&) {
    switch (format_.data) {
    case DataFormat::Real32: return "REAL,32";
    case DataFormat::Real64: return "REAL,64";
    case DataFormat::Ascii: break;
    }
    return "ASC,0";
}

std::string Instrument::borderSet(const Call& c) {
    if (mnemonicMatches("NORMal", c.params[0]))
        format_.swapped = false;
    else if (mnemonicMatches("SWAPped", c.params[0]))
        format_.swapped = true;
    else
        throw Refused{standardError(err::kIllegalValue)};
    return {};
}

std::string Instrument::borderAsk(const Call&) { return format_.swapped ? "SWAP" : "NORM"; }

} // namespace qz::remote
