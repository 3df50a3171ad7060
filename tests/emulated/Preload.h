#pragma once
// umockdev's preload library must be in the process from its start: a program without it
// puts itself under it and starts again.

#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace qztest {

inline void ensureUmockdevPreload(char** argv) {
    const char* preload = std::getenv("LD_PRELOAD");
    if (preload && std::strstr(preload, "libumockdev-preload")) return;
    std::string value = "libumockdev-preload.so.0";
    if (preload && *preload) value += std::string(":") + preload;
    setenv("LD_PRELOAD", value.c_str(), 1);
    execv("/proc/self/exe", argv);
    std::_Exit(127); // the preload library cannot be had
}

} // namespace qztest
