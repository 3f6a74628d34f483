#include "core/FastDirectorySize.h"

#include "platform/posix/AllocationSum.h"
#include "platform/posix/FolderHandle.h"

namespace vesko {

std::optional<std::int64_t> allocatedFileSize(const FileURL& url, bool followLinks) {
    if (!url.path().starts_with('/')) return std::nullopt;
    const AskedStatus status = followLinks ? targetStatusAt(url.path()) : statusAt(url.path());
    if (!status || status->kind == EntryKind::folder) return std::nullopt;
    return roundedUpToKiB(status->allocatedBytes);
}

} // namespace vesko
