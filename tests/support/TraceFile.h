#pragma once
// A trace written to a file of its own in a temporary directory, read back as lines.

#include <memory>
#include <string>
#include <vector>

class QTemporaryDir;

namespace qztest {

class TraceFile {
public:
    TraceFile();
    ~TraceFile();
    const std::string& path() const { return path_; }
    std::vector<std::string> lines() const;
    // The lines written since the last call of fresh().
    std::vector<std::string> fresh();

private:
    std::unique_ptr<QTemporaryDir> dir_;  // removed with the file when the trace goes
    std::string path_;
    size_t seen_ = 0;
};

// The lines of the trace that are vendor requests 221 OUT, as the words they carry.
std::vector<int> wordsSent(const std::vector<std::string>& lines);

} // namespace qztest
