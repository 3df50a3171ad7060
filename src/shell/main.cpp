// The program's entry: options, the board, the panels.

#include "board/Bridges.h"
#include "console/frmMAINQZ7740.h"
#include "forms/MessageBox.h"
#include "registers/Session.h"
#include "shell/Options.h"
#include "shell/Panels.h"

#include <QApplication>

#include <iostream>

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    const qz::Options options = qz::parseOptions(args);
    if (!options.error.empty()) {
        std::cerr << "qz7740: " << options.error << "\n\n" << qz::usageText();
        return 2;
    }
    if (options.help) {
        std::cout << qz::usageText();
        return 0;
    }
    if (const std::string why = qz::displayProblem(); !why.empty()) {
        std::cerr << why;
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("QZ7740"));
    QApplication::setApplicationVersion(
        QStringLiteral("%1.%2.%3").arg(QZ_VERSION_MAJOR).arg(QZ_VERSION_MINOR).arg(QZ_VERSION_PATCH));
    // The desktop entry the installed program goes with, for its icon in the task bar.
    QGuiApplication::setDesktopFileName(QStringLiteral("qz7740"));

    qz::BridgeOptions bridge;
    bridge.simulate = options.simulate;
    bridge.tracePath = options.tracePath;
    std::string error;
    auto library = qz::makeBridge(bridge, error);
    if (!library) {
        std::cerr << "qz7740: " << error << '\n';
        return 2;
    }

    qz::Session session(std::move(library));
    session.usb.applicationDirectory = QCoreApplication::applicationDirPath().toStdString();
    session.usb.messageBox = forms::message;

    forms::Navigator nav;
    qz::registerPanels(nav, session);
    frmMAINQZ7740 console(session, nav);
    nav.adopt(forms::Form::frmMAINQZ7740, &console);
    console.Form_Load();
    return app.exec();
}
