// The sockets, in process: lines in and answer lines out, CR LF, the second client
// refused, the 64 KiB line, a fresh queue for the next client, a client leaving during a
// run, *OPC and *OPC? with an ABOR behind them, the control connection's DCL, and
// answers past the bound dropped as a query error.

#include "measure/frmMeasure.h"
#include "remote/Server.h"
#include "support/ConsoleFixture.h"
#include "support/RunTools.h"

#include <QTcpSocket>

using qz::remote::Instrument;
using qz::remote::Server;

namespace {

struct Client {
    QTcpSocket socket;
    explicit Client(quint16 port) {
        socket.connectToHost(QHostAddress::LocalHost, port);
        EXPECT_TRUE(socket.waitForConnected(2000));
    }
    // The next line the server sends, without its LF; empty after ten seconds.
    std::string line() {
        (void)QTest::qWaitFor([&] { return socket.canReadLine() || socket.state() != QAbstractSocket::ConnectedState; },
                              10000);
        return socket.readLine().trimmed().toStdString();
    }
    void write(const QByteArray& bytes) {
        socket.write(bytes);
        socket.flush();
    }
    bool closed() {
        return QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::UnconnectedState; }, 2000);
    }
};

class Socket : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        std::string why;
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0, why)) << why;
        measure = static_cast<frmMeasure*>(h.nav.load(forms::Form::frmMeasure));
        measure->useClock(clock);
    }
    // A sweep of 8,526 points of 100 ms each on the test's clock: whatever stops it is seen
    // in the points it did not take, however fast or busy the machine is.
    static constexpr const char* kLongSweep = "SWE:RANG 2.5MA;DEL 0.1;STAR -5;STOP 5;STEP 1MV\n";
    Instrument in{*h.session, h.nav, {"1", h.session->usb.messageBox, {}, {}}};
    Server server{in};
    frmMeasure* measure = nullptr;
    qztest::ActingClock clock;
};

} // namespace

TEST_F(Socket, LinesMessagesTheSecondClientAndTheLongLine) {
    Client a(server.port());
    a.write("*IDN?\r\nNOPE\nSYST:ERR?\nSYST:ERR?\n*RST;*OPC?\nSOUR:VOLT 1;:MEAS:VOLT?;:VOLT?\n");
    EXPECT_EQ(a.line(), "QZ7740,QZ7740 evaluation board,virtual board,1");
    EXPECT_EQ(a.line(), "-113,\"Undefined header\"");
    EXPECT_EQ(a.line(), "0,\"No error\"");
    EXPECT_EQ(a.line(), "1");
    const std::string reading = a.line();
    EXPECT_NEAR(std::stod(reading), 1.0, 0.01) << reading;
    EXPECT_EQ(reading.substr(reading.find(';')), ";1");

    Client b(server.port());
    EXPECT_EQ(b.line(), "-200,\"Remote control in use\"");
    EXPECT_TRUE(b.closed());
    a.write("REG:WRITE #H08\x01" "00\nREG:READ? 8\n");
    EXPECT_EQ(a.line(), "0889FE") << "the binary line sent nothing";
    a.write("SYST:ERR?\n");
    EXPECT_EQ(a.line(), "-101,\"Invalid character\"") << "the connection stays after errors";

    a.write("NOPE\n");
    a.write(QByteArray(Server::kLineLimit + 10, 'A'));
    EXPECT_TRUE(a.closed());
    Client c(server.port());
    c.write("SYST:ERR?;*ESR?\n");
    EXPECT_EQ(c.line(), "0,\"No error\";0") << "a new client, a fresh queue and registers";
}

TEST_F(Socket, AClientLeavingDuringARunStopsIt) {
    bool inRunWhenLeft = false;
    Client a(server.port());
    clock.at(5, [&] {
        inRunWhenLeft = in.running();
        a.socket.abort();
    });
    a.write(QByteArray(kLongSweep) + "INIT:SWE\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return inRunWhenLeft && !in.running(); }, 60000));
    EXPECT_GT(measure->arrays.sweepCodes.size(), 1u);
    EXPECT_LT(measure->arrays.sweepCodes.size(), 8526u) << "the run was stopped";
    Client b(server.port());
    b.write("*OPC?\nSTAT:OPER:COND?\n");
    EXPECT_EQ(b.line(), "1");
    EXPECT_EQ(b.line(), "0");
}

TEST_F(Socket, OpcWaitsForTheRunWhileAnAborBehindItActsAtOnce) {
    Client a(server.port());
    std::string esrDuring;
    clock.at(5, [&] {
        a.write("*ESR?\n");
        esrDuring = a.line();
        // Behind the waiting *OPC?: the stop acts now, the query waits its turn.
        a.write("*OPC?\n*IDN?\nABOR\n");
    });
    a.write(QByteArray(kLongSweep) + "INIT:SWE;*OPC\n");
    EXPECT_EQ(a.line(), "1");
    EXPECT_EQ(a.line(), "QZ7740,QZ7740 evaluation board,virtual board,1") << "answers in the order asked";
    EXPECT_EQ(esrDuring, "0") << "the run had not ended";
    EXPECT_LT(measure->arrays.sweepCodes.size(), 8526u) << "ABOR did not wait behind *OPC?";
    a.write("*ESR?;:STAT:OPER?;:STAT:OPER?\n");
    EXPECT_EQ(a.line(), "1;16;0") << "*OPC set its bit at the run's end; the run was latched once";
}

TEST_F(Socket, TheControlConnectionsDeviceClearDropsWhatWaitsAndStopsTheRun) {
    Client a(server.port());
    a.write("SYST:COMM:LAN:CONT?\n");
    const std::string port = a.line();
    EXPECT_EQ(port, std::to_string(server.controlPort()));
    Client control(static_cast<quint16>(std::stoi(port)));
    clock.at(5, [&] { control.write("dcl\n"); });
    a.write(QByteArray(kLongSweep) + "INIT:SWE\n*OPC?;*IDN?\n");
    EXPECT_EQ(control.line(), "DCL");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !in.running(); }, 10000));
    EXPECT_LT(measure->arrays.sweepCodes.size(), 8526u) << "the run the connection started stopped";
    a.write("STAT:OPER:COND?\n");
    EXPECT_EQ(a.line(), "0") << "no late answer of the cleared *OPC? comes first";
}

TEST_F(Socket, AnswersPastTheBoundGoAsEmptyLinesWithAQueryError) {
    Client a(server.port());
    server.setOutputLimit(20);
    a.write("*IDN?\n*ESR?\n");
    EXPECT_EQ(a.line(), "") << "the answer dropped still ends its line";
    EXPECT_EQ(a.line(), "4") << "a query error";
    server.setOutputLimit(Server::kOutputLimit);
    a.write("SYST:ERR?\n");
    EXPECT_EQ(a.line(), "-430,\"Query DEADLOCKED; answers left unread, this one dropped\"");
}
