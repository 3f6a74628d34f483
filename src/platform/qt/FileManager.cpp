#include "platform/qt/FileManager.h"
#include <QByteArray>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace vesko {

namespace {

/// The bytes of the path as a file URL; what is no plain character is percent-encoded, so that a name that is
/// no UTF-8 arrives as it is.
QByteArray encoded(const FileURL& url) {
    return "file://" + QByteArray::fromStdString(url.path()).toPercentEncoding("/");
}

} // namespace

void FileManager::openFolder(const FileURL& folder) {
    QDesktopServices::openUrl(QUrl::fromEncoded(encoded(folder)));
}

void FileManager::reveal(const FileURL& url) {
    const FileURL folder = url.parent();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolder(folder);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QString::fromLatin1(encoded(url))} << QString();
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call, 5000));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        const QDBusPendingReply<> reply = *watcher;
        watcher->deleteLater();
        if (reply.isError()) openFolder(folder);
    });
}

} // namespace vesko
