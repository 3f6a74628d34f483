#include "core/FastDirectorySize.h"

#include "concurrency/CurrentTask.h"
#include "platform/posix/TreeUsage.h"

namespace vesko {

std::optional<std::int64_t> fastDirectorySize(const FileURL& url, bool followLinks) {
    const std::optional<std::int64_t> bytes = treeUsage(url, followLinks, currentStopToken());
    if (!bytes || *bytes <= quickFigureFloor) return std::nullopt;
    return bytes;
}

} // namespace vesko
