#include "platform/qt/LoopbackAddress.h"
#include <QString>
#include <QUrl>

namespace vesko {

std::optional<LoopbackAddress> LoopbackAddress::parse(std::string_view text) {
    const QUrl url(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), QUrl::StrictMode);
    if (!url.isValid() || url.scheme() != QLatin1String("http") || url.port(80) == 0) return std::nullopt;
    if (!url.userInfo().isEmpty() || url.hasQuery() || url.hasFragment()) return std::nullopt;
    if (!url.path().isEmpty() && url.path() != QLatin1String("/")) return std::nullopt;
    LoopbackAddress address{QHostAddress(QHostAddress::LocalHost), static_cast<quint16>(url.port(80))};
    if (url.host().compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0) return address;
    if (!address.host.setAddress(url.host()) || !address.host.isLoopback()) return std::nullopt;
    // An IPv6 address that stands for an IPv4 one is no form in which anybody writes down this machine.
    const bool isOld = address.host.protocol() == QAbstractSocket::IPv4Protocol;
    if (!isOld && address.host != QHostAddress(QHostAddress::LocalHostIPv6)) return std::nullopt;
    return address;
}

} // namespace vesko
