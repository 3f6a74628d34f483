#include "platform/posix/DiskAccess.h"

#include "base/Paths.h"
#include <dirent.h>
#include <unistd.h>

namespace vesko {

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

} // namespace vesko
