// The remote control on the virtual board through a real socket: REG:WRITE lines sent
// back to back, and a sweep started by INIT against the same sweep started at the panel.
// The client runs on a thread of its own with blocking calls; the panels' event loop
// serves it as the program does.
//
//   QT_QPA_PLATFORM=offscreen build/bench/bench_remote

#include "board/VirtualBoard.h"
#include "console/frmMAINQZ7740.h"
#include "forms/MessageBox.h"
#include "measure/frmMeasure.h"
#include "registers/Session.h"
#include "remote/Server.h"
#include "shell/Panels.h"

#include <QApplication>
#include <QLineEdit>
#include <QRadioButton>
#include <QTcpSocket>

#include <benchmark/benchmark.h>

#include <atomic>
#include <thread>

namespace {

struct Bench {
    qz::Session session{std::make_unique<qz::VirtualBoard>()};
    forms::Navigator nav;
    std::unique_ptr<frmMAINQZ7740> console;
    std::unique_ptr<qz::remote::Instrument> instrument;
    std::unique_ptr<qz::remote::Server> server;

    Bench() {
        const qz::MessageSink quiet = [](const std::string&, const std::string&, qz::MsgIcon) {};
        session.usb.messageBox = quiet;
        forms::setMessageSink(quiet);
        qz::registerPanels(nav, session);
        console = std::make_unique<frmMAINQZ7740>(session, nav);
        nav.adopt(forms::Form::frmMAINQZ7740, console.get());
        console->Form_Load();
        instrument = std::make_unique<qz::remote::Instrument>(session, nav, qz::remote::Instrument::Config{"bench", {}, {}});
        server = std::make_unique<qz::remote::Server>(*instrument);
        std::string why;
        if (!server->listen(QHostAddress::LocalHost, 0, why)) std::abort();
    }
    ~Bench() {
        server.reset();
        instrument.reset();
        for (forms::Form form : forms::kAllForms)
            if (form != forms::Form::frmMAINQZ7740) delete nav.loaded(form);
    }

    // Sends the bytes from a client thread and waits for `answers` lines back, while this
    // thread serves the event loop.
    std::string talk(const QByteArray& bytes, int answers) {
        std::atomic<bool> done{false};
        std::string last;
        const quint16 port = server->port();
        std::thread client([&] {
            QTcpSocket s;
            s.connectToHost(QHostAddress::LocalHost, port);
            s.waitForConnected(5000);
            s.write(bytes);
            s.waitForBytesWritten(-1);
            for (int n = 0; n < answers;) {
                if (!s.canReadLine() && !s.waitForReadyRead(60000)) break;
                while (s.canReadLine() && n < answers) {
                    last = s.readLine().trimmed().toStdString();
                    ++n;
                }
            }
            s.disconnectFromHost();
            done = true;
        });
        while (!done) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        client.join();
        // The server sees the client go before the next one comes.
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        return last;
    }
};

Bench& bench() {
    static Bench b;
    return b;
}

void BM_RegWriteLines(benchmark::State& state) {
    const int lines = static_cast<int>(state.range(0));
    QByteArray bytes;
    for (int i = 0; i < lines; ++i) bytes += "REG:WRITE #H08" + QByteArray::number(i & 0xFFFF, 16) + "\n";
    bytes += "REG:READ? 8\n";
    for (auto _ : state) benchmark::DoNotOptimize(bench().talk(bytes, 1));
    state.SetItemsProcessed(state.iterations() * lines);
}
BENCHMARK(BM_RegWriteLines)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

// The sweep of the measurement panel over the codes: with VREF 2.3415 V and the OFFSET at
// 0x7FFF, -6 V is code 0 and 6 V code 0xFFFE, a step of 0.2 mV is one code: 65,535
// points, the most whole-volt ends allow (the label shows start, end and step codes).
frmMeasure* sweepPanel() {
    auto* m = static_cast<frmMeasure*>(bench().nav.load(forms::Form::frmMeasure));
    m->txtVREF->setText(QStringLiteral("2.3415"));
    m->optRef[2]->setChecked(true);
    m->optRef_Click(2);
    bench().talk("SOUR:OFFS #H7FFF\n*OPC?\n", 1);
    bench().talk("SWE:RANG 2.5MA\nSWE:STAR -6\nSWE:STOP 6\nSWE:STEP 0.2MV\n*OPC?\n", 1);
    return m;
}

void BM_SweepFromPanel(benchmark::State& state) {
    frmMeasure* m = sweepPanel();
    for (auto _ : state) m->cmdPlot_Click();
    state.counters["points"] = static_cast<double>(m->arrays.sweepCodes.size());
    state.SetLabel((m->txtstart->text() + " " + m->txtend->text() + " " + m->txtstepcode->text()).toStdString());
}
BENCHMARK(BM_SweepFromPanel)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void BM_SweepFromRemote(benchmark::State& state) {
    frmMeasure* m = sweepPanel();
    for (auto _ : state) benchmark::DoNotOptimize(bench().talk("INIT:SWE\n*OPC?\n", 1));
    state.counters["points"] = static_cast<double>(m->arrays.sweepCodes.size());
    state.SetLabel((m->txtstart->text() + " " + m->txtend->text() + " " + m->txtstepcode->text()).toStdString());
}
BENCHMARK(BM_SweepFromRemote)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace
