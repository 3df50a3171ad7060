// The command table and its dispatch, the common commands, the raw words and the runs.
// The panels' own operations are in PanelCommands.cpp.

#include "remote/Instrument.h"

#include "diagnostics/frmDIAG.h"
#include "forms/MessageBox.h"
#include "frontpanel/frmMain.h"
#include "levels/Messages.h"
#include "measure/frmMeasure.h"
#include "registers/RegisterMap.h"

#include <QCheckBox>
#include <QTimer>

#include <cstdio>

namespace qz::remote {

namespace {

using Handler = std::string (Instrument::*)(const Instrument::Params&);
using forms::Form;

// One header of the command set. `board`: the command sends words to the chip, which a
// run in progress must not see between its own.
struct Command {
    const char* pattern;
    bool query;
    int minParams, maxParams;
    bool board;
    Handler handler;
    Form form = Form::frmMain; // the control of the list and check box entries
    const char* control = nullptr;
};

using I = Instrument;
constexpr bool Q = true, C = false;
const Command kCommands[] = {
    {"*IDN", Q, 0, 0, false, &I::idn},
    {"*RST", C, 0, 0, true, &I::rst},
    {"*CLS", C, 0, 0, false, &I::cls},
    {"*OPC", Q, 0, 0, false, &I::opc},
    {"SYSTem:ERRor", Q, 0, 0, false, &I::systErr},
    {"SYSTem:ERRor:NEXT", Q, 0, 0, false, &I::systErr},
    {"SYSTem:EXIT", C, 0, 0, false, &I::systExit},
    {"REGister:WRITe", C, 1, 1, true, &I::regWrite},
    {"REGister:READ", Q, 1, 1, true, &I::regRead},
    {"SOURce:VOLTage", C, 1, 1, true, &I::sourVolt},
    {"SOURce:VOLTage", Q, 0, 0, false, &I::sourVoltQ},
    {"SOURce:CLAMp:HIGH", C, 1, 1, true, &I::clampHigh},
    {"SOURce:CLAMp:HIGH", Q, 0, 0, false, &I::clampHighQ},
    {"SOURce:CLAMp:LOW", C, 1, 1, true, &I::clampLow},
    {"SOURce:CLAMp:LOW", Q, 0, 0, false, &I::clampLowQ},
    {"SOURce:OFFSet", C, 1, 1, true, &I::offset},
    {"SOURce:OFFSet", Q, 0, 0, false, &I::offsetQ},
    {"SOURce:VREF", C, 1, 1, true, &I::vref},
    {"SOURce:VREF", Q, 0, 0, false, &I::vrefQ},
    {"MEASure:VOLTage", Q, 0, 0, true, &I::measVolt},
    {"MEASure:CURRent", Q, 0, 0, true, &I::measCurr},
    {"MEASure:TEMPerature", Q, 0, 0, true, &I::measTemp},
    {"STATus:ALARm", Q, 0, 0, true, &I::alarms},
    {"STATus:ALARm:CLEar", Q, 0, 0, true, &I::alarmsClear},
    {"STATus:OPERation", Q, 0, 0, false, &I::statOper},
    {"SWEep:STARt", C, 1, 1, true, &I::sweStart},
    {"SWEep:STARt", Q, 0, 0, false, &I::sweStartQ},
    {"SWEep:STOP", C, 1, 1, true, &I::sweStop},
    {"SWEep:STOP", Q, 0, 0, false, &I::sweStopQ},
    {"SWEep:STEP", C, 1, 1, true, &I::sweStep},
    {"SWEep:STEP", Q, 0, 0, false, &I::sweStepQ},
    {"TIME:VOLTage", C, 1, 1, true, &I::timeVolt},
    {"TIME:VOLTage", Q, 0, 0, false, &I::timeVoltQ},
    {"INITiate:SWEep", C, 0, 0, false, &I::initSweep},
    {"INITiate:TIME", C, 0, 0, false, &I::initTime},
    {"ABORt", C, 0, 0, false, &I::abor},
    {"FETCh:SWEep", Q, 0, 0, false, &I::fetchSweep},
    {"FETCh:TIME", Q, 0, 0, false, &I::fetchTime},
    {"DIAGnostic:NODE:A", C, 1, 1, true, &I::diagNodeA},
    {"DIAGnostic:NODE:A", Q, 0, 0, false, &I::diagNodeAQ},
    {"DIAGnostic:NODE:B", C, 1, 1, true, &I::diagNodeB},
    {"DIAGnostic:NODE:B", Q, 0, 0, false, &I::diagNodeBQ},
};

// The lists and check boxes, each set as the operator picks or clicks it.
struct ControlCommand {
    const char* pattern;
    Form form;
    const char* control;
    bool list;
};
const ControlCommand kControls[] = {
    {"SOURce:CURRent:RANGe", Form::frmMain, "cboCurrent", true},
    {"MEASOut:SOURce", Form::frmMain, "cboMEASURE", true},
    {"MEASOut:GAIN", Form::frmMain, "MEASOUTG", true},
    {"SENSe:CURRent:GAIN", Form::frmMain, "IMEASG", true},
    {"SOURce:GANG", Form::frmMain, "cboSlave", true},
    {"SOURce:SLEW", Form::frmMain, "cboSlew", true},
    {"SOURce:COMParator", Form::frmMain, "cboCompare", true},
    {"SYSTem:FORCe", Form::frmMain, "cboSysforce", true},
    {"SYSTem:TSHutdown", Form::frmMain, "tempset", true},
    {"SWEep:RANGe", Form::frmMeasure, "cboSweepI", true},
    {"SWEep:FUNCtion", Form::frmMeasure, "cboMeasureVI", true},
    {"SWEep:DELay", Form::frmMeasure, "cboDela", true},
    {"SWEep:SDELay", Form::frmMeasure, "cboMDelay", true},
    {"OUTPut", Form::frmMain, "chkENABLECH", false},
    {"SOURce:POWer", Form::frmMain, "chkPD", false},
    {"SOURce:CLAMp:STATe", Form::frmMain, "chkCLAMPEN", false},
    {"SOURce:GPO", Form::frmMain, "chkGPO", false},
    {"SOURce:RTEN", Form::frmMain, "chk10k", false},
};

const Command* findCommand(const Line& line, Command& scratch) {
    for (const Command& c : kCommands)
        if (c.query == line.query && headerMatches(c.pattern, line.nodes)) return &c;
    for (const ControlCommand& c : kControls) {
        if (!headerMatches(c.pattern, line.nodes)) continue;
        if (line.query)
            scratch = {c.pattern, Q, 0, 0, false, c.list ? &I::listQuery : &I::checkQuery, c.form, c.control};
        else
            scratch = {c.pattern, C, 1, 1, true, c.list ? &I::listSet : &I::checkSet, c.form, c.control};
        return &scratch;
    }
    return nullptr;
}

Instrument::Reply answered(std::string text) { return {Instrument::Reply::Kind::Line, std::move(text)}; }
Instrument::Reply failed(bool query) { return query ? answered({}) : Instrument::Reply{}; }

} // namespace

Instrument::Instrument(qz::Session& session, forms::Navigator& nav, Config config)
    : session_(session), nav_(nav), config_(std::move(config)) {}

Instrument::Capture::Capture(Instrument& in, std::vector<Message>& target)
    : in_(in), previous_(in.target_) {
    in_.target_ = &target;
    if (previous_) return;
    forms::setMessageSink([&in = in_](const std::string& title, const std::string& text, qz::MsgIcon icon) {
        if (in.target_) in.target_->push_back({title, text, icon});
    });
}

Instrument::Capture::~Capture() {
    in_.target_ = previous_;
    if (!previous_) forms::setMessageSink(in_.config_.normalSink);
}

frmMain* Instrument::front() { return static_cast<frmMain*>(nav_.load(Form::frmMain)); }
frmMeasure* Instrument::measure() { return static_cast<frmMeasure*>(nav_.load(Form::frmMeasure)); }
frmDIAG* Instrument::diag() { return static_cast<frmDIAG*>(nav_.load(Form::frmDIAG)); }

QWidget* Instrument::currentControl() {
    QWidget* control = forms::controlOf<QWidget>(nav_, controlForm_, QString::fromLatin1(controlName_));
    if (!control) throw Refused{standardError(err::kExecution)};
    return control;
}

std::vector<forms::ControlRef> Instrument::panelControls() {
    std::vector<forms::ControlRef> refs;
    for (const ControlCommand& c : kControls)
        refs.push_back({c.form, c.control});
    return refs;
}

Instrument::Reply Instrument::execute(std::string_view text) {
    const Parsed p = parseLine(text);
    if (!p.line) {
        if (p.error.code == err::kNone) return {};
        errors_.push(p.error);
        return failed(p.query);
    }
    return dispatch(*p.line);
}

Instrument::Reply Instrument::dispatch(const Line& line) {
    Command scratch{};
    const Command* c = findCommand(line, scratch);
    if (!c) {
        errors_.push(standardError(err::kUndefinedHeader));
        return failed(line.query);
    }
    if (c->handler == &I::opc && running()) return {Reply::Kind::AfterRun, {}};
    const int n = static_cast<int>(line.params.size());
    if (n < c->minParams || n > c->maxParams) {
        errors_.push(standardError(n < c->minParams ? err::kMissingParameter : err::kParameterNotAllowed));
        return failed(line.query);
    }
    if (c->board && running()) {
        errors_.push(err::kSettingsConflict, "Settings conflict; a run is in progress");
        return failed(line.query);
    }
    controlForm_ = c->form;
    controlName_ = c->control ? c->control : "";
    std::vector<Message> messages;
    std::string answer;
    bool ok = true;
    {
        Capture capture(*this, messages);
        ++commandDepth_;
        try {
            answer = (this->*(c->handler))(line.params);
        } catch (const Refused& r) {
            errors_.push(r.error);
            ok = false;
        }
        --commandDepth_;
    }
    if (!messages.empty()) {
        queueMessages(messages);
        ok = false;
    }
    if (!line.query) return {};
    return answered(ok ? std::move(answer) : std::string());
}

void Instrument::queueMessages(const std::vector<Message>& messages) {
    for (const Message& m : messages) {
        // An entry's refusal is a value out of range, in the panel's own words; any other
        // box a remote command raised is an execution error with its text.
        int code = err::kExecution;
        if (m.title == qz::kEntryErrorTitle) code = m.text == qz::kNotValidNumber ? err::kIllegalValue : err::kOutOfRange;
        errors_.push(code, m.text);
    }
}

bool Instrument::running() const {
    if (pending_ != Run::None || remoteRun_) return true;
    if (auto* m = static_cast<frmMeasure*>(nav_.loaded(Form::frmMeasure)); m && m->running()) return true;
    if (auto* d = static_cast<frmDIAG*>(nav_.loaded(Form::frmDIAG)); d && d->running()) return true;
    return false;
}

void Instrument::abort() {
    pending_ = Run::None;
    if (auto* m = static_cast<frmMeasure*>(nav_.loaded(Form::frmMeasure)); m && m->running()) m->cmdStop_Click();
    // The temperature run stops as the operator stops it: its "STOP" box ticked.
    if (auto* d = static_cast<frmDIAG*>(nav_.loaded(Form::frmDIAG)); d && d->running() && !d->Check1->isChecked())
        d->Check1->click();
}

void Instrument::clientLeft() {
    // Only what the client began ends with it; a run the operator started goes on.
    if (pending_ != Run::None || remoteRun_) abort();
}

std::string Instrument::idn(const Params&) {
    std::string board = "no board";
    switch (session_.usb.linkState()) {
    case qz::LinkState::Virtual: board = "virtual board"; break;
    case qz::LinkState::Connected: board = "usb " + std::to_string(session_.usb.boardPath); break;
    case qz::LinkState::NoBoard:
    case qz::LinkState::Lost: break;
    }
    return "QZ7740,QZ7740 evaluation board," + board + "," + config_.version;
}

std::string Instrument::rst(const Params&) {
    front()->cmdRESET_Click();
    return {};
}

std::string Instrument::cls(const Params&) {
    errors_.clear();
    return {};
}

std::string Instrument::opc(const Params&) { return "1"; }

std::string Instrument::systErr(const Params&) { return errors_.pop(); }

std::string Instrument::systExit(const Params&) {
    abort();
    if (config_.exit) config_.exit();
    return {};
}

namespace {
int64_t wholeParam(const std::string& p, int64_t low, int64_t high) {
    const auto v = parseWhole(p);
    if (!v) throw Instrument::Refused{standardError(parseNumber(p) ? err::kIllegalValue : err::kNumericData)};
    if (*v < low || *v > high) throw Instrument::Refused{standardError(err::kOutOfRange)};
    return *v;
}
} // namespace

std::string Instrument::regWrite(const Params& p) {
    session_.SPIout(static_cast<int32_t>(wholeParam(p[0], 0, 0xFFFFFF)));
    return {};
}

std::string Instrument::regRead(const Params& p) {
    const int address = static_cast<int>(wholeParam(p[0], 0, 0x7F));
    const int32_t r = session_.readWord(qz::readCommandOf(address));
    char text[8];
    std::snprintf(text, sizeof text, "%06X", static_cast<unsigned>(r & 0xFFFFFF));
    return text;
}

std::string Instrument::statOper(const Params&) { return running() ? "1" : "0"; }

// A run asked for by INIT begins from the event loop, after the line's handler has
// returned, so that the lines arriving while it runs are served.
void Instrument::startRun(Run run) {
    if (running()) throw Refused{{err::kInitIgnored, "Init ignored; a run is in progress"}};
    measure(); // loaded now, so that its load's words go out with this command
    pending_ = run;
    QTimer::singleShot(0, this, [this] { beginRun(); });
}

void Instrument::beginRun() {
    if (commandDepth_ > 0) {
        // A command's handler is serving events: the run waits for it to return.
        QTimer::singleShot(0, this, [this] { beginRun(); });
        return;
    }
    const Run run = pending_;
    pending_ = Run::None;
    if (run != Run::None) {
        remoteRun_ = true;
        std::vector<Message> messages;
        {
            Capture capture(*this, messages);
            frmMeasure* m = measure();
            if (run == Run::Sweep)
                m->cmdPlot_Click();
            else
                m->cmdPlotit_Click();
            // The values the run's chart shows; the time run reuses the sweep's arrays.
            const bool amps = session_.general.measMode == 1;
            if (messages.empty() && run == Run::Sweep)
                sweepResult_ = amps ? m->arrays.sweepMeasAmps : m->arrays.sweepMeasVolts;
            if (messages.empty() && run == Run::Time)
                timeResult_ = amps ? m->arrays.timeMeasAmps : m->arrays.sweepMeasVolts;
        }
        remoteRun_ = false;
        queueMessages(messages);
    }
    if (onRunEnd) onRunEnd();
}

std::string Instrument::initSweep(const Params&) {
    startRun(Run::Sweep);
    return {};
}

std::string Instrument::initTime(const Params&) {
    startRun(Run::Time);
    return {};
}

std::string Instrument::abor(const Params&) {
    abort();
    return {};
}

namespace {
std::string joined(const std::vector<double>& values) {
    std::string out;
    out.reserve(values.size() * 12);
    for (size_t i = 0; i < values.size(); ++i) {
        if (i) out += ',';
        out += numberText(values[i]);
    }
    return out;
}
} // namespace

std::string Instrument::fetchSweep(const Params&) { return joined(sweepResult_); }
std::string Instrument::fetchTime(const Params&) { return joined(timeResult_); }

} // namespace qz::remote
