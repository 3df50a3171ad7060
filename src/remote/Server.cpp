#include "remote/Server.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace qz::remote {

Server::Server(Instrument& instrument, QObject* parent)
    : QObject(parent), instrument_(instrument), server_(new QTcpServer(this)) {
    connect(server_, &QTcpServer::newConnection, this, [this] { accept(); });
    instrument_.onRunEnd = [this] { runEnded(); };
    runWatch_.setInterval(10);
    connect(&runWatch_, &QTimer::timeout, this, [this] { runEnded(); });
}

Server::~Server() {
    instrument_.onRunEnd = nullptr;
    if (client_) client_->abort();
}

bool Server::listen(const QHostAddress& address, quint16 port, std::string& error) {
    if (server_->listen(address, port)) return true;
    error = server_->errorString().toStdString();
    return false;
}

quint16 Server::port() const { return server_->serverPort(); }

void Server::accept() {
    while (QTcpSocket* s = server_->nextPendingConnection()) {
        if (client_) {
            s->write("-200,\"Remote control in use\"\n");
            s->disconnectFromHost();
            connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
            continue;
        }
        client_ = s;
        s->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        input_.clear();
        waiting_ = false;
        instrument_.newClient();
        connect(s, &QTcpSocket::readyRead, this, [this] { readLines(); });
        connect(s, &QTcpSocket::disconnected, this, [this, s] {
            if (client_ == s) dropClient();
            s->deleteLater();
        });
    }
}

void Server::dropClient() {
    // Whatever the client left in progress ends with it.
    instrument_.clientLeft();
    client_ = nullptr;
    input_.clear();
    waiting_ = false;
    runWatch_.stop();
}

void Server::readLines() {
    // A handler may serve events (a run passes them once per point): lines that come
    // meanwhile wait in the buffer for the loop below, never nested inside a handler.
    if (serving_ || !client_) return;
    serving_ = true;
    input_.append(client_->readAll());
    QByteArray out;
    qsizetype start = 0;
    while (client_ && !waiting_) {
        const qsizetype end = input_.indexOf('\n', start);
        if (end < 0) break;
        qsizetype stop = end;
        if (stop > start && input_[stop - 1] == '\r') --stop;
        const Instrument::Reply r = instrument_.execute(
            std::string_view(input_.constData() + start, static_cast<size_t>(stop - start)));
        start = end + 1;
        if (r.kind == Instrument::Reply::Kind::Line) {
            out.append(r.text.data(), static_cast<qsizetype>(r.text.size()));
            out.append('\n');
        } else if (r.kind == Instrument::Reply::Kind::AfterRun) {
            waiting_ = true;
            runWatch_.start();
        }
        // The answers go out as they come when the next line waits on the socket anyway.
        if (!out.isEmpty() && input_.indexOf('\n', start) < 0) {
            client_->write(out);
            out.clear();
        }
    }
    if (client_ && !out.isEmpty()) client_->write(out);
    input_.remove(0, start);
    if (client_ && input_.size() > kLineLimit && input_.indexOf('\n') < 0) {
        // A line this long is no command: the connection goes, and the run with it.
        QTcpSocket* s = client_;
        dropClient();
        s->abort();
    }
    serving_ = false;
    // Bytes that came while the loop ran are served now.
    if (client_ && !waiting_ && client_->bytesAvailable() > 0) readLines();
}

void Server::runEnded() {
    if (!waiting_ || instrument_.running()) return;
    waiting_ = false;
    runWatch_.stop();
    if (client_) client_->write("1\n");
    // When the run ends inside readLines (an INIT run serving events), its loop goes on.
    if (!serving_ && client_) readLines();
}

} // namespace qz::remote
