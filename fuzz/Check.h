#pragma once
// What the fuzz targets share: a check that stops the run with its reason, so that a
// broken promise is a finding like a crash.

#include <cstdio>
#include <cstdlib>

#define FUZZ_CHECK(condition)                                                              \
    do {                                                                                   \
        if (!(condition)) {                                                                \
            std::fprintf(stderr, "broken: %s (%s:%d)\n", #condition, __FILE__, __LINE__); \
            std::abort();                                                                  \
        }                                                                                  \
    } while (0)
