#pragma once
// The remote control's one command table: the dispatch reads it, the README's command
// table and the Python class's list of commands are printed from it.

#include "forms/Forms.h"
#include "remote/Instrument.h"
#include "remote/Scpi.h"

#include <span>
#include <string>

namespace qz::remote {

// What a form touches of the board, for a run in progress: a form that writes is refused
// then (-221), a form that only reads or touches nothing is served.
enum class Access { None, Reads, Writes };

// How the recorder writes an operator's action on the row's control as this command:
// the parameter it takes from the control as the action left it.
enum class Rec {
    None,
    Number,     // the box's number as it stands
    Millivolts, // the box's number, in millivolts
    Hex,        // the box's hexadecimal code
    RangeUnit,  // the box's number in the unit of the present current range, in amperes
    Range,      // the list's range: its full scale, or its name where two share one
    Index,      // the list's item, or the member of an option array
    Value,      // the number of the list's item
    Word,       // the word of the list's item
    State,      // the check box's state
    Reference,  // the VREF option: 5, 2.5, or the number of the Other box
    Press,      // a button: the command alone
    Run,        // a run's button: the command, *OPC?, and its results fetched (the row's words)
};

struct Command {
    const char* header; // "[SOURce#:]VOLTage[:LEVel]": [] optional, # takes the suffix 1
    Instrument::Handler set = nullptr;
    Instrument::Handler ask = nullptr;
    int setMin = 0, setMax = 0; // parameters of the command form
    int askMin = 0, askMax = 0; // of the query form (MIN, MAX, or an address)
    Access setAccess = Access::None;
    Access askAccess = Access::None;
    // What the row works on: a panel's control, the unit of its number, whether MIN, MAX
    // and DEF stand for its limits, the values of a list's items or the words that name
    // them, and a number of the handler's own (which bank, which clamp, which data).
    forms::Form form = forms::Form::frmMain;
    const char* control = nullptr;
    bool array = false; // the control is an array (optDIAGA(k)): its member 0 stands for it
    SiUnit unit = SiUnit::None;
    bool limits = false;
    std::span<const double> values = {};
    std::span<const char* const> words = {};
    int arg = 0;
    bool atOnce = false; // takes effect at once while earlier units wait (ABOR, *CLS)
    Rec record = Rec::None;
    const char* alias = nullptr; // a second control of the panel that does the same
    bool shared = false;         // the control of that name on every panel follows the others
    bool read = false;           // other operations of the panel read the box as it stands
    bool reads = false;          // the operation reads such boxes of its panel as they stand
    // For the README and the Python class.
    const char* param = "";   // the parameter as the README shows it
    const char* answer = "";  // what the query answers
    const char* what = "";
    const char* example = "";
    const char* python = "";  // the Python class's attribute that sends it
};

std::span<const Command> commandTable();

// The row whose header matches the unit's nodes and which has the unit's form (command
// or query); nullptr with the error (-113 or -114) otherwise.
const Command* findCommand(const Unit& unit, Error& error);

// The table as the README shows it (Markdown), and as the Python class lists it.
std::string markdownTable();
std::string pythonTable();

} // namespace qz::remote
