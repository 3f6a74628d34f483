#pragma once
#include <QByteArray>
#include <QHostAddress>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// What a server was asked.
struct HeardRequest {
    QByteArray method;
    QByteArray path;
    std::map<QByteArray, QByteArray> headers; ///< names in lower case
    QByteArray body;
};

/// A server of this test's own loop on a free port of the loopback address, which answers each request as the
/// test says, be it nonsense, and keeps what it was asked.
class HostileServer {
public:
    using Answer = std::function<void(QTcpSocket& socket, const HeardRequest& request)>;

    /// Port 0: any free one.
    explicit HostileServer(Answer answer, const QHostAddress& address = QHostAddress::LocalHost,
                           quint16 port = 0)
        : answer_(std::move(answer)) {
        isListening_ = server_.listen(address, port);
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { accept(); });
    }
    HostileServer(const HostileServer&) = delete;
    HostileServer& operator=(const HostileServer&) = delete;

    /// From now on.
    void answerWith(Answer answer) { answer_ = std::move(answer); }
    bool isListening() const { return isListening_; }
    std::string address() const {
        return "http://" + server_.serverAddress().toString().toStdString() + ":" + std::to_string(port());
    }
    quint16 port() const { return server_.serverPort(); }
    int connections() const { return connections_; }
    /// How many connections the other side has closed.
    int closed() const { return closed_; }
    const std::vector<HeardRequest>& requests() const { return requests_; }
    void forget() { requests_.clear(); }
    int questions() const {
        int count = 0;
        for (const HeardRequest& request : requests_) count += request.method == "POST" ? 1 : 0;
        return count;
    }

    static void send(QTcpSocket& socket, const QByteArray& body, const QByteArray& status = "200 OK",
                     const QByteArray& type = "application/json") {
        socket.write("HTTP/1.1 " + status + "\r\nContent-Type: " + type +
                     "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }
    static void sendModels(QTcpSocket& socket) {
        send(socket, R"({"object":"list","data":[{"id":"first one"},{"id":"second one"}]})");
    }
    /// Writes the piece again and again for as long as the other side listens; gives how often by and by.
    static void sendForever(QTcpSocket& socket, const QByteArray& piece, long* count) {
        const auto more = [&socket, piece, count] {
            for (; socket.state() == QAbstractSocket::ConnectedState && socket.bytesToWrite() < (1 << 18);
                 ++*count)
                socket.write(piece);
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    }

private:
    void accept() {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            ++connections_;
            auto* heard = new QByteArray;
            QObject::connect(socket, &QObject::destroyed, [heard] { delete heard; });
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, heard] {
                *heard += socket->readAll();
                hear(*socket, *heard);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, &server_, [this, socket] {
                ++closed_;
                socket->deleteLater();
            });
        }
    }

    void hear(QTcpSocket& socket, QByteArray& heard) {
        const qsizetype head = heard.indexOf("\r\n\r\n");
        if (head < 0) return;
        HeardRequest request;
        const QList<QByteArray> lines = heard.left(head).split('\n');
        const QList<QByteArray> first = lines[0].split(' ');
        request.method = first.value(0);
        request.path = first.value(1);
        for (const QByteArray& line : lines.mid(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers[line.left(colon).trimmed().toLower()] = line.mid(colon + 1).trimmed();
        }
        const qsizetype length = request.headers["content-length"].toLongLong();
        if (heard.size() < head + 4 + length) return;
        request.body = heard.mid(head + 4, length);
        heard.remove(0, head + 4 + length);
        requests_.push_back(request);
        answer_(socket, request);
    }

    Answer answer_;
    QTcpServer server_;
    bool isListening_ = false;
    int connections_ = 0;
    int closed_ = 0;
    std::vector<HeardRequest> requests_;
};

} // namespace vesko::testing
