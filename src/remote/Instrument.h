#pragma once
// The board as an instrument: each remote line becomes the operation of a panel's control,
// so that a script does exactly what the operator's hand would, and the panels show it.
// Refusals that a panel would put in a message box go to the error queue instead; a run
// starts from the event loop, so that lines keep being served while it is in progress.

#include "board/Message.h"
#include "forms/Navigator.h"
#include "registers/Session.h"
#include "remote/Scpi.h"

#include <QObject>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QLineEdit;
class QWidget;
class frmMain;
class frmMeasure;
class frmDIAG;

namespace qz::remote {

class Instrument : public QObject {
  public:
    struct Config {
        std::string version;          // the program's, for *IDN?
        qz::MessageSink normalSink;   // the sink outside remote commands (empty: the real box)
        std::function<void()> exit;   // SYST:EXIT
    };
    Instrument(qz::Session& session, forms::Navigator& nav, Config config);

    struct Reply {
        enum class Kind { None, Line, AfterRun };
        Kind kind = Kind::None;
        std::string text;
    };
    // One line without its end of line. A query answers a Line (empty when it failed);
    // *OPC? during a run answers AfterRun: the reply "1" follows the run's end.
    Reply execute(std::string_view line);

    // A run in progress, from the panels or remote, or one asked for and not yet begun.
    bool running() const;
    // STOP for the run in progress; a run asked for and not yet begun does not begin.
    void abort();
    // The client has gone: a run it began or asked for stops.
    void clientLeft();
    // A new client: the queue starts empty.
    void newClient() { errors_.clear(); }
    ErrorQueue& errors() { return errors_; }

    // Told when a run started by INIT has ended.
    std::function<void()> onRunEnd;

    // The handlers, one per command of the table (Instrument.cpp, PanelCommands.cpp).
    using Params = std::vector<std::string>;
    std::string idn(const Params&);
    std::string rst(const Params&);
    std::string cls(const Params&);
    std::string opc(const Params&);
    std::string systErr(const Params&);
    std::string systExit(const Params&);
    std::string regWrite(const Params&);
    std::string regRead(const Params&);
    std::string sourVolt(const Params&);
    std::string sourVoltQ(const Params&);
    std::string clampHigh(const Params&);
    std::string clampLow(const Params&);
    std::string clampHighQ(const Params&);
    std::string clampLowQ(const Params&);
    std::string offset(const Params&);
    std::string offsetQ(const Params&);
    std::string vref(const Params&);
    std::string vrefQ(const Params&);
    std::string measVolt(const Params&);
    std::string measCurr(const Params&);
    std::string measTemp(const Params&);
    std::string alarms(const Params&);
    std::string alarmsClear(const Params&);
    std::string statOper(const Params&);
    std::string sweStart(const Params&);
    std::string sweStop(const Params&);
    std::string sweStep(const Params&);
    std::string sweStartQ(const Params&);
    std::string sweStopQ(const Params&);
    std::string sweStepQ(const Params&);
    std::string timeVolt(const Params&);
    std::string timeVoltQ(const Params&);
    std::string initSweep(const Params&);
    std::string initTime(const Params&);
    std::string abor(const Params&);
    std::string fetchSweep(const Params&);
    std::string fetchTime(const Params&);
    std::string diagNodeA(const Params&);
    std::string diagNodeB(const Params&);
    std::string diagNodeAQ(const Params&);
    std::string diagNodeBQ(const Params&);
    // The lists and check boxes of the control table, on the control of the line's entry.
    std::string listSet(const Params&);
    std::string listQuery(const Params&);
    std::string checkSet(const Params&);
    std::string checkQuery(const Params&);

    // The panels' controls that the control table's commands work on.
    static std::vector<forms::ControlRef> panelControls();

    // A refusal of a handler: it ends the command with this error in the queue.
    struct Refused {
        Error error;
    };

  private:
    enum class Run { None, Sweep, Time };
    struct Message {
        std::string title, text;
        qz::MsgIcon icon;
    };
    // While a command runs, the panels' messages land in `target`; at the outermost end
    // the normal sink returns.
    class Capture {
      public:
        Capture(Instrument& in, std::vector<Message>& target);
        ~Capture();
        Capture(const Capture&) = delete;
        Capture& operator=(const Capture&) = delete;

      private:
        Instrument& in_;
        std::vector<Message>* previous_;
    };

    frmMain* front();
    frmMeasure* measure();
    frmDIAG* diag();
    Reply dispatch(const Line& line);
    void queueMessages(const std::vector<Message>& messages);
    void startRun(Run run);
    void beginRun();
    QWidget* currentControl();
    void enterBox(QLineEdit* box, const std::string& text, const std::function<void()>& enter);
    std::string entryText(const std::string& param) const;
    double reading(int measureItem, bool amps);
    std::string alarmRead(bool clear);
    std::string diagNode(bool bankB, const Params& p);
    std::string diagNodeQuery(bool bankB);

    qz::Session& session_;
    forms::Navigator& nav_;
    Config config_;
    ErrorQueue errors_;
    std::vector<Message>* target_ = nullptr;
    int commandDepth_ = 0;
    Run pending_ = Run::None;  // asked for by INIT, not yet begun
    bool remoteRun_ = false;   // begun by INIT, not yet ended
    std::vector<double> sweepResult_, timeResult_;
    forms::Form controlForm_ = forms::Form::frmMain; // the control of the entry in hand
    const char* controlName_ = "";
};

} // namespace qz::remote
