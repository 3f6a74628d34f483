#include "core/DirectoryStoragePathSizer.h"

#include "base/FileSystem.h"
#include "core/DiskUsage.h"
#include "core/FastDirectorySize.h"

namespace vesko {

std::int64_t DirectoryStoragePathSizer::allocatedBytes(const FileURL& url) const {
    if (!fileExists(url)) return 0;
    if (const std::optional<std::int64_t> quick = fastDirectorySize(url, false)) return *quick;
    return duSize(url, false);
}

} // namespace vesko
