// Any bytes as lines of the remote control, run on the panels over the virtual board (Qt's
// offscreen platform): each line gives at most one answer line, no box ever comes up for a
// remote line, and neither a line refused for its syntax nor a setting's query alone
// sends a word to the chip.
// Runs are kept short: the panels' clock takes no time and ends a run after a few points.

#include "Check.h"
#include "board/VirtualBoard.h"
#include "console/frmMAINQZ7740.h"
#include "diagnostics/frmDIAG.h"
#include "forms/MessageBox.h"
#include "forms/SaveData.h"
#include "measure/frmMeasure.h"
#include "remote/Commands.h"
#include "remote/Exchange.h"
#include "remote/Instrument.h"
#include "runs/Clock.h"
#include "shell/Panels.h"
#include "shell/Start.h"

#include <QApplication>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace {

// The virtual board, counting the words the chip is sent.
class CountingBoard final : public qz::BridgeLibrary {
  public:
    int32_t Search_For_Boards(int32_t v, int32_t p, int16_t& count, uint8_t* paths) override {
        return board_.Search_For_Boards(v, p, count, paths);
    }
    int32_t Connect(int32_t v, int32_t p, uint8_t path, int32_t& handle) override {
        return board_.Connect(v, p, path, handle);
    }
    int32_t Download_Firmware(int32_t handle, const uint8_t* path) override {
        return board_.Download_Firmware(handle, path);
    }
    int32_t Vendor_Request(int32_t handle, int32_t request, int32_t value, int32_t index, int32_t direction,
                           int32_t length, uint8_t* buffer) override {
        if (request == 221 && direction == static_cast<int32_t>(qz::Direction::ToBoard)) ++words;
        return board_.Vendor_Request(handle, request, value, index, direction, length, buffer);
    }
    qz::LinkState linkState() const override { return board_.linkState(); }
    long words = 0;

  private:
    qz::VirtualBoard board_;
};

// A clock that takes no time; each run it serves ends after a few of its waits.
class ShortClock final : public qz::Clock {
  public:
    double seconds() const override { return now_; }
    void sleep(double s) override {
        now_ += s;
        if (++sleeps_ % 64 == 0 && stop) stop();
    }
    std::function<void()> stop;

  private:
    double now_ = 0.0;
    long sleeps_ = 0;
};

struct Program {
    Program() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QApplication>(argc, argv);
        auto library = std::make_unique<CountingBoard>();
        board = library.get();
        session = std::make_unique<qz::Session>(std::move(library));
        const qz::MessageSink count = [this](const std::string&, const std::string&, qz::MsgIcon) { ++boxes; };
        session->usb.messageBox = count;
        forms::setMessageSink(count);
        forms::setEndProgram([] {});
        forms::setFileChooser([](QWidget*, const QString&, const QString&, const QString&) { return QString(); });
        qz::registerPanels(nav, *session);
        console = qz::startConsole(nav, *session);
        panelsOnTheClock();
        instrument = std::make_unique<qz::remote::Instrument>(
            *session, nav,
            qz::remote::Instrument::Config{"fuzz", {}, [this] {
                                               qz::resetProgram(nav, *session, console);
                                               panelsOnTheClock();
                                           }});
        clock.stop = [this] { instrument->abort(); };
    }
    void panelsOnTheClock() {
        static_cast<frmMeasure*>(nav.load(forms::Form::frmMeasure))->useClock(clock);
        static_cast<frmDIAG*>(nav.load(forms::Form::frmDIAG))->useClock(clock);
    }

    int argc = 1;
    char name[5] = "fuzz";
    char* argv[2] = {name, nullptr};
    std::unique_ptr<QApplication> app;
    CountingBoard* board = nullptr;
    std::unique_ptr<qz::Session> session;
    forms::Navigator nav;
    ShortClock clock;
    std::unique_ptr<frmMAINQZ7740> console;
    std::unique_ptr<qz::remote::Instrument> instrument;
    long boxes = 0;
};

// The answer lines in the output: a field that is a definite-length block (#, the count's
// digit count, the count, the bytes) may hold line ends of its own.
size_t answerLines(const std::string& out) {
    size_t lines = 0;
    bool fieldStart = true;
    for (size_t i = 0; i < out.size(); ++i) {
        const char c = out[i];
        if (fieldStart && c == '#' && i + 1 < out.size() && out[i + 1] >= '1' && out[i + 1] <= '9') {
            const size_t digits = static_cast<size_t>(out[i + 1] - '0');
            size_t count = 0;
            for (size_t k = i + 2; k < i + 2 + digits && k < out.size(); ++k) count = count * 10 + static_cast<size_t>(out[k] - '0');
            i += 1 + digits + count;
            fieldStart = false;
            continue;
        }
        lines += c == '\n';
        fieldStart = c == '\n' || c == ';';
    }
    return lines;
}

Program& program() {
    static Program* p = new Program; // never destroyed: the fuzzer ends the process
    return *p;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Program& p = program();
    qz::remote::Exchange exchange(*p.instrument);
    std::string_view text(reinterpret_cast<const char*>(data), size);
    size_t lines = 0, answers = 0;
    for (; lines < 16 && !text.empty(); ++lines) {
        const size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);

        p.instrument->errors().clear();
        const long wordsBefore = p.board->words, boxesBefore = p.boxes;
        exchange.addLine(line);
        std::string out = exchange.run();
        // A run asked for begins from the event loop; what waited for it goes on after.
        QCoreApplication::processEvents();
        if (exchange.waiting()) out += exchange.run();
        FUZZ_CHECK(p.boxes == boxesBefore);
        // One answer line at the most for each line, those that waited coming later.
        answers += answerLines(out);
        FUZZ_CHECK(answers <= lines + 1);
        const std::string first = p.instrument->errors().pop();
        const int code = std::stoi(first);
        const std::vector<qz::remote::MessageUnit> units = qz::remote::parseMessage(line);
        if (units.size() == 1 && code <= -100 && code > -200) FUZZ_CHECK(p.board->words == wordsBefore);
        // A setting's query alone sends nothing.
        if (units.size() == 1 && units[0].parsed.unit && units[0].parsed.unit->query &&
            units[0].parsed.unit->params.empty()) {
            qz::remote::Error ignored;
            const qz::remote::Command* c = qz::remote::findCommand(*units[0].parsed.unit, ignored);
            if (c && c->askAccess == qz::remote::Access::None)
                FUZZ_CHECK(p.board->words == wordsBefore);
        }
    }
    // Whatever the input left in progress ends before the next, and the panels a reset
    // replaced go, as the program's event loop would let them.
    p.instrument->abort();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
