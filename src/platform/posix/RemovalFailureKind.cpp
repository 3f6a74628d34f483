#include "platform/posix/RemovalFailureKind.h"

#include <cerrno>

namespace vesko {

RemovalFailureKind removalFailureKind(std::error_code code, const EntryStatus& entry,
                                      const EntryStatus& holder) {
    switch (code.value()) {
    case ENOENT:
    case ENOTDIR: return RemovalFailureKind::notFound;
    case EACCES:
    case EPERM:
        return entry.isImmutable || holder.isImmutable ? RemovalFailureKind::immutable
                                                       : RemovalFailureKind::permission;
    case EROFS: return RemovalFailureKind::readOnly;
    case EXDEV: return RemovalFailureKind::mounted;
    case EBUSY: return entry.isMountRoot ? RemovalFailureKind::mounted : RemovalFailureKind::busy;
    case ETXTBSY: return RemovalFailureKind::busy;
    case ENOTEMPTY:
    case ELOOP: return RemovalFailureKind::changed;
    default: return RemovalFailureKind::other;
    }
}

} // namespace vesko
