#include "support/TraceFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <fstream>

namespace qztest {

TraceFile::TraceFile()
    : dir_(std::make_unique<QTemporaryDir>()),
      path_(QFile::encodeName(dir_->filePath(QStringLiteral("trace.log"))).toStdString()) {}

TraceFile::~TraceFile() = default;

std::vector<std::string> TraceFile::lines() const {
    std::vector<std::string> out;
    std::ifstream in(path_);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

std::vector<std::string> TraceFile::fresh() {
    std::vector<std::string> all = lines();
    const auto from = static_cast<std::ptrdiff_t>(std::min(seen_, all.size()));
    std::vector<std::string> out(all.begin() + from, all.end());
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
