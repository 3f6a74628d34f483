#include "ui/DiskAccess.h"
#include "base/Paths.h"
#include "platform/qt/FileManager.h"
#include <QDesktopServices>
#include <QUrl>
#include <dirent.h>
#include <unistd.h>

namespace vesko {

#ifdef __APPLE__

bool hasFullDiskAccess() noexcept {
    // The one test that the system offers: the privacy database itself is readable with the grant alone.
    return ::access("/Library/Application Support/com.apple.TCC/TCC.db", R_OK) == 0;
}

void openDiskAccessSettings() {
    QDesktopServices::openUrl(
        QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles")));
}

#else

bool hasFullDiskAccess() noexcept {
    try {
        const FileURL home = homeFolder();
        if (::access(home.path().c_str(), W_OK | X_OK) != 0) return false;
        DIR* folder = ::opendir(home.path().c_str());
        if (!folder) return false;
        ::closedir(folder);
        return true;
    } catch (...) {
        return false;
    }
}

void openDiskAccessSettings() { FileManager::openFolder(homeFolder()); }

#endif

} // namespace vesko
