// The program's entry: options, the board, the panels, and the remote control when asked.

#include "board/Bridges.h"
#include "console/frmMAINQZ7740.h"
#include "shell/Start.h"
#include "forms/MessageBox.h"
#include "forms/Recording.h"
#include "registers/Session.h"
#include "shell/Options.h"
#include "shell/Panels.h"
#include "shell/RecorderWindow.h"
#include "remote/Attach.h"
#include "remote/Instrument.h"
#include "remote/Recorder.h"
#include "remote/Server.h"

#include <QApplication>
#include <QTimer>

#include <csignal>
#include <iostream>

namespace {

// SIGINT and SIGTERM end a served program cleanly: the handler only notes the signal,
// and the event loop, which looks every 50 ms, quits.
volatile std::sig_atomic_t stopSignal = 0;
extern "C" void noteStop(int) { stopSignal = 1; }

// Without a window the offscreen platform tells of every window feature it lacks, and Qt
// of its runtime directory: noise for a served program, whose output scripts read.
void quietHandler(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith(QLatin1String("This plugin does not support")) ||
        text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
        return;
    qt_message_output(type, context, text);
}

int listBoards(const qz::Options& options) {
    qz::BridgeOptions bridge;
    bridge.simulate = options.simulate;
    std::string error;
    auto library = qz::makeBridge(bridge, error);
    const std::vector<std::string> lines = library ? qz::listBoards(*library) : std::vector<std::string>{};
    for (const std::string& line : lines) std::cout << line << '\n';
    if (lines.empty()) std::cerr << "qz7740: no board found\n";
    return lines.empty() ? 1 : 0;
}

} // namespace

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
    if (options.listBoards) return listBoards(options);
    // No window: the offscreen platform, whatever the display.
    if (options.headless) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(quietHandler);
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
    session.usb.boardIndex = options.board - 1;
    // Without a window nobody could close a box: its text goes to standard error instead.
    if (options.headless) {
        forms::setMessageSink([](const std::string& title, const std::string& text, qz::MsgIcon) {
            std::cerr << "qz7740: " << title << ": " << text << std::endl;
        });
    }

    forms::Navigator nav;
    qz::registerPanels(nav, session);
    std::unique_ptr<frmMAINQZ7740> console = qz::startConsole(nav, session);
    qz::BoardWatch watch(nav, session, console);

    // The recorder, and its window on the first "Record...".
    qz::remote::Recorder recorder(session, nav);
    std::unique_ptr<RecorderWindow> recorderWindow;
    forms::recording().showWindow = [&] {
        if (!recorderWindow) recorderWindow = std::make_unique<RecorderWindow>(recorder);
        recorderWindow->show();
        recorderWindow->raise();
        recorderWindow->activateWindow();
    };

    std::unique_ptr<qz::remote::Instrument> instrument;
    std::unique_ptr<qz::remote::Server> server;
    if (options.remotePort >= 0) {
        // exit, not quit: quit asks every window to close first, and a shown panel may
        // keep it from closing, which would leave the program running.
        instrument = std::make_unique<qz::remote::Instrument>(
            session, nav,
            qz::remote::Instrument::Config{QCoreApplication::applicationVersion().toStdString(),
                                           [] { QCoreApplication::exit(0); },
                                           [&] { qz::resetProgram(nav, session, console); }});
        server = std::make_unique<qz::remote::Server>(*instrument);
        // parseOptions has checked every --allow already.
        std::vector<qz::remote::Subnet> allowed;
        for (const std::string& text : options.allow)
            if (const auto subnet = qz::remote::parseAllowed(QString::fromStdString(text))) allowed.push_back(*subnet);
        server->setAllowed(std::move(allowed));
        qz::remote::attachPanels(*server);
        server->onTraffic = [&recorder](const std::string& peer, const std::string& text, bool fromClient) {
            recorder.traffic(peer, text, fromClient);
        };
        const QHostAddress address(QString::fromStdString(options.listenAddress));
        if (!server->listen(address, static_cast<quint16>(options.remotePort), error)) {
            std::cerr << "qz7740: cannot listen on " << options.listenAddress << ":" << options.remotePort
                      << ": " << error << '\n';
            return 2;
        }
        std::cout << "listening on " << options.listenAddress << ":" << server->port() << std::endl;
    }
    QTimer signalWatch;
    if (options.headless || server) {
        std::signal(SIGINT, noteStop);
        std::signal(SIGTERM, noteStop);
        QObject::connect(&signalWatch, &QTimer::timeout, [&] {
            if (!stopSignal) return;
            if (instrument) instrument->abort();
            QCoreApplication::exit(0);
        });
        signalWatch.start(50);
    }
    return app.exec();
}
