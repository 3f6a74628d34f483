#include "core/FastDirectorySize.h"

#include "platform/posix/AllocationSum.h"
#include "platform/posix/FolderHandle.h"

namespace vesko {

std::optional<std::int64_t> allocatedFileSize(const FileURL& url, bool followLinks) {
    if (!url.path().starts_with('/')) return std::nullopt;
    AskedStatus status = statusAt(url.path());
    // A link that leads nowhere counts as itself, as `du -L` has it.
    if (status && followLinks && status->kind == EntryKind::link)
        if (AskedStatus target = targetStatusAt(url.path())) status = target;
    if (!status || status->kind == EntryKind::folder) return std::nullopt;
    return roundedUpToKiB(status->allocatedBytes);
}

} // namespace vesko
