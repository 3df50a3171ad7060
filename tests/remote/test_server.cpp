// The socket itself, in process: lines in and answers out, CR LF, the second client
// refused, the 64 KiB line closing the connection, a fresh queue for the next client,
// and a client that leaves during a run stopping it.

#include "support/RunTools.h"
#include "measure/frmMeasure.h"
#include "remote/Server.h"
#include "support/ConsoleFixture.h"

#include <QTcpSocket>
#include <QTimer>

using qz::remote::Instrument;
using qz::remote::Server;

namespace {

struct Client {
    QTcpSocket socket;
    explicit Client(quint16 port) {
        socket.connectToHost(QHostAddress::LocalHost, port);
        EXPECT_TRUE(socket.waitForConnected(2000));
    }
    // The next line the server sends, without its LF; empty after two seconds.
    std::string line() {
        (void)QTest::qWaitFor([&] { return socket.canReadLine() || socket.state() != QAbstractSocket::ConnectedState; }, 2000);
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
    }
    Instrument in{*h.session, h.nav, {"1", h.session->usb.messageBox, {}}};
    Server server{in};
};

} // namespace

TEST_F(Socket, LinesAnswersTheSecondClientAndTheLongLine) {
    Client a(server.port());
    a.write("*IDN?\r\nNOPE\nSYST:ERR?\nSYST:ERR?\n");
    EXPECT_EQ(a.line(), "QZ7740,QZ7740 evaluation board,virtual board,1");
    EXPECT_EQ(a.line(), "-113,\"Undefined header\"");
    EXPECT_EQ(a.line(), "0,\"No error\"");

    Client b(server.port());
    EXPECT_EQ(b.line(), "-200,\"Remote control in use\"");
    EXPECT_TRUE(b.closed());
    a.write("REG:WRITE #H08\x01" "00\nREG:READ? 8\n");
    EXPECT_EQ(a.line(), "088000") << "the binary line sent nothing";
    a.write("SYST:ERR?\n");
    EXPECT_EQ(a.line(), "-101,\"Invalid character\"") << "the connection stays after errors";

    a.write("NOPE\n");
    a.write(QByteArray(Server::kLineLimit + 10, 'A'));
    EXPECT_TRUE(a.closed());
    Client c(server.port());
    c.write("SYST:ERR?\n");
    EXPECT_EQ(c.line(), "0,\"No error\"") << "a new client, a fresh queue";
}

TEST_F(Socket, AClientLeavingDuringARunStopsIt) {
    auto* measure = static_cast<frmMeasure*>(h.nav.load(forms::Form::frmMeasure));
    // The run's waits are the test's: the client goes at the fifth of them, in mid-run,
    // however fast or busy the machine is.
    qztest::ActingClock clock;
    measure->useClock(clock);
    bool inRunWhenLeft = false;
    Client a(server.port());
    clock.at(5, [&] {
        inRunWhenLeft = in.running();
        a.socket.abort();
    });
    // 8,526 points of 100 ms each, on the test's clock.
    a.write("SWE:RANG 3\nSWE:DEL 1\nSWE:STAR -5\nSWE:STOP 5\nSWE:STEP 1\nINIT:SWE\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return inRunWhenLeft && !in.running(); }, 60000));
    EXPECT_GT(measure->arrays.sweepCodes.size(), 1u);
    EXPECT_LT(measure->arrays.sweepCodes.size(), 8526u) << "the run was stopped";
    Client b(server.port());
    b.write("*OPC?\nSTAT:OPER?\n");
    EXPECT_EQ(b.line(), "1");
    EXPECT_EQ(b.line(), "0");
}
