#pragma once
// The remote control's sockets: one client at a time on the panels' event thread, lines
// in and the answer lines out; beside it the control connection of LAN instruments, on
// which a line "DCL" clears the data connection. A second client waits a moment for the
// first to be seen gone, then is told the control is in use and closed; a line past 64 KiB closes the connection; a client that leaves
// during a run it started stops it; answers that pile up unread past a bound are dropped.

#include "remote/Exchange.h"
#include "remote/Instrument.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>

#include <memory>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace qz::remote {

class Server : public QObject {
  public:
    static constexpr qsizetype kLineLimit = 64 * 1024;
    // Answers a client has not read, beyond which new ones are dropped (-430).
    static constexpr qint64 kOutputLimit = 16 * 1024 * 1024;
    static constexpr quint16 kDefaultPort = 5025;
    // How long a second client waits for the first to be seen gone before it is refused.
    static constexpr int kGraceMs = 200;

    explicit Server(Instrument& instrument, QObject* parent = nullptr);
    ~Server() override;

    // Listens, with the control connection on the next port (or a free one when that is
    // taken); false with the reason in error.
    bool listen(const QHostAddress& address, quint16 port, std::string& error);
    quint16 port() const;
    quint16 controlPort() const;
    void setOutputLimit(qint64 bytes) { outputLimit_ = bytes; }

  private:
    void accept();
    void take(QTcpSocket* s);
    void acceptControl();
    void readLines();
    void readControl(QTcpSocket* s);
    void send(const std::string& answers);
    void dropClient();
    void deviceClear();
    void runChanged();

    Instrument& instrument_;
    QTcpServer* server_;
    QTcpServer* control_;
    QPointer<QTcpSocket> client_;
    std::shared_ptr<Exchange> exchange_;
    std::vector<QPointer<QTcpSocket>> waiting_; // newcomers while a client is in hand
    QByteArray input_;
    qsizetype consumed_ = 0; // the bytes of input_ taken as lines
    bool serving_ = false;   // readLines is on the stack
    qint64 outputLimit_ = kOutputLimit;
};

} // namespace qz::remote
