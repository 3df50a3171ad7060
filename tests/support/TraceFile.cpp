#include "support/TraceFile.h"

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace qztest {

TraceFile::TraceFile() {
    static std::atomic<int> n{0};
    path_ = (std::filesystem::temp_directory_path() /
             ("qz7740-trace-" + std::to_string(::getpid()) + "-" + std::to_string(n++) + ".log"))
                .string();
    std::remove(path_.c_str());
}

TraceFile::~TraceFile() { std::remove(path_.c_str()); }

std::vector<std::string> TraceFile::lines() const {
    std::vector<std::string> out;
    std::ifstream in(path_);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

std::vector<std::string> TraceFile::fresh() {
    std::vector<std::string> all = lines();
    std::vector<std::string> out(all.begin() + static_cast<long>(std::min(seen_, all.size())), all.end());
    seen_ = all.size();
    return out;
}

std::vector<int> wordsSent(const std::vector<std::string>& lines) {
    std::vector<int> words;
    for (const std::string& l : lines) {
        unsigned value = 0, index = 0;
        char dir[4] = {};
        if (std::sscanf(l.c_str(), "VR 221 %4x %4x %3s", &value, &index, dir) == 3 &&
            std::string(dir) == "OUT")
            words.push_back(static_cast<int>(index << 16 | value));
    }
    return words;
}

} // namespace qztest
