#pragma once
// The remote control's socket: one client at a time on the panels' event thread, lines
// in, one line back for each query. A second client is told the control is in use and
// closed; a line past 64 KiB closes the connection; a client that leaves during a run
// stops it.

#include "remote/Instrument.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QTcpServer;
class QTcpSocket;

namespace qz::remote {

class Server : public QObject {
  public:
    static constexpr qsizetype kLineLimit = 64 * 1024;
    static constexpr quint16 kDefaultPort = 5025;

    explicit Server(Instrument& instrument, QObject* parent = nullptr);
    ~Server() override;

    // Listens; false with the reason in error.
    bool listen(const QHostAddress& address, quint16 port, std::string& error);
    quint16 port() const;

  private:
    void accept();
    void readLines();
    void dropClient();
    void runEnded();

    Instrument& instrument_;
    QTcpServer* server_;
    QPointer<QTcpSocket> client_;
    QByteArray input_;
    bool serving_ = false;   // readLines is on the stack
    bool waiting_ = false;   // an *OPC? waits for the run's end; later lines wait with it
    QTimer runWatch_;        // a run started at the panel ends without telling us
};

} // namespace qz::remote
