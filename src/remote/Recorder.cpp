#include "remote/Recorder.h"

#include "board/Wire.h"
#include "forms/Entry.h"
#include "forms/Recording.h"
#include "levels/Ranges.h"
#include "registers/FieldOps.h"
#include "registers/HexText.h"
#include "registers/RegisterMap.h"
#include "registers/Session.h"
#include "remote/Commands.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>

#include <array>
#include <cctype>

namespace qz::remote {

namespace {

using Kind = Step::Kind;

std::string hex6(int32_t word) { return NumberToHex(word & 0xFFFFFF, 6); }

std::string onOff(bool on) { return on ? "ON" : "OFF"; }

// The requests an action made, as the commands that make each of them again: a read
// command with its reply fetched at once is a REG:READ?.
std::vector<Step> requestSteps(const std::vector<RequestSeen>& calls, const std::string& note) {
    std::vector<Step> out;
    auto add = [&](Kind kind, std::string message) { out.push_back({kind, std::move(message), {}, {}, {}, note}); };
    for (size_t i = 0; i < calls.size(); ++i) {
        const RequestSeen& c = calls[i];
        const bool in = c.direction != 0;
        switch (c.request) {
        case wire::kSpiWord:
            if (in) {
                add(Kind::Query, "REG:REPL?");
            } else {
                const int32_t word = (c.index & 0xFF) << 16 | (c.value & 0xFFFF);
                const int address = (word >> 16) & 0x7F;
                const bool readPair = word == readCommandOf(address) && i + 1 < calls.size() &&
                                      calls[i + 1].request == wire::kSpiWord && calls[i + 1].direction != 0;
                if (readPair) {
                    add(Kind::Query, "REG:READ? " + std::to_string(address));
                    ++i;
                } else {
                    add(Kind::Write, "REG:WRITE #H" + hex6(word));
                }
            }
            break;
        case wire::kChipReset: add(Kind::Write, "BOARD:RES"); break;
        case wire::kHwInhibitOn: add(Kind::Write, "BOARD:HWIN ON"); break;
        case wire::kHwInhibitOff: add(Kind::Write, "BOARD:HWIN OFF"); break;
        case wire::kClampPinOn: add(Kind::Write, "BOARD:CLEN ON"); break;
        case wire::kClampPinOff: add(Kind::Write, "BOARD:CLEN OFF"); break;
        case wire::kSwitchEnable: add(Kind::Write, "BOARD:SWIT ON"); break;
        case wire::kSwitchDisable: add(Kind::Write, "BOARD:SWIT OFF"); break;
        case wire::kSwitchChannel: add(Kind::Write, "BOARD:SWIT:CHAN " + std::to_string(c.value)); break;
        case wire::kAdcConvert: add(Kind::Write, "BOARD:ADC:CONV"); break;
        case wire::kAdcRead: add(Kind::Query, "BOARD:ADC:READ?"); break;
        case wire::kSensor:
            add(in ? Kind::Query : Kind::Write,
                in ? "BOARD:SENS:READ? " + std::to_string(c.value)
                   : "BOARD:SENS:WRIT " + std::to_string(c.value) + "," + std::to_string(c.index));
            break;
        default: break; // the start's own requests: no panel makes them
        }
    }
    return out;
}

// The panel a control sits on, and its name without an array member's "(k)".
struct Where {
    forms::Form form = forms::Form::frmMain;
    bool found = false;
    std::string name;
    int member = -1;
};

Where whereIs(const QWidget* control) {
    Where w;
    const QString window = control->window()->objectName();
    for (forms::Form f : forms::kAllForms)
        if (forms::formName(f) == window) {
            w.form = f;
            w.found = true;
        }
    static const QRegularExpression array(QStringLiteral(R"(^(\w+)\((\d+)\)$)"));
    const QString name = control->objectName();
    if (const auto m = array.match(name); m.hasMatch()) {
        w.name = m.captured(1).toStdString();
        w.member = m.captured(2).toInt();
    } else {
        w.name = name.toStdString();
    }
    return w;
}

// The row a control is recorded by: the row of its panel and name, or, for a control of
// the console that mirrors the front panel's of the same name, or one that every panel
// has and keeps alike, the row's own.
const Command* rowOf(const Where& w) {
    if (!w.found) return nullptr;
    const qz::ControlOps* ops = qz::findControl(w.name);
    const bool twin = w.form == forms::Form::frmMAINQZ7740 && ops && ops->twin;
    for (const Command& c : commandTable()) {
        if (c.record == Rec::None || !c.control) continue;
        const bool named = w.name == c.control || (c.alias && w.name == c.alias);
        if (named && c.array == (w.member >= 0) &&
            (c.form == w.form || c.shared || (twin && c.form == forms::Form::frmMain)))
            return &c;
    }
    return nullptr;
}

std::string queryOf(const char* header) { return shortForm(header) + "?"; }

} // namespace

struct Recorder::Impl {
    Recorder& self;
    qz::Session& session;
    forms::Navigator& nav;
    bool on = false;
    std::vector<Step> steps;
    int sweeps = 0, timeRuns = 0;

    // An action in progress and the requests it has made so far, kept in case it is
    // written as them. An action inside one that a command stands for (but a run) is part
    // of it ("inner"), as is anything a panel's load does.
    struct Frame {
        forms::Action action;
        const Command* row = nullptr;
        bool inner = false;
        bool runStarted = false;
        bool boxesHeld = true; // the boxes the row's operation reads held their values
        std::vector<RequestSeen> calls;
        std::array<int32_t, 7> shadows{};
        int rangeIndex = 0;
        std::string note;
    };
    std::vector<Frame> stack;

    Impl(Recorder& r, qz::Session& s, forms::Navigator& n) : self(r), session(s), nav(n) {}

    void put(Step step) {
        if (!on) return;
        steps.push_back(step);
        if (self.onStep) self.onStep(steps.back());
    }
    void putAll(const std::vector<Step>& list) {
        for (const Step& s : list) put(s);
    }
    std::array<int32_t, 7> shadows() {
        std::array<int32_t, 7> out{};
        for (int a = 1; a <= 7; ++a) out[static_cast<size_t>(a - 1)] = *session.general.shadowAt(a);
        return out;
    }
    void flush(Frame& f) {
        putAll(requestSteps(f.calls, f.note));
        f.calls.clear();
    }

    void request(const RequestSeen& seen) {
        if (forms::recording().remoteAtWork()) return;
        if (stack.empty()) return putAll(requestSteps({seen}, {}));
        Frame& top = stack.back();
        if (top.inner || top.action.kind != forms::Action::Kind::Control) return;
        if (top.row && top.row->record == Rec::Run && top.runStarted) return;
        // Kept also for a row's action: if it is refused after all, what it sent on
        // the way is written as requests.
        top.calls.push_back(seen);
    }

    void startRun(Frame& f) {
        f.runStarted = true;
        f.calls.clear();
        put({Kind::Write, shortForm(f.row->header), {}, {}, {}, f.note});
    }

    void began(const forms::Action& a) {
        Frame f;
        f.action = a;
        if (!stack.empty()) {
            Frame& top = stack.back();
            const bool run = top.row && top.row->record == Rec::Run;
            f.inner = top.inner || (top.row && !run) || top.action.kind != forms::Action::Kind::Control;
            if (!f.inner && !top.row) flush(top);
            if (!f.inner && run && !top.runStarted) startRun(top);
        }
        if (a.kind == forms::Action::Kind::Control) {
            const Where w = whereIs(a.control);
            f.row = rowOf(w);
            f.boxesHeld = !f.row || !f.row->reads || boxesHoldTheirValues(*f.row, a.control);
            if (f.row && f.row->record == Rec::Run && !f.boxesHeld) f.row = nullptr;
            f.note = forms::formName(w.form).toStdString() + " " + a.control->objectName().toStdString();
        } else if (!f.inner) {
            const std::string name = forms::formName(a.form).toStdString();
            put({Kind::Write, (a.kind == forms::Action::Kind::Open ? "DISP:PAN " : "DISP:PAN:CLOS ") + name, {}, {},
                  {}, "the panel " + name + (a.kind == forms::Action::Kind::Open ? " shown" : " closed")});
        }
        f.shadows = shadows();
        f.rangeIndex = session.general.IRangeIndex;
        stack.push_back(std::move(f));
    }

    void ended(const forms::Action& a, const forms::Outcome& outcome) {
        if (stack.empty()) return;
        Frame f = std::move(stack.back());
        stack.pop_back();
        if (f.inner || a.kind != forms::Action::Kind::Control) return;
        // A console twin that found the front panel's already where it was sent nothing;
        // the front panel's command always sends, so the action is written as it went.
        const bool twin = f.row && a.control->window()->objectName() != forms::formName(f.row->form);
        if (twin && !f.row->shared && f.calls.empty()) return asItWent(f);
        // What the operation sent from boxes a script cannot set as they stood goes as it went.
        if (!f.row || (!f.boxesHeld && !f.calls.empty())) return asItWent(f);
        if (f.row->record == Rec::Run) return endRun(f, outcome);
        if (!outcome) return asItWent(f);
        // A twin is read on the row's own panel, whose control the command sets.
        QWidget* control = twin ? forms::controlOf<QWidget>(nav, f.row->form, a.control->objectName()) : a.control;
        const std::string param = parameter(*f.row, control);
        // A box left empty (which it may take) holds no value a script can give.
        if (param.empty() && f.row->record != Rec::Press) return asItWent(f);
        const std::string head = f.row->record == Rec::Press && !f.row->set ? queryOf(f.row->header)
                                                                               : shortForm(f.row->header);
        put({f.row->set ? Kind::Write : Kind::Query, param.empty() ? head : head + " " + param, {}, {}, {}, f.note});
    }

    // The action as the requests it made, the program's copy of each word it composed
    // without sending it, and the range index it chose without a word.
    void asItWent(Frame& f) {
        flush(f);
        const std::array<int32_t, 7> now = shadows();
        for (size_t i = 0; i < now.size(); ++i)
            if (now[i] != f.shadows[i]) put({Kind::Write, "REG:SHAD #H" + hex6(now[i]), {}, {}, {}, f.note});
        if (session.general.IRangeIndex != f.rangeIndex)
            put({Kind::Write, "CURR:RANG:IND " + std::to_string(session.general.IRangeIndex), {}, {}, {}, f.note});
    }

    // A run that ended refused is written as the requests it made; one that started and
    // ended is its INIT (unless an action inside it wrote that already), the wait and
    // the fetch of its results.
    void endRun(Frame& f, const forms::Outcome& outcome) {
        if (!outcome) return f.runStarted ? void() : asItWent(f);
        if (f.calls.empty() && !f.runStarted) return;
        if (!f.runStarted) startRun(f);
        put({Kind::Wait, "*OPC?", {}, {}, {}, f.note});
        Step fetch{Kind::Fetch, {}, {}, {}, {}, f.note};
        const bool sweep = f.row->set == &Instrument::initSweep;
        for (const char* header : f.row->words) {
            fetch.queries.push_back(queryOf(header));
            // A column is named by the fetch's last node: "force", "reading", "times".
            std::string node = std::string_view(header).substr(std::string_view(header).rfind(':') + 1).data();
            std::erase_if(node, [](char ch) { return ch == '[' || ch == ']'; });
            for (char& ch : node) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
            fetch.columns.push_back(node);
        }
        fetch.file = sweep ? "sweep-" + std::to_string(++sweeps) + ".csv" : "time-" + std::to_string(++timeRuns) + ".csv";
        put(fetch);
    }

    // The panels' operations read some boxes as they stand (the force law its codes and
    // VREF's Other, a run its voltages), and a script sets a box only to a value it takes.
    // While such a box of the action's panel holds other text (typed and not entered, or
    // emptied by a refusal), the action is recorded by its requests, not by its command.
    bool boxesHoldTheirValues(const Command& row, const QWidget* acting) {
        auto together = [](forms::Form a, forms::Form b) {
            auto front = [](forms::Form f) { return f == forms::Form::frmMain || f == forms::Form::frmMAINQZ7740; };
            return a == b || (front(a) && front(b));
        };
        auto holds = [&](forms::Form form, const QString& name) {
            const QWidget* panel = nav.loaded(form); // looked at, not loaded
            const auto* box = panel ? panel->findChild<QLineEdit*>(name) : nullptr;
            return !box || box == acting || (!box->text().isEmpty() && box->text() == forms::acceptedText(box));
        };
        const forms::Form here = whereIs(acting).form;
        for (const Command& c : commandTable()) {
            if (!c.read) continue;
            if (c.record == Rec::Reference) {
                for (forms::Form f : forms::kAllForms)
                    if (together(f, here) && !holds(f, QStringLiteral("txtVREF"))) return false;
            } else if (together(c.form, row.form) || together(c.form, here)) {
                if (!holds(c.form, c.array ? forms::member(c.control, 0) : QString::fromLatin1(c.control)))
                    return false;
            }
        }
        return true;
    }

    // The parameter that sets the row's control as the action left it.
    std::string parameter(const Command& row, QWidget* control) {
        const auto* box = qobject_cast<QLineEdit*>(control);
        const auto* list = qobject_cast<QComboBox*>(control);
        const auto* button = qobject_cast<QAbstractButton*>(control);
        const std::string text = box ? forms::acceptedText(box).toStdString() : std::string();
        const int index = list ? list->currentIndex() : -1;
        switch (row.record) {
        case Rec::Number: return text;
        case Rec::Millivolts: return text + "MV";
        case Rec::Hex: return "#H" + text;
        case Rec::RangeUnit: {
            const qz::CurrentRange* range = qz::currentRange(session.general.IRangeIndex);
            const auto v = parseNumber(text);
            return range && v ? numberText(*v * range->toAmperes) : text;
        }
        case Rec::Range: {
            return Instrument::rangeNameOf(list->currentText());
        }
        case Rec::Index: return std::to_string(list ? index : whereIs(control).member);
        case Rec::Value: return numberText(row.values[static_cast<size_t>(index)]);
        case Rec::Word: return shortForm(row.words[static_cast<size_t>(index)]);
        case Rec::State: return onOff(button && button->isChecked());
        case Rec::Reference: {
            const int k = whereIs(control).member;
            if (k == 0) return "5";
            if (k == 1) return "2.5";
            auto* other = forms::controlOf<QLineEdit>(nav, row.form, QStringLiteral("txtVREF"));
            return other ? forms::acceptedText(other).toStdString() : std::string();
        }
        case Rec::None:
        case Rec::Press:
        case Rec::Run: break;
        }
        return {};
    }
};

Recorder::Recorder(qz::Session& session, forms::Navigator& nav) : impl_(std::make_unique<Impl>(*this, session, nav)) {
    forms::Recording& r = forms::recording();
    r.began = [this](const forms::Action& a) { impl_->began(a); };
    r.ended = [this](const forms::Action& a, const forms::Outcome& o) { impl_->ended(a, o); };
    session.usb.onRequest = [this](const RequestSeen& seen) {
        if (impl_->on) impl_->request(seen);
    };
}

Recorder::~Recorder() {
    forms::Recording& r = forms::recording();
    r.began = nullptr;
    r.ended = nullptr;
    r.setActive(false);
    impl_->session.usb.onRequest = nullptr;
}

void Recorder::start() {
    if (impl_->on) return;
    impl_->on = true;
    forms::recording().setActive(true);
    if (onState) onState(true);
}

void Recorder::stop() {
    if (!impl_->on) return;
    impl_->on = false;
    forms::recording().setActive(false);
    if (onState) onState(false);
}

bool Recorder::recording() const { return impl_->on; }

void Recorder::clear() {
    impl_->steps.clear();
    impl_->sweeps = impl_->timeRuns = 0;
}

const std::vector<Step>& Recorder::steps() const { return impl_->steps; }

void Recorder::traffic(const std::string& peer, const std::string& text, bool fromClient) {
    if (!onTraffic) return;
    // A line each, printable, and no more of a long answer (a block of readings) than a
    // view can show.
    constexpr size_t kShown = 160;
    std::string line;
    for (char c : text.substr(0, kShown + 1)) line += c == '\n' ? ' ' : (c >= ' ' && c < 127 ? c : '.');
    while (!line.empty() && line.back() == ' ') line.pop_back();
    if (text.size() > kShown) line = line.substr(0, kShown) + "... (" + std::to_string(text.size()) + " bytes)";
    onTraffic(peer, line, fromClient);
}

} // namespace qz::remote
