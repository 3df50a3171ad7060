#pragma once
// The board as an instrument: each unit of a remote message becomes the operation of a
// panel's control, so that a script does exactly what the operator's hand would, and the
// panels show it. Each operation gives back its outcome: a refusal, which the panel would
// put in a message box, goes to the error queue instead and sets the status bits of its
// class; a warning on the way goes to the queue as a device-specific code. A run starts
// from the event loop, so that messages keep being served while it is in progress. A query
// sends no word to the chip for a setting: a panel not loaded answers from its start state.

#include "board/Message.h"
#include "forms/MessageBox.h"
#include "forms/Navigator.h"
#include "registers/Session.h"
#include "remote/Scpi.h"
#include "remote/Status.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QComboBox;
class QLineEdit;
class QWidget;
class frmMain;
class frmMeasure;
class frmDIAG;

namespace qz::remote {

struct Command;

class Instrument : public QObject {
  public:
    struct Config {
        std::string version;        // the program's, for *IDN?
        std::function<void()> exit; // SYST:EXIT
        // *RST: the panels and the chip as at the program's start, without the board's
        // search. Empty: the front panel's RESET QZ7740 alone (tests of single panels).
        std::function<void()> reset;
    };
    Instrument(qz::Session& session, forms::Navigator& nav, Config config);
    ~Instrument() override;

    // One unit of a message, its header made whole. A query answers its text (empty when
    // it failed); Wait asks for the unit again once no run is in progress.
    struct Outcome {
        enum class Kind { Done, Failed, Wait };
        Kind kind = Kind::Done;
        std::string answer;
    };
    Outcome execute(const Unit& unit);
    // A unit that takes effect at once, even while units before it wait for a run (ABOR,
    // *CLS); it answers nothing.
    bool actsAtOnce(const Unit& unit) const;
    // An error found outside a unit's handler (the line's syntax, the server), queued and
    // set in the event status register by its class.
    void raise(Error e);

    // A run in progress, from the panels or remote, or one asked for and not yet begun.
    bool running() const;
    // STOP for the run in progress; a run asked for and not yet begun does not begin.
    void abort();
    // The client has gone (or cleared its connection): a run it began or asked for stops.
    void clientLeft();
    // A new client: the queue and the event registers start empty.
    void newClient();
    ErrorQueue& errors() { return errors_; }
    StatusModel& status() { return status_; }

    // Told, from the event loop, when a run has started or ended (whoever started it).
    std::function<void()> onRunChange;
    // Whether an answer waits to be sent: the message bit of the status byte.
    std::function<bool()> messageWaiting;
    // The port of the control connection; 0 while there is none.
    std::function<int()> controlPort;

    // What a handler is given: its row of the command table and the unit's parameters.
    struct Call {
        const Command& command;
        const std::vector<std::string>& params;
    };
    // A refusal of a handler: it ends the unit with this error in the queue.
    struct Refused {
        Error error;
    };
    // A handler that must wait for the run in progress to end, and then be run again.
    struct WaitForRun {};

    // The handlers of the command table (Instrument.cpp, Settings.cpp).
    using Handler = std::string (Instrument::*)(const Call&);
    std::string idn(const Call&);
    std::string rst(const Call&);
    std::string cls(const Call&);
    std::string eseSet(const Call&);
    std::string eseAsk(const Call&);
    std::string esrAsk(const Call&);
    std::string sreSet(const Call&);
    std::string sreAsk(const Call&);
    std::string stbAsk(const Call&);
    std::string opcSet(const Call&);
    std::string opcAsk(const Call&);
    std::string wai(const Call&);
    std::string tst(const Call&);
    std::string systErr(const Call&);
    std::string systErrCount(const Call&);
    std::string systVersion(const Call&);
    std::string systExit(const Call&);
    std::string systLocal(const Call&);
    std::string systRemote(const Call&);
    std::string systLockout(const Call&);
    std::string lanControl(const Call&);
    std::string operEvent(const Call&);
    std::string operCondition(const Call&);
    std::string operEnableSet(const Call&);
    std::string operEnableAsk(const Call&);
    std::string quesEvent(const Call&);
    std::string quesCondition(const Call&);
    std::string quesEnableSet(const Call&);
    std::string quesEnableAsk(const Call&);
    std::string statPreset(const Call&);
    std::string alarms(const Call&);
    std::string regWrite(const Call&);
    std::string regRead(const Call&);
    // The board's own requests and the panels (Board.cpp).
    std::string regReply(const Call&);
    std::string shadowSet(const Call&);
    std::string shadowAsk(const Call&);
    std::string rangeIndexSet(const Call&);
    std::string rangeIndexAsk(const Call&);
    std::string boardRequest(const Call&);
    std::string boardSwitch(const Call&);
    std::string boardChannel(const Call&);
    std::string adcRead(const Call&);
    std::string sensorWrite(const Call&);
    std::string sensorRead(const Call&);
    std::string panelOpen(const Call&);
    std::string panelClose(const Call&);
    std::string initSweep(const Call&);
    std::string initTime(const Call&);
    std::string abor(const Call&);
    std::string fetch(const Call&);
    std::string formatSet(const Call&);
    std::string formatAsk(const Call&);
    std::string borderSet(const Call&);
    std::string borderAsk(const Call&);
    // The panels' settings (Settings.cpp).
    std::string voltSet(const Call&);
    std::string voltAsk(const Call&);
    std::string rangeSet(const Call&);
    std::string rangeAsk(const Call&);
    std::string rangeName(const Call&);
    std::string clampSet(const Call&);
    std::string clampAsk(const Call&);
    std::string codeSet(const Call&);
    std::string codeAsk(const Call&);
    std::string vrefSet(const Call&);
    std::string vrefAsk(const Call&);
    std::string entrySet(const Call&);
    std::string entryAsk(const Call&);
    std::string stepSet(const Call&);
    std::string stepAsk(const Call&);
    std::string listSet(const Call&);
    std::string listAsk(const Call&);
    std::string valueSet(const Call&);
    std::string valueAsk(const Call&);
    std::string choiceSet(const Call&);
    std::string choiceAsk(const Call&);
    std::string checkSet(const Call&);
    std::string checkAsk(const Call&);
    std::string measVolt(const Call&);
    std::string measCurr(const Call&);
    std::string measTemp(const Call&);
    std::string nodeSet(const Call&);
    std::string nodeAsk(const Call&);

    // A whole-number parameter within its bounds, or the refusal of its kind (-1xx for no
    // number, -224 for a fraction, -222 out of bounds).
    static int64_t wholeParam(const std::string& p, int64_t low, int64_t high);

    // The panels' controls that the command table's rows work on.
    static std::vector<forms::ControlRef> panelControls();

    // The error a panel's refusal stands for: an entry's refusal is a value out of range
    // (not a number: an illegal value), in the panel's own words; any other refusal is an
    // execution error with its text.
    static Error errorOf(const forms::Box& refusal);

    // A range list's item as a quoted name that CURR:RANG takes back ("\"2.5mA\"" for
    // "±2.5mA Current Range").
    static std::string rangeNameOf(QString item);

  private:
    enum class Run { None, Sweep, Time };

    frmMain* front();
    frmMeasure* measure();
    frmDIAG* diag();
    Outcome dispatch(const Command& c, const Unit& unit);
    // An operation's outcome within a handler: its warnings queued, its refusal ending the
    // unit. report() queues both, for an operation that no unit waits on.
    void check(const forms::Outcome& outcome);
    void report(const forms::Outcome& outcome);
    // The row's control when its panel is loaded; nullptr otherwise (a query then answers
    // from the panel's start state, since loading a panel sends words).
    QWidget* shown(const Call& call);
    // Sets a list's item and runs its operation, as the operator's pick.
    void pick(QComboBox* list, int index);
    void startRun(Run run);
    void beginRun();
    void runChanged();
    QWidget* control(const Call& call);
    int itemInForce(const Call& call);
    float forceLimit(Numeric::Kind kind);
    QLineEdit* codeBox(const Call& call);
    double entryLimit(const Call& call, Numeric::Kind kind);
    // Puts the text in the box and runs its Enter operation (or `enter`); a refused entry
    // leaves the box's text as it was (the panel empties it for the operator's next try, a
    // script has none).
    void enterBox(QLineEdit* box, const std::string& text, const std::function<forms::Outcome()>& enter = {});
    // The alarm status read as STAT:ALAR? reads it: the front panel's "Check Alarm Status"
    // or "CLEAR"; a bit for each alarm present, the questionable register brought up to date.
    uint16_t readAlarms(bool clear);
    double reading(int measureItem, bool amps);
    // The full scale of each range of the front panel's and the measurement panel's lists.
    std::vector<double> frontFullScales();
    std::vector<double> sweepFullScales() const;
    // The item of a front panel list: the one it shows, or while it shows its start text,
    // the one its shadow word holds.
    int frontItem(const QComboBox* list);
    void pickRange(QWidget* list, const std::vector<double>& fullScales, const Call& call, int defaultIndex);

    qz::Session& session_;
    forms::Navigator& nav_;
    Config config_;
    ErrorQueue errors_;
    StatusModel status_;
    Format format_;
    int commandDepth_ = 0;
    Run pending_ = Run::None; // asked for by INIT, not yet begun
    bool remoteRun_ = false;  // begun by INIT, not yet ended
    bool opcArmed_ = false;   // *OPC: the bit is set when the runs in progress end
    bool notifyPosted_ = false;
};

} // namespace qz::remote
