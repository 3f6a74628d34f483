#include "platform/posix/FolderHandle.h"

#include "platform/posix/WalkCounts.h"
#include <cerrno>
#include <fcntl.h>
#include <linux/openat2.h>
#include <linux/stat.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/// openat2(2) keeps a lookup inside its folder and its mount; statx(2) tells a mount's root, which the device
/// number does not: a bind mount of the same file system has the same one.
namespace vesko {

namespace {

std::error_code lastError() noexcept { return {errno, std::system_category()}; }

constexpr std::uint64_t folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr std::uint64_t strictly = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS;

OpenedFolder openStrictly(int folder, const char* path, std::uint64_t flags, std::uint64_t resolve) noexcept {
    open_how how{};
    how.flags = flags;
    how.resolve = resolve;
    // A rename anywhere on the system may make a strict lookup ask to be tried again.
    for (int attempt = 0;; ++attempt) {
        const long descriptor = ::syscall(SYS_openat2, folder, path, &how, sizeof how);
        if (descriptor >= 0) {
            ++callsOfThisThread.foldersOpened;
            return FolderHandle(static_cast<int>(descriptor));
        }
        if ((errno == EAGAIN && attempt < 64) || errno == EINTR) continue;
        return std::unexpected(lastError());
    }
}

EntryKind kindOf(unsigned mode) noexcept {
    if (S_ISDIR(mode)) return EntryKind::folder;
    if (S_ISREG(mode)) return EntryKind::file;
    if (S_ISLNK(mode)) return EntryKind::link;
    return EntryKind::other;
}

bool mayReadUnseen(unsigned owner) noexcept {
    static const unsigned self = ::geteuid();
    return self == 0 || owner == self;
}

AskedStatus ask(int folder, const char* name, int flags) noexcept {
    constexpr unsigned wanted =
        STATX_TYPE | STATX_BLOCKS | STATX_NLINK | STATX_INO | STATX_UID | STATX_BTIME | STATX_MNT_ID;
    struct statx raw;
    if (::statx(folder, name, flags | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, wanted, &raw) != 0)
        return std::unexpected(lastError());
    ++callsOfThisThread.statusCalls;
    EntryStatus status;
    status.identity.device = (static_cast<std::uint64_t>(raw.stx_dev_major) << 32) | raw.stx_dev_minor;
    status.identity.inode = raw.stx_ino;
    if (raw.stx_mask & STATX_BTIME)
        status.identity.birth = raw.stx_btime.tv_sec * 1'000'000'000 + raw.stx_btime.tv_nsec;
    status.mount = raw.stx_mnt_id;
    status.allocatedBytes = static_cast<std::int64_t>(raw.stx_blocks) * 512;
    status.links = raw.stx_nlink;
    status.kind = kindOf(raw.stx_mode);
    status.isMountRoot = (raw.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    status.isImmutable = (raw.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
    status.isOwned = mayReadUnseen(raw.stx_uid);
    return status;
}

} // namespace

OpenedFolder openFolderIn(const FolderHandle& parent, const std::string& name, AccessDate date) {
    constexpr std::uint64_t inside = strictly | RESOLVE_NO_XDEV;
    if (date == AccessDate::keep) {
        OpenedFolder unseen =
            openStrictly(parent.descriptor(), name.c_str(), folderFlags | O_NOATIME, inside);
        if (unseen || unseen.error() != std::errc::operation_not_permitted) return unseen;
    }
    return openStrictly(parent.descriptor(), name.c_str(), folderFlags, inside);
}

OpenedFolder openPieceBelow(const FolderHandle& root, const std::string& piece, Mounts mounts) {
    const std::uint64_t resolve = mounts == Mounts::refuse ? strictly | RESOLVE_NO_XDEV : strictly;
    OpenedFolder unseen = openStrictly(root.descriptor(), piece.c_str(), folderFlags | O_NOATIME, resolve);
    if (unseen || unseen.error() != std::errc::operation_not_permitted) return unseen;
    return openStrictly(root.descriptor(), piece.c_str(), folderFlags, resolve);
}

/// Asked for after opening, since open(2) refuses the flag outright where it may not be set.
void keepAccessDate(const FolderHandle& folder) noexcept {
    const int flags = ::fcntl(folder.descriptor(), F_GETFL);
    if (flags >= 0) ::fcntl(folder.descriptor(), F_SETFL, flags | O_NOATIME);
}

AskedStatus entryStatus(const FolderHandle& folder, const char* name) noexcept {
    return ask(folder.descriptor(), name, AT_SYMLINK_NOFOLLOW);
}

AskedStatus targetStatus(const FolderHandle& folder, const char* name) noexcept {
    return ask(folder.descriptor(), name, 0);
}

AskedStatus statusAt(const std::string& path) noexcept {
    return ask(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

AskedStatus targetStatusAt(const std::string& path) noexcept { return ask(AT_FDCWD, path.c_str(), 0); }

AskedStatus folderStatus(const FolderHandle& folder) noexcept {
    return ask(folder.descriptor(), "", AT_EMPTY_PATH);
}

} // namespace vesko
