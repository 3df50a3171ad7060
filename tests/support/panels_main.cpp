// One QApplication for all panel tests, offscreen unless the caller chose a platform.

#include <QApplication>

#include <gtest/gtest.h>

namespace {
// The offscreen platform tells of every window feature it lacks; those lines are noise.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith(QLatin1String("This plugin does not support"))) return;
    qt_message_output(type, context, text);
}
} // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(quietHandler);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
