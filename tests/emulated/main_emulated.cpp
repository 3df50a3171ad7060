// The emulated board's tests need umockdev's preload library in the process from its
// start: without it the program puts itself under it and starts again.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

int main(int argc, char** argv) {
    const char* preload = std::getenv("LD_PRELOAD");
    if (!preload || !std::strstr(preload, "libumockdev-preload")) {
        std::string value = "libumockdev-preload.so.0";
        if (preload && *preload) value += std::string(":") + preload;
        setenv("LD_PRELOAD", value.c_str(), 1);
        execv("/proc/self/exe", argv);
        return 127; // the preload library cannot be had
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
