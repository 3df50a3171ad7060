#pragma once
// The recorder: while it records, each thing the operator does on the panels becomes the
// remote commands that do the same (the task command where the command table has one
// for the control, else the board requests the action made, as REG:WRITE and its
// kin), so that the recording, sent to a fresh program, puts the same requests on the
// wire in the same order. It shows a connected client's traffic beside them.

#include "remote/Script.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace forms {
class Navigator;
}
namespace qz {
class Session;
}

namespace qz::remote {

class Recorder {
public:
    Recorder(qz::Session& session, forms::Navigator& nav);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    void start();
    void stop();
    bool recording() const;
    // Forgets the steps recorded so far.
    void clear();
    const std::vector<Step>& steps() const;

    // Told of each step as it is recorded, and when the recording starts or stops.
    std::function<void(const Step&)> onStep;
    std::function<void(bool recording)> onState;

    // A remote client's line (fromClient) or the answer sent back; shown, not recorded.
    void traffic(const std::string& peer, const std::string& line, bool fromClient);
    std::function<void(const std::string& peer, const std::string& line, bool fromClient)> onTraffic;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace qz::remote
