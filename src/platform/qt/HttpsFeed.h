#pragma once
#include "background/VersionSource.h"
#include <QSslCertificate>
#include <QUrl>
#include <chrono>

namespace vesko {

/// A feed (see Appcast.h) behind an https address. It is asked with nothing but this program's name: no
/// cookies, no credentials, no other page. Proxies are the system's. Redirects lead to https alone. What is
/// larger than `largest`, takes longer than `longest` in all, or is not answered with status 200 counts as
/// not there. The waiting is done on a worker.
class HttpsFeed final : public VersionSource {
public:
    struct Options {
        QUrl address;
        QByteArray program; ///< the name and version that the server is told
        qint64 largest = 1 << 20;
        std::chrono::milliseconds longest{15'000};
        bool allowsLoopback = false;        ///< http from this very machine, for tests
        QList<QSslCertificate> authorities; ///< trusted besides the system's, for tests
    };

    explicit HttpsFeed(Options options);

    Task<std::optional<NewerVersion>> newest() override;

    /// Whether an address may be asked at all.
    static bool allows(const QUrl& address, bool allowsLoopback);

private:
    Options options_;
};

} // namespace vesko
