#pragma once
// The conversation with one client, without the socket: each line is a program message
// whose units run in order. The answers of a line go back as one line, joined by ';'. An
// error stops the rest of its line, whose queries still answer, with empty fields. A unit
// that waits for a run (*OPC?, *WAI, *RST during a run) holds the units behind it; lines
// keep coming meanwhile, and ABOR and *CLS among them act at once.

#include "remote/Instrument.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace qz::remote {

class Exchange {
  public:
    explicit Exchange(Instrument& instrument);
    ~Exchange();
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    // One line without its end of line.
    void addLine(std::string_view line);
    // Runs what can run now; gives the answer lines it completed, each ending in LF.
    std::string run();
    // A unit waits for the run in progress to end.
    bool waiting() const { return waiting_; }
    // The device clear: the units not yet run and the answers not yet given are dropped.
    void clear();
    // The bytes of the lines whose units have not all run yet (behind a unit that waits).
    size_t queuedBytes() const { return queuedBytes_; }

  private:
    struct Pending {
        Parsed unit;
        bool last = false; // the last unit of its line
        bool skip = false; // done already, or after an error of its line
        size_t bytes = 0;  // on a line's last unit: the line's length
    };

    Instrument& in_;
    std::deque<Pending> queue_;
    std::vector<std::string> fields_; // the answers of the line in hand
    std::string output_;
    size_t queuedBytes_ = 0;
    bool waiting_ = false;
    bool busy_ = false;
};

} // namespace qz::remote
