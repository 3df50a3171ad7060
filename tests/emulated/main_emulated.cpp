// The emulated board's tests, under umockdev's preload library.

#include "emulated/Preload.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qztest::ensureUmockdevPreload(argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
