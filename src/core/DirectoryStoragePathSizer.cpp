#include "core/DirectoryStoragePathSizer.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskUsage.h"
#include "core/FastDirectorySize.h"

namespace vesko {

std::int64_t DirectoryStoragePathSizer::allocatedBytes(const FileURL& url) const {
    if (!fileExists(url)) return 0;
    if (const std::optional<std::int64_t> quick = fastDirectorySize(url, false)) return *quick;
    // A walk that was cut short must not be done again by a program that nobody can stop.
    return currentTaskIsCancelled() ? 0 : duSize(url, false);
}

} // namespace vesko
