#include "core/WalkedSize.h"

#include "base/FileSystem.h"
#include "concurrency/Cancelled.h"
#include "core/DiskUsage.h"
#include "core/FastDirectorySize.h"
#include <variant>

namespace vesko {

std::int64_t walkedSize(const FileURL& url) {
    if (!isReadable(url)) return 0;
    const VisibleAllocation walked = visibleAllocatedSize(url);
    if (std::holds_alternative<WalkCancelled>(walked)) throw Cancelled{};
    const std::int64_t* bytes = std::get_if<std::int64_t>(&walked);
    if (!bytes) return 0;
    if (*bytes >= 1 || !isDirectory(url).value_or(false)) return *bytes;
    return duSize(url, true);
}

} // namespace vesko
