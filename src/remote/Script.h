#pragma once
// A recorded session as text: the plain command list, and Python scripts that send it
// again to the program's remote control and stop at the first error.

#include <string>
#include <vector>

namespace qz::remote {

// One step of a recording.
struct Step {
    enum class Kind {
        Write, // a program message that answers nothing: "SOUR:VOLT 2.5"
        Query, // a query whose answer is shown: "STAT:ALAR?"
        Wait,  // "*OPC?": waits, without a time limit, for the run in progress to end
        Fetch, // the results of the run that has just ended, to a file
    };
    Kind kind = Kind::Write;
    std::string message;              // Write, Query, Wait: the line as it is sent
    std::vector<std::string> queries; // Fetch: a query per column ("FETC:SWE:FORC?", "FETC:SWE?")
    std::vector<std::string> columns; // Fetch: the columns' heads ("forced_V", "reading")
    std::string file;                 // Fetch: the file's name ("sweep-1.csv")
    std::string note;                 // what the operator did ("frmMain txtV"), as a comment
};

// What a script says of where it comes from.
struct ScriptHeader {
    std::string recorded; // when: "2026-11-24 23:40"
    std::string version;  // the program's version
};

// The messages, a line each, as a client sends them (a Fetch gives its queries).
std::string commandList(const std::vector<Step>& steps);
// A script for Debian's PyVISA with its pure-Python backend; the resource is its
// argument.
std::string pyvisaScript(const std::vector<Step>& steps, const ScriptHeader& header);
// The same through the program's pymeasure class (python/qz7740.py).
std::string pymeasureScript(const std::vector<Step>& steps, const ScriptHeader& header);

} // namespace qz::remote
