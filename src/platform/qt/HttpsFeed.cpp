#include "platform/qt/HttpsFeed.h"

#include "concurrency/Offload.h"
#include "platform/qt/Appcast.h"
#include <QEventLoop>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTimer>
#include <utility>

namespace vesko {
namespace {

/// Asking for the system's proxies may wait for another program, as everything here may.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        return systemProxyForQuery(query);
    }
};

QNetworkRequest requestFor(const HttpsFeed::Options& options) {
    QNetworkRequest request(options.address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(5);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        request.setAttribute(attribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setRawHeader("User-Agent", options.program);
    request.setRawHeader("Accept", "application/rss+xml, application/xml, text/xml");
    // Nothing that grows when it is unpacked.
    request.setRawHeader("Accept-Encoding", "identity");
    if (!options.authorities.isEmpty()) {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.addCaCertificates(options.authorities);
        request.setSslConfiguration(tls);
    }
    return request;
}

/// The feed's bytes; blocks, at most for the time that the options allow.
std::optional<QByteArray> fetch(const HttpsFeed::Options& options, const StopToken& stop) {
    QEventLoop loop;
    QNetworkAccessManager network;
    network.setProxyFactory(new SystemProxies);
    const std::unique_ptr<QNetworkReply> reply(network.get(requestFor(options)));
    QByteArray bytes;
    bool isWhole = false;
    reply->setReadBufferSize(64 << 10);
    const auto take = [&] {
        bytes += reply->readAll();
        if (bytes.size() > options.largest) loop.quit();
    };
    QObject::connect(reply.get(), &QIODevice::readyRead, &loop, take);
    QObject::connect(reply.get(), &QNetworkReply::redirected, &loop, [&](const QUrl& to) {
        if (HttpsFeed::allows(to, options.allowsLoopback))
            Q_EMIT reply->redirectAllowed();
        else
            loop.quit();
    });
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, [&] {
        take();
        isWhole = reply->error() == QNetworkReply::NoError &&
                  reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
        loop.quit();
    });
    QTimer::singleShot(options.longest, &loop, &QEventLoop::quit);
    const StopCallback onStop(
        stop, [&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    loop.exec();
    if (!isWhole || bytes.size() > options.largest) return std::nullopt;
    return bytes;
}

} // namespace

HttpsFeed::HttpsFeed(Options options) : options_(std::move(options)) {}

bool HttpsFeed::allows(const QUrl& address, bool allowsLoopback) {
    if (!address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty()) return false;
    if (address.scheme() == QStringLiteral("https")) return true;
    return allowsLoopback && address.scheme() == QStringLiteral("http") &&
           QHostAddress(address.host()).isLoopback();
}

Task<std::optional<NewerVersion>> HttpsFeed::newest() {
    if (!allows(options_.address, options_.allowsLoopback)) co_return std::nullopt;
    const auto ask = [options = options_](const StopToken& stop) -> std::optional<NewerVersion> {
        const std::optional<QByteArray> feed = fetch(options, stop);
        return feed ? newestInAppcast(*feed) : std::nullopt;
    };
    auto asking = offload(ask);
    std::optional<NewerVersion> found = co_await asking;
    co_return found;
}

} // namespace vesko
