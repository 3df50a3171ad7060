// The sockets, in process: lines in and answer lines out, CR LF, the second client
// refused, the 64 KiB line, a fresh queue for the next client, a client leaving during a
// run, *OPC and *OPC? with an ABOR behind them, the control connection's DCL; what keeps
// strangers out (subnets, HTTP, bounds, keepalive); the hooks of remote and local.

#include "measure/frmMeasure.h"
#include "remote/Server.h"
#include "support/ConsoleFixture.h"
#include "support/RemoteClient.h"
#include "support/RunTools.h"

#include <QNetworkInterface>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

using qz::remote::Instrument;
using qz::remote::Server;
using qz::remote::Subnet;

namespace {

using Client = qztest::RemoteClient;

class Socket : public qztest::ConsoleFixture {
  protected:
    void SetUp() override {
        ConsoleFixture::SetUp();
        std::string why;
        ASSERT_TRUE(server.listen(QHostAddress::LocalHost, 0, why)) << why;
        measure = static_cast<frmMeasure*>(h.nav.load(forms::Form::frmMeasure));
        measure->useClock(clock);
        server.log = [this](const std::string& line) { logged = line; };
    }
    // A sweep of 8,526 points of 100 ms each on the test's clock: whatever stops it is seen
    // in the points it did not take, however fast or busy the machine is.
    static constexpr const char* kLongSweep = "SWE:RANG 2.5MA;DEL 0.1;STAR -5;STOP 5;STEP 1MV\n";
    Instrument in{*h.session, h.nav, {"1", {}, {}}};
    Server server{in};
    frmMeasure* measure = nullptr;
    qztest::ActingClock clock;
    std::string logged; // the last line the server logged
    static constexpr const char* kIdn = "QZ7740,QZ7740 evaluation board,virtual board,1";
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

TEST(Peers, AllowedSubnetsAndTheLinesOfAnHttpRequest) {
    const auto subnet = [](const char* text) { return qz::remote::parseAllowed(QString::fromLatin1(text)); };
    const std::vector<Subnet> allowed{subnet("192.168.1.77/24").value(), subnet("10.0.0.7").value(),
                                      subnet("fd00::/64").value(), subnet("::ffff:172.16.0.0/108").value()};
    const auto allows = [&](const char* peer) {
        return qz::remote::peerAllowed(QHostAddress(QString::fromLatin1(peer)), allowed);
    };
    for (const char* in : {"192.168.1.254", "10.0.0.7", "::ffff:10.0.0.7", "fd00::2", "172.16.9.9", "127.5.6.7", "::1"})
        EXPECT_TRUE(allows(in)) << in;
    for (const char* out : {"192.168.2.1", "10.0.0.8", "::ffff:10.0.0.8", "fd01::2", "172.32.0.1", "fe80::1"})
        EXPECT_FALSE(allows(out)) << out;
    for (const char* bad :
         {"", "lab-pc", "192.168.1", "10.0.0.1/", "10.0.0.1/33", "10.0.0.1/+8", "10.0.0.1/255.0.0.0", "fd00::/129"})
        EXPECT_FALSE(subnet(bad)) << bad;
    for (const char* line : {"GET / HTTP/1.1", "get /", "OPTIONS /x", "PRI * HTTP/2.0", "host:x", "ORIGIN: http://a"})
        EXPECT_TRUE(qz::remote::looksLikeHttp(line)) << line;
    for (const char* line : {"*IDN?", "GET", "GETS /", "POST 1", "HOSTNAME?", "MEAS:VOLT? HTTP/1.1", "A B HTTP/1.x"})
        EXPECT_FALSE(qz::remote::looksLikeHttp(line)) << line;
}

TEST_F(Socket, StrangersAndWebPagesAreShutOutBeforeAnythingRuns) {
    Client a(server.port());
    a.write("REG:WRITE #H0889FE\nGET / HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\nREG:WRITE #H0A0000\n");
    EXPECT_TRUE(a.closed());
    EXPECT_EQ(sent(), std::vector<int>{0x0889FE}) << "the line before the request ran, none after it";
    EXPECT_EQ(logged, "qz7740: dropped the client 127.0.0.1: it sent a line of an HTTP request, \"GET / HTTP/1.1\"");
    // What a web page can make a browser send: the body's lines never run.
    Client b(server.port());
    b.write("POST /scpi HTTP/1.1\r\nContent-Length: 20\r\n\r\nREG:WRITE #H0889FE\r\n");
    EXPECT_TRUE(b.closed() && sent().empty()) << "the body did not run";

    // A peer that is not loopback: this machine's own address on a network, if it has one.
    QHostAddress local;
    for (const QHostAddress& address : QNetworkInterface::allAddresses())
        if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback()) local = address;
    if (local.isNull()) GTEST_SKIP() << "no address but loopback here";
    Server open(in);
    open.log = server.log;
    std::string why;
    ASSERT_TRUE(open.listen(QHostAddress::AnyIPv4, 0, why)) << why;
    Client stranger(open.port(), local), control(open.controlPort(), local);
    stranger.write("REG:WRITE #H0889FE\n");
    EXPECT_TRUE(stranger.closed() && control.closed() && sent().empty());
    EXPECT_EQ(logged, "qz7740: refused a control connection from " + local.toString().toStdString() +
                          ": the address is in no subnet --allow names");
    open.setAllowed({qz::remote::parseAllowed(local.toString() + "/24").value()});
    Client known(open.port(), local);
    known.write("*IDN?\n");
    EXPECT_EQ(known.line(), kIdn);
}

TEST_F(Socket, AClientThatDoesNotReadOrPilesUpInputIsDroppedAtTheBound) {
    int served = 0;
    server.onCommand = [&](const QString&) { ++served; };
    server.setOutputLimit(64 * 1024);
    Client a(server.port());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !server.clientAddress().isEmpty(); }, 10000));
    // It never reads: the system's buffers fill, then the server's, up to the bound.
    a.socket.setReadBufferSize(1024);
    for (int i = 0; i < 100 && !server.clientAddress().isEmpty(); ++i) {
        a.write(QByteArray("*IDN?;").repeated(10000) + "*IDN?\n");
        ASSERT_TRUE(QTest::qWaitFor([&] { return served > i || server.clientAddress().isEmpty(); }, 60000));
    }
    EXPECT_EQ(logged, "qz7740: dropped the client 127.0.0.1: more than 65536 bytes of answers were left unread");
    // One that reads keeps its place, however much it is answered and sends in all...
    server.setInputLimit(4096);
    Client b(server.port());
    for (int round = 0; round < 50; ++round) {
        b.write(QByteArray("*IDN?\n").repeated(40));
        for (int k = 0; k < 40; ++k) ASSERT_EQ(b.line(), kIdn) << round;
    }
    // ...but not with input past the bound waiting behind a held query.
    b.write(QByteArray(kLongSweep) + "INIT:SWE;*OPC?\n" + QByteArray("*IDN?\n").repeated(1000));
    EXPECT_TRUE(b.closed());
    EXPECT_EQ(logged, "qz7740: dropped the client 127.0.0.1: more than 4096 bytes of input waited to be served");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !in.running(); }, 60000));
}

TEST_F(Socket, KeepaliveOnTheClientsAndTheControlSockets) {
    Client a(server.port()), control(server.controlPort());
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.findChildren<QTcpSocket*>().size() == 2; }, 10000));
    for (QTcpSocket* s : server.findChildren<QTcpSocket*>())
        for (const auto& [level, name, value] : {std::tuple{SOL_SOCKET, SO_KEEPALIVE, 1},
                                                 {IPPROTO_TCP, TCP_KEEPIDLE, Server::kKeepIdleS},
                                                 {IPPROTO_TCP, TCP_KEEPINTVL, Server::kKeepIntervalS},
                                                 {IPPROTO_TCP, TCP_KEEPCNT, Server::kKeepProbes}}) {
            int got = -1;
            socklen_t size = sizeof got;
            EXPECT_EQ(getsockopt(static_cast<int>(s->socketDescriptor()), level, name, &got, &size), 0);
            EXPECT_EQ(got, value) << s->localPort() << " option " << name;
        }
}

TEST_F(Socket, HoldResumeAndTheClientsComingAndGoing) {
    std::vector<QString> peers;
    int gone = 0, askedWhileHeld = 0;
    bool held = true;
    server.onCommand = [&](const QString& peer) { peers.push_back(peer); };
    server.onClientGone = [&] { ++gone; };
    server.hold = [&] { return held && ++askedWhileHeld; };
    const auto resume = [&] { held = false, QTimer::singleShot(0, &server, [&] { server.resume(); }); };
    Client a(server.port());
    a.write("SOUR:VOLT 1\n*IDN?\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return askedWhileHeld > 0; }, 10000));
    EXPECT_TRUE(sent().empty() && peers.empty()) << "kept, not served";
    resume();
    EXPECT_EQ(a.line(), kIdn);
    EXPECT_FALSE(sent().empty()) << "the kept lines ran on resume";
    EXPECT_EQ(peers, (std::vector<QString>{"127.0.0.1", "127.0.0.1"}));
    // The run's end while held releases the waiting answer only on resume.
    askedWhileHeld = 0;
    clock.at(5, [&] { held = true, in.abort(); });
    a.write(QByteArray(kLongSweep) + "INIT:SWE;*OPC?\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !in.running() && askedWhileHeld > 0; }, 60000));
    EXPECT_FALSE(a.socket.waitForReadyRead(50)) << "an answer came while held";
    resume();
    EXPECT_EQ(a.line(), "1");

    // Dropped from the panels: the newcomer waiting is taken at once.
    for (QTcpServer* listener : server.findChildren<QTcpServer*>())
        if (listener->serverPort() == server.port())
            QObject::connect(listener, &QTcpServer::newConnection, &server, [&] { server.disconnectClient(); });
    Client b(server.port());
    EXPECT_TRUE(a.closed());
    b.write("*IDN?\n");
    EXPECT_EQ(b.line(), kIdn) << "not told the control is in use";
    // Kept lines count against the input bound.
    server.setInputLimit(1000);
    held = true;
    b.write(QByteArray("*IDN?\n").repeated(200));
    EXPECT_TRUE(b.closed());
    EXPECT_EQ(gone, 2);
    EXPECT_TRUE(server.clientAddress().isEmpty());
}
