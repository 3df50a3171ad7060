#pragma once
// umockdev's preload library must be in the process from its start: a program without it
// puts itself under it and starts again. Under the address sanitizer, whose runtime then
// no longer comes first among the libraries, the sanitizer is told not to mind: the two
// share the process, each wrapping calls of its own.

#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

namespace qz {

inline void ensureUmockdevPreload(char** argv) {
    const char* preload = std::getenv("LD_PRELOAD");
    if (preload && std::strstr(preload, "libumockdev-preload")) return;
    std::string value = "libumockdev-preload.so.0";
    if (preload && *preload) value += std::string(":") + preload;
    setenv("LD_PRELOAD", value.c_str(), 1);
    std::string asan = "verify_asan_link_order=0";
    if (const char* options = std::getenv("ASAN_OPTIONS"); options && *options) asan += std::string(":") + options;
    setenv("ASAN_OPTIONS", asan.c_str(), 1);
    execv("/proc/self/exe", argv);
    std::_Exit(127); // the preload library cannot be had
}

} // namespace qz
