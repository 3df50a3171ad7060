#include "remote/Server.h"

#include "remote/Scpi.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <cctype>
#include <iostream>

#if defined(__unix__) || defined(__APPLE__)
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

namespace qz::remote {

namespace {

// An IPv4 peer reached through an IPv6 socket shows as ::ffff:a.b.c.d: it is a.b.c.d.
QHostAddress plain(const QHostAddress& a) {
    bool ok = false;
    const quint32 v4 = a.toIPv4Address(&ok);
    return ok ? QHostAddress(v4) : a;
}

std::string peerText(const QTcpSocket* s) { return plain(s->peerAddress()).toString().toStdString(); }

// A line quoted in the log: its head, with nothing that could break the log's line.
std::string quoted(std::string_view line) {
    std::string q(line.substr(0, 60));
    for (char& c : q)
        if (!std::isprint(static_cast<unsigned char>(c))) c = '?';
    return "\"" + q + (line.size() > 60 ? "...\"" : "\"");
}

// A peer that died without a word (its cable pulled, its machine off) would hold the one
// client's place for hours with the system's keepalive timings: these find it in seconds.
// Elsewhere than on these systems the socket keeps the system's timings.
void keepAlive(QTcpSocket* s) {
    s->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
#if (defined(__unix__) || defined(__APPLE__)) && defined(TCP_KEEPIDLE) && defined(TCP_KEEPINTVL) && defined(TCP_KEEPCNT)
    const int fd = static_cast<int>(s->socketDescriptor());
    for (const auto& [option, value] : {std::pair{TCP_KEEPIDLE, Server::kKeepIdleS},
                                        std::pair{TCP_KEEPINTVL, Server::kKeepIntervalS},
                                        std::pair{TCP_KEEPCNT, Server::kKeepProbes}})
        setsockopt(fd, IPPROTO_TCP, option, &value, sizeof value);
#endif
}

} // namespace

std::optional<Subnet> parseAllowed(const QString& text) {
    const qsizetype slash = text.indexOf(QLatin1Char('/'));
    const QString host = slash < 0 ? text : text.left(slash);
    QHostAddress address;
    if (!address.setAddress(host)) return std::nullopt;
    const bool v4 = address.protocol() == QAbstractSocket::IPv4Protocol;
    // Four parts: "192.168.1" would otherwise be taken as 192.168.0.1.
    if (v4 && host.count(QLatin1Char('.')) != 3) return std::nullopt;
    int length = v4 ? 32 : 128;
    if (slash >= 0) {
        const QString prefix = text.mid(slash + 1);
        const bool digits = !prefix.isEmpty() && prefix.size() <= 3 &&
                            std::all_of(prefix.begin(), prefix.end(), [](QChar c) { return c.isDigit(); });
        if (!digits || prefix.toInt() > length) return std::nullopt;
        length = prefix.toInt();
    }
    // Peers are matched by their IPv4 address when they have one: so are these.
    bool mapped = false;
    const quint32 v4Address = v4 ? 0 : address.toIPv4Address(&mapped);
    if (mapped && length >= 96) return parseAllowed(QHostAddress(v4Address).toString() + "/" + QString::number(length - 96));
    // The network itself, whatever host bits the text gave.
    const Subnet subnet = QHostAddress::parseSubnet(address.toString() + "/" + QString::number(length));
    if (subnet.second < 0) return std::nullopt;
    return subnet;
}

bool peerAllowed(const QHostAddress& peer, const std::vector<Subnet>& allowed) {
    const QHostAddress p = plain(peer);
    if (p.isLoopback()) return true;
    return std::any_of(allowed.begin(), allowed.end(), [&](const Subnet& s) { return p.isInSubnet(s); });
}

bool looksLikeHttp(std::string_view line) {
    const auto startsWith = [&](std::string_view word) {
        return line.size() >= word.size() && equalNoCase(line.substr(0, word.size()), word);
    };
    if (startsWith("Host:") || startsWith("Origin:")) return true;
    for (const std::string_view method : {"GET", "POST", "PUT", "HEAD", "OPTIONS", "DELETE", "PATCH", "CONNECT", "TRACE"})
        if (startsWith(method) && line.substr(method.size(), 2) == " /") return true;
    // METHOD TARGET HTTP/x.y, whatever the method and the target.
    const size_t first = line.find(' '), last = line.rfind(' ');
    if (first == 0 || first == std::string_view::npos || last == first) return false;
    if (!std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(first),
                     [](char c) { return std::isalpha(static_cast<unsigned char>(c)); }))
        return false;
    const std::string_view version = line.substr(last + 1);
    const auto digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    return version.size() == 8 && equalNoCase(version.substr(0, 5), "HTTP/") && digit(version[5]) &&
           version[6] == '.' && digit(version[7]);
}

Server::Server(Instrument& instrument, QObject* parent)
    : QObject(parent), instrument_(instrument), server_(new QTcpServer(this)), control_(new QTcpServer(this)) {
    log = [](const std::string& line) { std::cerr << line << std::endl; };
    connect(server_, &QTcpServer::newConnection, this, [this] { accept(); });
    connect(control_, &QTcpServer::newConnection, this, [this] { acceptControl(); });
    instrument_.onRunChange = [this] { runChanged(); };
    instrument_.controlPort = [this] { return static_cast<int>(controlPort()); };
}

Server::~Server() {
    instrument_.onRunChange = nullptr;
    instrument_.controlPort = nullptr;
    // Whoever set the hooks may be gone already.
    onCommand = nullptr;
    onClientGone = nullptr;
    onTraffic = nullptr;
    hold = nullptr;
    exchange_.reset();
    if (client_) client_->abort();
}

bool Server::listen(const QHostAddress& address, quint16 port, std::string& error) {
    if (!server_->listen(address, port)) {
        error = server_->errorString().toStdString();
        return false;
    }
    const quint16 next = server_->serverPort() < 65535 ? static_cast<quint16>(server_->serverPort() + 1) : 0;
    if (!(port != 0 && control_->listen(address, next)) && !control_->listen(address, 0)) {
        error = "control connection: " + control_->errorString().toStdString();
        server_->close();
        return false;
    }
    return true;
}

quint16 Server::port() const { return server_->serverPort(); }
quint16 Server::controlPort() const { return control_->isListening() ? control_->serverPort() : 0; }

QString Server::clientAddress() const { return client_ ? clientAddress_ : QString(); }

bool Server::admit(QTcpSocket* s, const char* what) {
    if (peerAllowed(s->peerAddress(), allowed_)) {
        keepAlive(s);
        return true;
    }
    // Closed before a byte of it is read.
    log("qz7740: refused a " + std::string(what) + " connection from " + peerText(s) +
        ": the address is in no subnet --allow names");
    s->abort();
    s->deleteLater();
    return false;
}

void Server::accept() {
    while (QTcpSocket* s = server_->nextPendingConnection()) {
        if (!admit(s, "remote")) continue;
        // The client in hand may be one that has just closed, whose end the event loop has
        // yet to see: a look at its socket now finds the end that is there already.
        if (client_) client_->waitForReadyRead(0);
        if (!client_) {
            take(s);
            continue;
        }
        // Otherwise the newcomer waits a moment, and is told the control is in use when
        // the client in hand is there still.
        waiting_.push_back(s);
        QTimer::singleShot(kGraceMs, this, [this, p = QPointer<QTcpSocket>(s)] {
            if (client_) client_->waitForReadyRead(0);
            const auto it = std::find(waiting_.begin(), waiting_.end(), p);
            if (it == waiting_.end()) return;
            waiting_.erase(it);
            if (!p) return;
            p->write("-200,\"Remote control in use\"\n");
            p->disconnectFromHost();
            connect(p, &QTcpSocket::disconnected, p, &QObject::deleteLater);
        });
    }
}

void Server::take(QTcpSocket* s) {
    client_ = s;
    clientAddress_ = QString::fromStdString(peerText(s));
    s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    input_.clear();
    consumed_ = 0;
    exchange_ = std::make_shared<Exchange>(instrument_);
    instrument_.newClient();
    connect(s, &QTcpSocket::readyRead, this, [this] { readLines(); });
    connect(s, &QTcpSocket::disconnected, this, [this, s] {
        if (client_ == s) dropClient();
        s->deleteLater();
    });
    // What it sent while it waited is served now.
    if (s->bytesAvailable() > 0) QTimer::singleShot(0, this, [this] { readLines(); });
}

void Server::acceptControl() {
    while (QTcpSocket* s = control_->nextPendingConnection()) {
        if (!admit(s, "control")) continue;
        s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(s, &QTcpSocket::readyRead, this, [this, s] { readControl(s); });
        connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
    }
}

void Server::readControl(QTcpSocket* s) {
    while (s->canReadLine()) {
        const QByteArray line = s->readLine().trimmed();
        if (looksLikeHttp(std::string_view(line.constData(), static_cast<size_t>(line.size())))) {
            log("qz7740: closed the control connection from " + peerText(s) + ": it sent a line of an HTTP request, " +
                quoted(std::string_view(line.constData(), static_cast<size_t>(line.size()))));
            s->abort();
            return;
        }
        if (line.toUpper() == "DCL") {
            deviceClear();
            s->write("DCL\n");
        }
    }
    // The control connection carries short lines only.
    if (s->bytesAvailable() > kLineLimit) s->abort();
}

void Server::deviceClear() {
    input_.clear();
    consumed_ = 0;
    if (client_) client_->readAll();
    if (exchange_) exchange_->clear();
    // A run the client started stops; the operator's goes on.
    instrument_.clientLeft();
}

void Server::dropClient() {
    // Whatever the client left in progress ends with it.
    instrument_.clientLeft();
    client_ = nullptr;
    clientAddress_.clear();
    exchange_.reset();
    input_.clear();
    consumed_ = 0;
    if (onClientGone) onClientGone();
    while (!waiting_.empty()) {
        const QPointer<QTcpSocket> next = waiting_.front();
        waiting_.erase(waiting_.begin());
        if (next && next->state() == QAbstractSocket::ConnectedState) {
            take(next);
            break;
        }
    }
}

void Server::drop(const std::string& why) {
    QTcpSocket* s = client_;
    if (!s) return;
    log("qz7740: dropped the client " + clientAddress_.toStdString() + ": " + why);
    dropClient();
    s->abort();
}

void Server::disconnectClient() {
    QTcpSocket* s = client_;
    if (!s) return;
    dropClient();
    s->abort();
}

bool Server::send(const std::string& answers) {
    if (!client_) return false;
    if (onTraffic) onTraffic(clientAddress_.toStdString(), answers, false);
    client_->write(answers.data(), static_cast<qint64>(answers.size()));
    // What the system takes at once leaves the bound to what the client has not read.
    if (client_->bytesToWrite() > std::min<qint64>(outputLimit_, 1024 * 1024)) client_->flush();
    if (client_->bytesToWrite() <= outputLimit_) return true;
    // A client that asks and never reads would have its answers pile up here for ever.
    drop("more than " + std::to_string(outputLimit_) + " bytes of answers were left unread");
    return false;
}

void Server::readLines() {
    if (!client_ || !exchange_) return;
    // The exchange lives on while it runs here, even if the client goes meanwhile.
    const std::shared_ptr<Exchange> exchange = exchange_;
    input_.append(client_->readAll());
    const bool outer = !serving_;
    serving_ = true;
    // A handler that serves events may bring this back in: the inner call takes the
    // lines that came, the outer one goes on after them. While held, lines stay in input_.
    while (client_ && exchange_ == exchange && !held()) {
        const qsizetype end = input_.indexOf('\n', consumed_);
        if (end < 0) break;
        qsizetype stop = end;
        if (stop > consumed_ && input_[stop - 1] == '\r') --stop;
        const std::string line(input_.constData() + consumed_, static_cast<size_t>(stop - consumed_));
        // A web page can make a browser post to this port: its request ends the
        // connection before any of its lines runs.
        if (looksLikeHttp(line)) {
            drop("it sent a line of an HTTP request, " + quoted(line));
            break;
        }
        if (onCommand) onCommand(QString(clientAddress_)); // a copy: the hook may drop the client
        if (!client_ || exchange_ != exchange || held()) break;
        consumed_ = end + 1;
        if (onTraffic) onTraffic(clientAddress_.toStdString(), line, true);
        exchange->addLine(line);
        const std::string out = exchange->run();
        if (exchange_ == exchange && !out.empty() && !send(out)) break;
    }
    if (client_) client_->flush();
    if (!outer) return;
    serving_ = false;
    input_.remove(0, consumed_);
    consumed_ = 0;
    if (!client_ || exchange_ != exchange) return;
    if (input_.size() - (input_.lastIndexOf('\n') + 1) > kLineLimit) {
        // A line this long is no command: the connection goes, and the run with it.
        drop("a line was longer than " + std::to_string(kLineLimit) + " bytes");
    } else if (input_.size() + static_cast<qint64>(exchange->queuedBytes()) > inputLimit_) {
        drop("more than " + std::to_string(inputLimit_) + " bytes of input waited to be served");
    }
}

void Server::runChanged() {
    // While held, the answers a run's end releases wait for resume().
    if (held()) return;
    const std::shared_ptr<Exchange> exchange = exchange_;
    if (!exchange || !exchange->waiting()) return;
    const std::string out = exchange->run();
    if (exchange_ != exchange) return;
    if (!out.empty() && !send(out)) return;
    if (client_) client_->flush();
}

void Server::resume() {
    if (!client_ || held()) return;
    // The units that waited for a run come before the lines kept behind them.
    runChanged();
    readLines();
}

} // namespace qz::remote
