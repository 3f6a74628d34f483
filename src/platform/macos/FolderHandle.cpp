#include "platform/posix/FolderHandle.h"

#include "platform/posix/WalkCounts.h"
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// macOS has no call that keeps a lookup inside a folder, so a path is taken one name at a time, each opened
/// relative to the one before and never through a link. A mount shows in the device number: there are no bind
/// mounts.
namespace vesko {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::error_code lastError() noexcept { return {errno, std::system_category()}; }

EntryKind kindOf(mode_t mode) noexcept {
    if (S_ISDIR(mode)) return EntryKind::folder;
    if (S_ISREG(mode)) return EntryKind::file;
    if (S_ISLNK(mode)) return EntryKind::link;
    return EntryKind::other;
}

EntryStatus statusOf(const struct stat& raw) noexcept {
    EntryStatus status;
    status.identity.device = static_cast<std::uint64_t>(raw.st_dev);
    status.identity.inode = raw.st_ino;
    // As in the records of a whole folder: an absurd date may wrap around.
    const timespec birth = raw.st_birthtimespec;
    status.identity.birth = static_cast<std::int64_t>(
        static_cast<std::uint64_t>(birth.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(birth.tv_nsec));
    status.mount = status.identity.device;
    status.allocatedBytes = static_cast<std::int64_t>(raw.st_blocks) * 512;
    status.links = static_cast<std::uint32_t>(raw.st_nlink);
    status.kind = kindOf(raw.st_mode);
    status.isImmutable = (raw.st_flags & (UF_IMMUTABLE | UF_APPEND | SF_IMMUTABLE | SF_APPEND)) != 0;
    status.isPlaceholder = (raw.st_flags & SF_DATALESS) != 0;
    status.isOwned = raw.st_uid == ::geteuid();
    return status;
}

AskedStatus ask(int folder, const char* name, int flags) noexcept {
    struct stat raw;
    if (::fstatat(folder, name, &raw, flags) != 0) return std::unexpected(lastError());
    ++callsOfThisThread.statusCalls;
    EntryStatus status = statusOf(raw);
    struct stat holder;
    if (folder != AT_FDCWD && status.kind == EntryKind::folder && ::fstat(folder, &holder) == 0)
        status.isMountRoot = holder.st_dev != raw.st_dev;
    return status;
}

OpenedFolder openName(const FolderHandle& parent, const char* name, Mounts mounts) {
    const int descriptor = ::openat(parent.descriptor(), name, folderFlags);
    if (descriptor < 0) return std::unexpected(lastError());
    ++callsOfThisThread.foldersOpened;
    FolderHandle folder(descriptor);
    if (mounts == Mounts::cross) return folder;
    struct stat above;
    struct stat opened;
    if (::fstat(parent.descriptor(), &above) != 0 || ::fstat(descriptor, &opened) != 0)
        return std::unexpected(lastError());
    if (above.st_dev != opened.st_dev)
        return std::unexpected(std::make_error_code(std::errc::cross_device_link));
    return folder;
}

} // namespace

OpenedFolder openFolderIn(const FolderHandle& parent, const std::string& name, AccessDate) {
    return openName(parent, name.c_str(), Mounts::refuse);
}

OpenedFolder openPieceBelow(const FolderHandle& root, const std::string& piece, Mounts mounts) {
    OpenedFolder folder = openName(root, ".", mounts);
    for (std::size_t begin = 0; folder && begin < piece.size();) {
        const std::size_t slash = std::min(piece.find('/', begin), piece.size());
        const std::string name = piece.substr(begin, slash - begin);
        begin = slash + 1;
        if (name.empty() || name == ".") continue;
        folder = openName(*folder, name.c_str(), mounts);
    }
    return folder;
}

/// The system has no flag for a single handle; readQuietly sees to it.
void keepAccessDate(const FolderHandle&) noexcept {}

AskedStatus entryStatus(const FolderHandle& folder, const char* name) noexcept {
    return ask(folder.descriptor(), name, AT_SYMLINK_NOFOLLOW);
}

AskedStatus targetStatus(const FolderHandle& folder, const char* name) noexcept {
    AskedStatus status = ask(folder.descriptor(), name, 0);
    if (status) status->isMountRoot = false; // a link may lead anywhere
    return status;
}

AskedStatus statusAt(const std::string& path) noexcept {
    return ask(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

AskedStatus targetStatusAt(const std::string& path) noexcept { return ask(AT_FDCWD, path.c_str(), 0); }

AskedStatus folderStatus(const FolderHandle& folder) noexcept {
    struct stat raw;
    if (::fstat(folder.descriptor(), &raw) != 0) return std::unexpected(lastError());
    ++callsOfThisThread.statusCalls;
    return statusOf(raw);
}

} // namespace vesko
