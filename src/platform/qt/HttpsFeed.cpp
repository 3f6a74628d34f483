#include "platform/qt/HttpsFeed.h"

#include "concurrency/Offload.h"
#include "platform/qt/Appcast.h"
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHostAddress>
#include <QHostInfo>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTimer>
#include <utility>

namespace vesko {
namespace {

constexpr int mostRedirects = 5;
constexpr std::chrono::milliseconds betweenLooks(50);

/// Asking for the system's proxies may wait for another program, as everything here may.
class SystemProxies final : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        return systemProxyForQuery(query);
    }
};

QNetworkRequest requestFor(const QUrl& address, const HttpsFeed::Options& options) {
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
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

struct Answered {
    int status = 0; ///< 0: nothing that is whole
    QByteArray bytes;
    QUrl elsewhere; ///< where a redirect leads
};

/// What stands at one address; blocks until then at most.
Answered ask(QNetworkAccessManager& network, const QUrl& address, const HttpsFeed::Options& options,
             const QDeadlineTimer& until, const StopToken& stop) {
    QEventLoop loop;
    const std::unique_ptr<QNetworkReply> reply(network.get(requestFor(address, options)));
    Answered answer;
    reply->setReadBufferSize(64 << 10);
    const auto take = [&] {
        answer.bytes += reply->readAll();
        if (answer.bytes.size() > options.largest) loop.quit();
    };
    QObject::connect(reply.get(), &QIODevice::readyRead, &loop, take);
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, [&] {
        take();
        if (reply->error() == QNetworkReply::NoError)
            answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        answer.elsewhere =
            address.resolved(reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
        loop.quit();
    });
    QTimer::singleShot(static_cast<int>(until.remainingTime()), &loop, &QEventLoop::quit);
    // Looked at now and then: an event that another thread posts hides real races among false ones.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        if (stop.stopRequested()) loop.quit();
    });
    watch.start(betweenLooks);
    loop.exec();
    // A lookup can't be called off, and at its end the process would wait for it, for as long as the system's
    // resolver does. Waiting for the same answer here, this worker is one that the program's end leaves
    // behind.
    if (stop.stopRequested() && !reply->isFinished() && QHostAddress(address.host()).isNull())
        QHostInfo::fromName(address.host());
    if (answer.bytes.size() > options.largest) answer.status = 0;
    return answer;
}

/// The feed's bytes, wherever redirects lead; blocks, at most for the time that the options allow.
std::optional<QByteArray> fetch(const HttpsFeed::Options& options, const StopToken& stop) {
    QNetworkAccessManager network;
    network.setProxyFactory(new SystemProxies);
    const QDeadlineTimer until(options.longest);
    QUrl address = options.address;
    for (int redirects = 0; redirects <= mostRedirects && !stop.stopRequested(); ++redirects) {
        if (!HttpsFeed::allows(address, options.allowsLoopback)) break;
        const Answered answer = ask(network, address, options, until, stop);
        if (answer.status == 200) return answer.bytes;
        if (answer.status < 301 || answer.status > 308) break;
        address = answer.elsewhere;
    }
    return std::nullopt;
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
    const auto look = [options = options_](const StopToken& stop) -> std::optional<NewerVersion> {
        const std::optional<QByteArray> feed = fetch(options, stop);
        return feed ? newestInAppcast(*feed) : std::nullopt;
    };
    auto asking = offload(look);
    std::optional<NewerVersion> found = co_await asking;
    co_return found;
}

} // namespace vesko
