#pragma once
// A trace written to a file of its own, read back as lines.

#include <string>
#include <vector>

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
    std::string path_;
    size_t seen_ = 0;
};

// The lines of the trace that are vendor requests 221 OUT, as the words they carry.
std::vector<int> wordsSent(const std::vector<std::string>& lines);

} // namespace qztest
