#include "platform/posix/FolderHandle.h"

#include "platform/posix/WalkCounts.h"
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace vesko {

namespace {

std::error_code lastError() noexcept { return {errno, std::system_category()}; }

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// The longest piece of a path that goes to the system at once; its limit is 1,024 bytes on macOS and 4,096
/// on Linux, the closing zero included.
constexpr std::size_t longestPiece = 1000;

/// The next piece of `rest`, cut at a "/" so that it is not too long, and takes it away from `rest`. A single
/// name that is too long by itself stays whole: the system's refusal is the right answer to it.
std::string nextPiece(std::string_view& rest) {
    std::size_t end = rest.size();
    if (end > longestPiece) {
        end = rest.rfind('/', longestPiece);
        if (end == std::string_view::npos || end == 0) end = rest.find('/', 1);
        if (end == std::string_view::npos) end = rest.size();
    }
    std::string piece(rest.substr(0, end));
    rest.remove_prefix(end);
    while (rest.starts_with('/')) rest.remove_prefix(1);
    return piece;
}

/// Measuring must not look like use, so a folder's access date is left alone where the system allows that; it
/// refuses for what another user owns.
int openQuietly(int from, const char* path, int flags) noexcept {
#ifdef __linux__
    const int quiet = ::openat(from, path, flags | O_NOATIME);
    if (quiet >= 0) ++callsOfThisThread.foldersOpened;
    if (quiet >= 0 || errno != EPERM) return quiet;
#endif
    const int descriptor = ::openat(from, path, flags);
    if (descriptor >= 0) ++callsOfThisThread.foldersOpened;
    return descriptor;
}

} // namespace

void FolderHandle::close() noexcept {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

OpenedFolder openFolder(const std::string& path) {
    if (!path.starts_with('/')) return std::unexpected(std::make_error_code(std::errc::invalid_argument));
    std::string_view rest = path;
    FolderHandle folder;
    do {
        const std::string piece = nextPiece(rest);
        const int from = folder ? folder.descriptor() : AT_FDCWD;
        const int descriptor =
            openQuietly(from, piece.c_str(), rest.empty() ? folderFlags | O_NOFOLLOW : folderFlags);
        if (descriptor < 0) return std::unexpected(lastError());
        folder = FolderHandle(descriptor);
    } while (!rest.empty());
    keepAccessDate(folder);
    return folder;
}

OpenedFolder openLinkedFolder(const FolderHandle& parent, const std::string& name) {
    const int descriptor = openQuietly(parent.descriptor(), name.c_str(), folderFlags);
    if (descriptor < 0) return std::unexpected(lastError());
    FolderHandle folder(descriptor);
    keepAccessDate(folder);
    return folder;
}

OpenedFolder openFolderAbove(const FolderHandle& folder) {
    const int descriptor = ::openat(folder.descriptor(), "..", folderFlags | O_NOFOLLOW);
    if (descriptor < 0) return std::unexpected(lastError());
    ++callsOfThisThread.foldersOpened;
    return FolderHandle(descriptor);
}

OpenedFolder openFolderBelow(const FolderHandle& root, std::string_view relativePath, Mounts mounts) {
    OpenedFolder folder = openPieceBelow(root, ".", mounts);
    while (folder && !relativePath.empty()) folder = openPieceBelow(*folder, nextPiece(relativePath), mounts);
    if (folder) keepAccessDate(*folder);
    return folder;
}

void rewindFolder(const FolderHandle& folder) noexcept { ::lseek(folder.descriptor(), 0, SEEK_SET); }

std::error_code removeEntry(const FolderHandle& folder, const char* name) noexcept {
    if (::unlinkat(folder.descriptor(), name, 0) != 0) return lastError();
    return {};
}

std::error_code removeEmptyFolder(const FolderHandle& folder, const char* name) noexcept {
    if (::unlinkat(folder.descriptor(), name, AT_REMOVEDIR) != 0) return lastError();
    return {};
}

} // namespace vesko
