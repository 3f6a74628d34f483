#include "platform/qt/DiskAccessSettings.h"

#include <QDesktopServices>
#include <QUrl>

namespace vesko {

void openDiskAccessSettings() {
    QDesktopServices::openUrl(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles")));
}

} // namespace vesko
