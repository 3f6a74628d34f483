#include "platform/FeedServer.h"
#include <QFile>
#include <QProcess>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

namespace vesko::testing {
namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A key and a certificate for this machine's address, signed by itself.
bool makeCertificate(QSslConfiguration& tls, QSslCertificate& certificate) {
    const QTemporaryDir folder;
    const QString key = folder.filePath(QStringLiteral("key.pem"));
    const QString file = folder.filePath(QStringLiteral("certificate.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                   QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                   QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                   QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                   QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=IP:127.0.0.1"), QStringLiteral("-keyout"), key,
                   QStringLiteral("-out"), file});
    openssl.waitForFinished(20'000);
    const bool made = openssl.exitStatus() == QProcess::NormalExit && openssl.exitCode() == 0;
    if (!made) return false;
    certificate = QSslCertificate(contents(file));
    tls.setLocalCertificate(certificate);
    tls.setPrivateKey(QSslKey(contents(key), QSsl::Ec));
    return !certificate.isNull();
}

} // namespace

FeedServer::FeedServer(Speaks speaks) : speaks_(speaks) {
    if (speaks == Speaks::https) {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        if (!makeCertificate(tls, certificate_)) return;
        auto server = std::make_unique<QSslServer>();
        server->setSslConfiguration(tls);
        server_ = std::move(server);
    } else {
        server_ = std::make_unique<QTcpServer>();
    }
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(), [this] {
        while (QTcpSocket* socket = server_->nextPendingConnection()) serve(socket);
    });
    server_->listen(QHostAddress::LocalHost);
}

FeedServer::~FeedServer() = default;

QUrl FeedServer::url(const QString& path) const {
    QUrl url;
    url.setScheme(speaks_ == Speaks::https ? QStringLiteral("https") : QStringLiteral("http"));
    url.setHost(QStringLiteral("127.0.0.1"));
    url.setPort(server_->serverPort());
    url.setPath(path);
    return url;
}

void FeedServer::serve(QTcpSocket* socket) {
    const auto read = [this, socket, request = QByteArray()]() mutable {
        request += socket->readAll();
        if (!request.contains("\r\n\r\n")) return;
        requests << std::exchange(request, {});
        if (script) script(*socket);
    };
    QObject::connect(socket, &QIODevice::readyRead, socket, read);
    QObject::connect(socket, &QAbstractSocket::disconnected, socket, &QObject::deleteLater);
}

FeedServer::Script FeedServer::answer(const QByteArray& body, const QByteArray& status,
                                      const QByteArray& more) {
    return [=](QTcpSocket& socket) {
        socket.write("HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                     "\r\n" + more + "\r\n" + body);
    };
}

FeedServer::Script FeedServer::redirect(const QUrl& to) {
    return answer({}, "302 Found", "Location: " + to.toEncoded() + "\r\n");
}

} // namespace vesko::testing
