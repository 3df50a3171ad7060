#include "remote/Server.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

namespace qz::remote {

Server::Server(Instrument& instrument, QObject* parent)
    : QObject(parent), instrument_(instrument), server_(new QTcpServer(this)), control_(new QTcpServer(this)) {
    connect(server_, &QTcpServer::newConnection, this, [this] { accept(); });
    connect(control_, &QTcpServer::newConnection, this, [this] { acceptControl(); });
    instrument_.onRunChange = [this] { runChanged(); };
    instrument_.controlPort = [this] { return static_cast<int>(controlPort()); };
}

Server::~Server() {
    instrument_.onRunChange = nullptr;
    instrument_.controlPort = nullptr;
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

void Server::accept() {
    while (QTcpSocket* s = server_->nextPendingConnection()) {
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
        s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        connect(s, &QTcpSocket::readyRead, this, [this, s] { readControl(s); });
        connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
    }
}

void Server::readControl(QTcpSocket* s) {
    while (s->canReadLine()) {
        const QByteArray line = s->readLine().trimmed().toUpper();
        if (line == "DCL") {
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
    exchange_.reset();
    input_.clear();
    consumed_ = 0;
    while (!waiting_.empty()) {
        const QPointer<QTcpSocket> next = waiting_.front();
        waiting_.erase(waiting_.begin());
        if (next && next->state() == QAbstractSocket::ConnectedState) {
            take(next);
            break;
        }
    }
}

void Server::send(const std::string& answers) {
    if (!client_ || answers.empty()) return;
    // A client that asks and never reads would have its answers pile up here for ever:
    // past the bound each answer line goes as an empty line, so that the count of lines
    // still matches the count of messages that asked.
    size_t start = 0;
    while (start < answers.size()) {
        const size_t end = answers.find('\n', start);
        const size_t next = end == std::string::npos ? answers.size() : end + 1;
        if (client_->bytesToWrite() + static_cast<qint64>(next - start) > outputLimit_) {
            instrument_.raise({err::kQueryDeadlocked, "Query DEADLOCKED; answers left unread, this one dropped"});
            client_->write("\n", 1);
        } else {
            client_->write(answers.data() + start, static_cast<qint64>(next - start));
        }
        start = next;
    }
    // What the system takes at once leaves the bound to what the client has not read.
    if (client_->bytesToWrite() > 1024 * 1024) client_->flush();
}

void Server::readLines() {
    if (!client_ || !exchange_) return;
    // The exchange lives on while it runs here, even if the client goes meanwhile.
    const std::shared_ptr<Exchange> exchange = exchange_;
    input_.append(client_->readAll());
    const bool outer = !serving_;
    serving_ = true;
    // A handler that serves events may bring this back in: the inner call takes the
    // lines that came, the outer one goes on after them.
    while (client_ && exchange_ == exchange) {
        const qsizetype end = input_.indexOf('\n', consumed_);
        if (end < 0) break;
        qsizetype stop = end;
        if (stop > consumed_ && input_[stop - 1] == '\r') --stop;
        const std::string line(input_.constData() + consumed_, static_cast<size_t>(stop - consumed_));
        consumed_ = end + 1;
        exchange->addLine(line);
        const std::string out = exchange->run();
        if (exchange_ == exchange) send(out);
    }
    if (client_) client_->flush();
    if (!outer) return;
    serving_ = false;
    input_.remove(0, consumed_);
    consumed_ = 0;
    if (client_ && input_.size() > kLineLimit && input_.indexOf('\n') < 0) {
        // A line this long is no command: the connection goes, and the run with it.
        QTcpSocket* s = client_;
        dropClient();
        s->abort();
    }
}

void Server::runChanged() {
    const std::shared_ptr<Exchange> exchange = exchange_;
    if (!exchange || !exchange->waiting()) return;
    const std::string out = exchange->run();
    if (exchange_ != exchange) return;
    send(out);
    if (client_) client_->flush();
}

} // namespace qz::remote
