#pragma once
// The remote control's sockets: one client at a time on the panels' event thread, lines
// in and the answer lines out; beside it the control connection of LAN instruments, on
// which a line "DCL" clears the data connection. A second client waits a moment for the
// first to be seen gone, then is told the control is in use and closed; a line past 64 KiB
// closes the connection; a client that leaves during a run it started stops it.
//
// Whoever connects may write every register, start runs and end the program, so the
// server keeps strangers out: a peer outside the allowed subnets (loopback always being
// allowed) is closed before anything is read, a line a web browser would send closes the
// connection before it runs, and a client that leaves answers unread, or piles up input
// behind a held query, past a bound is dropped. Every such close is one line on standard
// error.

#include "remote/Exchange.h"
#include "remote/Instrument.h"

#include <QByteArray>
#include <QHostAddress>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QTcpServer;
class QTcpSocket;

namespace qz::remote {

// A network and its prefix length, as QHostAddress::isInSubnet takes it.
using Subnet = QPair<QHostAddress, int>;

// "ADDRESS" (that host alone) or "ADDRESS/PREFIX", IPv4 or IPv6; nothing for other text.
std::optional<Subnet> parseAllowed(const QString& text);
// Loopback always; any other peer inside one of the subnets. An IPv4 peer that comes
// through an IPv6 socket counts by its IPv4 address.
bool peerAllowed(const QHostAddress& peer, const std::vector<Subnet>& allowed);
// A line of an HTTP request: its request line, or a line beginning with a method word and
// " /", or a Host: or Origin: header (case-blind). A browser can be made to post text to
// this port; none of it may run.
bool looksLikeHttp(std::string_view line);

class Server : public QObject {
  public:
    static constexpr qsizetype kLineLimit = 64 * 1024;
    // Answers a client has not read, and input waiting behind a held query or a hold,
    // beyond which the client is dropped.
    static constexpr qint64 kOutputLimit = 16 * 1024 * 1024;
    static constexpr quint16 kDefaultPort = 5025;
    // How long a second client waits for the first to be seen gone before it is refused.
    static constexpr int kGraceMs = 200;
    // TCP keepalive, so that a peer that died without a word frees the slot in about 25 s.
    static constexpr int kKeepIdleS = 10, kKeepIntervalS = 5, kKeepProbes = 3;

    explicit Server(Instrument& instrument, QObject* parent = nullptr);
    ~Server() override;

    // Listens, with the control connection on the next port (or a free one when that is
    // taken); false with the reason in error.
    bool listen(const QHostAddress& address, quint16 port, std::string& error);
    quint16 port() const;
    quint16 controlPort() const;
    // The peers let in besides loopback ones.
    void setAllowed(std::vector<Subnet> allowed) { allowed_ = std::move(allowed); }
    void setOutputLimit(qint64 bytes) { outputLimit_ = bytes; }
    void setInputLimit(qint64 bytes) { inputLimit_ = bytes; }

    // The client in hand's address ("127.0.0.1"), empty when there is none.
    QString clientAddress() const;
    // Drops the client in hand as if it had left (a run it started stops); the next
    // newcomer waiting is taken.
    void disconnectClient();
    // Serves the lines kept while hold() said so, and the answers a run's end released
    // meanwhile. Call it from the event loop.
    void resume();

    // Told just before each line of the client is served, with the client's address.
    std::function<void(const QString& peer)> onCommand;
    // Told of each line served (fromClient) and of each answer sent back, for whoever
    // watches the traffic.
    std::function<void(const std::string& peer, const std::string& text, bool fromClient)> onTraffic;
    // Told when the client in hand leaves or is dropped, whatever the reason.
    std::function<void()> onClientGone;
    // While it answers true, lines received are kept unserved (not even parsed) and a
    // run's end releases no answers; reading goes on, within the input bound.
    std::function<bool()> hold;
    // Where the server says whom it closed and why: one line, "qz7740: ..." (standard
    // error unless replaced).
    std::function<void(const std::string& line)> log;

  private:
    void accept();
    bool admit(QTcpSocket* s, const char* what);
    void take(QTcpSocket* s);
    void acceptControl();
    void readLines();
    void readControl(QTcpSocket* s);
    bool send(const std::string& answers);
    void drop(const std::string& why);
    void dropClient();
    void deviceClear();
    void runChanged();
    bool held() const { return hold && hold(); }

    Instrument& instrument_;
    QTcpServer* server_;
    QTcpServer* control_;
    QPointer<QTcpSocket> client_;
    QString clientAddress_;
    std::shared_ptr<Exchange> exchange_;
    std::vector<QPointer<QTcpSocket>> waiting_; // newcomers while a client is in hand
    std::vector<Subnet> allowed_;
    QByteArray input_;
    qsizetype consumed_ = 0; // the bytes of input_ taken as lines
    bool serving_ = false;   // readLines is on the stack
    qint64 outputLimit_ = kOutputLimit;
    qint64 inputLimit_ = kOutputLimit;
};

} // namespace qz::remote
