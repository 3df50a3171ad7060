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
