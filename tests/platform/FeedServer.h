#pragma once
#include <QByteArray>
#include <QList>
#include <QObject>
#include <QSslCertificate>
#include <QTcpServer>
#include <QUrl>
#include <functional>
#include <memory>

class QTcpSocket;

namespace vesko::testing {

/// A web server of the test's own on this machine, in the test's loop. It writes down the requests and
/// answers each as the test says.
class FeedServer {
public:
    enum class Speaks { http, https };
    /// Called when a request has come; `socket` is to be written to, and may stay open.
    using Script = std::function<void(QTcpSocket& socket)>;

    explicit FeedServer(Speaks speaks);
    FeedServer(const FeedServer&) = delete;
    FeedServer& operator=(const FeedServer&) = delete;
    ~FeedServer();

    bool isListening() const { return server_ && server_->isListening(); }
    QUrl url(const QString& path = QStringLiteral("/feed.xml")) const;
    /// Its own, made when the test began; nobody trusts it by himself.
    const QSslCertificate& certificate() const { return certificate_; }

    Script script;
    QList<QByteArray> requests;

    static Script answer(const QByteArray& body, const QByteArray& status = "200 OK",
                         const QByteArray& more = {});
    static Script redirect(const QUrl& to);

private:
    void serve(QTcpSocket* socket);

    Speaks speaks_;
    std::unique_ptr<QTcpServer> server_;
    QSslCertificate certificate_;
};

} // namespace vesko::testing
