// The emulated board's tests, under umockdev's preload library, with the panels offscreen.

#include "emulated/Preload.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qz::ensureUmockdevPreload(argv);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
