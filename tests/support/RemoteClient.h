#pragma once
// A client of the remote control over a real socket, for tests on the panels' event loop.

#include <QHostAddress>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

#include <string>

namespace qztest {

struct RemoteClient {
    QTcpSocket socket;
    explicit RemoteClient(quint16 port, const QHostAddress& host = QHostAddress::LocalHost) {
        socket.connectToHost(host, port);
        EXPECT_TRUE(socket.waitForConnected(2000));
    }
    // The next line the server sends, without its LF; empty after ten seconds.
    std::string line() {
        (void)QTest::qWaitFor(
            [&] { return socket.canReadLine() || socket.state() != QAbstractSocket::ConnectedState; }, 10000);
        return socket.readLine().trimmed().toStdString();
    }
    void write(const QByteArray& bytes) {
        socket.write(bytes);
        socket.flush();
    }
    std::string ask(const QByteArray& line) {
        write(line + "\n");
        return this->line();
    }
    bool closed() {
        return QTest::qWaitFor([&] { return socket.state() == QAbstractSocket::UnconnectedState; }, 2000);
    }
};

} // namespace qztest
