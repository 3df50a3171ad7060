#include "remote/Script.h"

#include <cstdint>
#include <cstdio>

namespace qz::remote {

namespace {

// A Python string literal that reads back as exactly the bytes given: quotes, backslashes
// and control characters escaped, and anything past ASCII as its code point, so the script
// stays plain ASCII whatever a message holds.
std::string pyString(const std::string& s) {
    std::string out = "\"";
    char buf[16];
    for (size_t i = 0; i < s.size();) {
        const auto c = static_cast<unsigned char>(s[i]);
        if (c < 0x80) {
            ++i;
            switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20 || c == 0x7F) {
                    std::snprintf(buf, sizeof buf, "\\x%02x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
            }
            continue;
        }
        // A UTF-8 sequence becomes \uXXXX or \UXXXXXXXX; a byte that starts none, \xNN.
        const size_t more = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : c >= 0xC0 ? 1 : 0;
        uint32_t code = c & (0x3Fu >> more);
        bool whole = more > 0 && i + more < s.size();
        for (size_t k = 1; whole && k <= more; ++k) {
            const auto next = static_cast<unsigned char>(s[i + k]);
            whole = (next & 0xC0u) == 0x80u;
            code = (code << 6) | (next & 0x3Fu);
        }
        whole = whole && code <= 0x10FFFF;
        if (whole) {
            std::snprintf(buf, sizeof buf, code > 0xFFFF ? "\\U%08x" : "\\u%04x",
                          static_cast<unsigned>(code));
            i += more + 1;
        } else {
            std::snprintf(buf, sizeof buf, "\\x%02x", c);
            ++i;
        }
        out += buf;
    }
    return out + "\"";
}

std::string pyList(const std::vector<std::string>& items) {
    std::string out = "[";
    for (size_t i = 0; i < items.size(); ++i)
        out += (i ? ", " : "") + pyString(items[i]);
    return out + "]";
}

// A note on one comment line, whatever line ends or control characters it holds.
std::string comment(const std::string& note) {
    std::string out = "    # ";
    for (char c : note) {
        const auto u = static_cast<unsigned char>(c);
        out += u < 0x20 || u == 0x7F ? ' ' : c;
    }
    return out + "\n";
}

// Text for the docstring: no backslash or quote can end it early.
std::string docText(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    return out;
}

// The recorded steps as the body of steps(qz), a call each.
std::string stepCalls(const std::vector<Step>& steps) {
    std::string out =
        "def steps(qz):\n"
        "    \"\"\"The recorded steps in order; each reads the error queue after it.\"\"\"\n";
    for (const Step& s : steps) {
        if (!s.note.empty()) out += comment(s.note);
        switch (s.kind) {
        case Step::Kind::Write: out += "    qz.write(" + pyString(s.message) + ")\n"; break;
        case Step::Kind::Query: out += "    qz.query(" + pyString(s.message) + ")\n"; break;
        case Step::Kind::Wait: out += "    qz.wait(" + pyString(s.message) + ")\n"; break;
        case Step::Kind::Fetch: {
            // A column without a head of its own is headed by its query.
            std::vector<std::string> heads = s.columns;
            for (size_t i = heads.size(); i < s.queries.size(); ++i)
                heads.push_back(s.queries[i]);
            out += "    qz.fetch(" + pyString(s.file) + ",\n             " + pyList(heads) +
                   ",\n             " + pyList(s.queries) + ")\n";
            break;
        }
        }
    }
    return out;
}

std::string docstring(const std::vector<Step>& steps, const ScriptHeader& header,
                      const char* client) {
    return "#!/usr/bin/env python3\n"
           "\"\"\"A recording of the QZ7740 evaluation program, sent again to its remote control.\n"
           "\n"
           "Recorded " +
           docText(header.recorded) + " with the QZ7740 evaluation program " +
           (header.version.empty() ? std::string("(version unknown)") : docText(header.version)) +
           "; " + std::to_string(steps.size()) + (steps.size() == 1 ? " step" : " steps") +
           ".\n"
           "\n"
           "Start the program with its remote control, for example on the virtual board with no\n"
           "window:\n"
           "\n"
           "    qz7740 --headless --simulate --remote\n"
           "\n"
           "then run this script; it needs " +
           client +
           ":\n"
           "\n"
           "    python3 SCRIPT [RESOURCE] [--results DIR]\n"
           "\n"
           "RESOURCE is the program's VISA resource, TCPIP0::127.0.0.1::5025::SOCKET by default.\n"
           "A run's results go to CSV files in DIR (the current folder by default). After each\n"
           "step the script reads the error queue; at the first error it says which step failed\n"
           "and why, sends nothing more and ends with status 1.\n"
           "\"\"\"\n";
}

// The parts of a script, in the order it is read: the imports (each client's own), the
// steps, then the Board class whose calls they are, and main(). Both clients' Board classes
// offer the same calls, so the steps read alike in both scripts.
constexpr const char* kPyvisaImports = R"PY(
import argparse
import csv
import os
import socket
import sys

import pyvisa

RESOURCE = "TCPIP0::127.0.0.1::5025::SOCKET"
TIMEOUT_MS = 10000  # for each answer but that of a wait (*OPC?), which has no limit
)PY";

constexpr const char* kPymeasureImports = R"PY(
import argparse
import csv
import os
import sys

import pyvisa

# The program's QZ7740 class (qz7740.py) is looked for in $QZ7740_PYTHON, beside this
# script, and where the program installs it.
sys.path[:0] = [folder for folder in (os.environ.get("QZ7740_PYTHON"),
                                      os.path.dirname(os.path.abspath(__file__)),
                                      "/usr/share/qz7740/python") if folder]
try:
    from qz7740 import QZ7740, QZ7740Error
except ImportError as missing:
    print("cannot import the QZ7740 class (qz7740.py, in the program's python folder): %s\n"
          "put qz7740.py beside this script, or name its folder in QZ7740_PYTHON" % missing,
          file=sys.stderr)
    sys.exit(2)

RESOURCE = "TCPIP0::127.0.0.1::5025::SOCKET"
TIMEOUT_MS = 10000  # for each answer but that of a wait (*OPC?), which has no limit
)PY";

constexpr const char* kFailed = R"PY(

class Failed(Exception):
    """A step the program refused, or whose answer is not what the step needs."""

)PY";

constexpr const char* kPyvisaOpen = R"PY(
ERRORS = (Failed, pyvisa.errors.Error, OSError)


class Board(Steps):
    """The program's remote control through PyVISA; each step reads the error queue after it."""

    def open(self, resource):
        self.where = "opening " + resource
        self.visa = pyvisa.ResourceManager("@py").open_resource(
            resource, read_termination="\n", write_termination="\n", timeout=TIMEOUT_MS)
        try:
            # A setting and the SYST:ERR? behind it go out at once, not 40 ms apart.
            self.visa.visalib.sessions[self.visa.session].interface.setsockopt(
                socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        except (AttributeError, KeyError, OSError):
            pass
        self.begin()

    def close(self):
        if self.visa is not None:
            self.visa.close()
)PY";

constexpr const char* kPymeasureOpen = R"PY(
ERRORS = (Failed, QZ7740Error, pyvisa.errors.Error, OSError)


class Board(Steps):
    """The program's remote control through the QZ7740 class; each step reads the error
    queue after it."""

    def open(self, resource):
        self.where = "opening " + resource
        self.qz = QZ7740(resource, timeout=TIMEOUT_MS)
        self.begin()

    def close(self):
        # Not shutdown(): that switches the output off, which no step asked for.
        if self.qz is not None:
            self.qz.adapter.connection.close()
)PY";

constexpr const char* kSteps = R"PY(
class Steps:
    """What each step does, over the link a Board opens."""

    def __init__(self, results):
        self.results = results
        self.count = 0
        self.where = "the start"
        self.visa = self.qz = None

    def begin(self):
        # The script's own state: an empty error queue, and the runs' data as text.
        self._send("*CLS")
        self._send("FORM ASC")

    def write(self, message):
        self._begin(message)
        self._send(message)

    def query(self, message):
        self._begin(message)
        print("%s -> %s" % (message, self._ask(message)))

    def wait(self, message):
        # *OPC? answers once the run in progress has ended, however long that takes.
        self._begin(message)
        print("%s -> %s" % (message, self._ask(message, timeout=None)))

    def fetch(self, file, columns, queries):
        """Asks each query for a column of numbers; writes them to DIR/file as CSV."""
        self._begin("fetch to " + file)
        data = [self._numbers(query) for query in queries]
        if len({len(column) for column in data}) > 1:
            raise Failed("the columns differ in length: %s" % ", ".join(
                "%s %d" % (query, len(column)) for query, column in zip(queries, data)))
        path = os.path.join(self.results, file)
        with open(path, "w", newline="") as out:
            table = csv.writer(out, lineterminator="\n")
            table.writerow(columns)
            table.writerows(zip(*data))
        print("%d points written to %s" % (len(data[0]) if data else 0, path))

    def _begin(self, what):
        self.count += 1
        self.where = "step %d, %s" % (self.count, what)

    def _numbers(self, query):
        # The values as the program wrote them, each checked to be a number.
        self.where = "step %d, %s" % (self.count, query)
        values = [value.strip() for value in self._ask(query).split(",")]
        for value in values:
            try:
                float(value)
            except ValueError:
                raise Failed("%s answered %r, which is no number" % (query, value)) from None
        return values

    def _send(self, message):
        self._write(message)
        self._check()

    def _ask(self, message, timeout=TIMEOUT_MS):
        answer = self._query(message, timeout)
        self._check()
        if not answer:
            raise Failed("%s: no answer" % message)
        return answer
)PY";

constexpr const char* kPyvisaWire = R"PY(
    def _write(self, message):
        self.visa.write(message)

    def _query(self, message, timeout):
        self.visa.timeout = timeout
        try:
            return self.visa.query(message).strip()
        finally:
            self.visa.timeout = TIMEOUT_MS

    def _check(self):
        # A negative code is an error and stops the script; a positive one is the
        # program's warning (the setting stands), shown and passed.
        while True:
            error = self.visa.query("SYST:ERR?").strip()
            if error.startswith("0,"):
                return
            if error.startswith("-"):
                raise Failed(error)
            print("warning: " + error)
)PY";

constexpr const char* kPymeasureWire = R"PY(
    def _write(self, message):
        self.qz.write(message)

    def _query(self, message, timeout):
        # A wait's *OPC? lifts the connection's timeout for its one answer (rather than
        # polling with wait_for_completion), so the step sends the message as recorded.
        connection = self.qz.adapter.connection
        connection.timeout = timeout
        try:
            return self.qz.ask(message).strip()
        finally:
            connection.timeout = TIMEOUT_MS

    def _check(self):
        # A negative code is an error and stops the script; a positive one is the
        # program's warning (the setting stands), shown and passed.
        errors = self.qz.check_errors()
        for code, text in errors:
            if code > 0:
                print('warning: %d,"%s"' % (code, text))
        failed = [error for error in errors if error[0] < 0]
        if failed:
            raise Failed("; ".join('%d,"%s"' % error for error in failed))
)PY";

constexpr const char* kMain = R"PY(

def main():
    parser = argparse.ArgumentParser(
        description="Sends the recorded steps to the QZ7740 evaluation program's remote control.")
    parser.add_argument("resource", nargs="?", default=RESOURCE,
                        help="the program's VISA resource (default %(default)s)")
    parser.add_argument("--results", metavar="DIR", default=".",
                        help="folder for the runs' CSV files, made if missing (default: here)")
    args = parser.parse_args()
    os.makedirs(args.results, exist_ok=True)
    board = Board(args.results)
    try:
        board.open(args.resource)
        steps(board)
    except ERRORS as error:
        print("%s failed: %s" % (board.where, error), file=sys.stderr)
        return 1
    finally:
        board.close()
    print("%d steps sent to %s, no error" % (board.count, args.resource))
    return 0


if __name__ == "__main__":
    sys.exit(main())
)PY";

std::string script(const std::vector<Step>& steps, const ScriptHeader& header, const char* client,
                   const char* imports, const char* open, const char* wire) {
    return docstring(steps, header, client) + imports + "\n\n" + stepCalls(steps) + kFailed + kSteps + "\n" +
           open + wire + kMain;
}

} // namespace

std::string commandList(const std::vector<Step>& steps) {
    std::string out;
    for (const Step& s : steps) {
        if (s.kind == Step::Kind::Fetch)
            for (const std::string& q : s.queries)
                out += q + "\n";
        else
            out += s.message + "\n";
    }
    return out;
}

std::string pyvisaScript(const std::vector<Step>& steps, const ScriptHeader& header) {
    return script(steps, header, "Debian's python3-pyvisa and python3-pyvisa-py", kPyvisaImports,
                  kPyvisaOpen, kPyvisaWire);
}

std::string pymeasureScript(const std::vector<Step>& steps, const ScriptHeader& header) {
    return script(steps, header,
                  "python3-pymeasure, and the program's class\n"
                  "qz7740.py beside this script or in the folder $QZ7740_PYTHON names",
                  kPymeasureImports, kPymeasureOpen, kPymeasureWire);
}

} // namespace qz::remote
