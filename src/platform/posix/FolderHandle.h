#pragma once
#include "platform/posix/EntryStatus.h"
#include <expected>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace vesko {

/// An open folder; closed when it goes away. What is done through it happens in that very folder, whatever
/// its path has become since.
class FolderHandle {
public:
    FolderHandle() = default;
    explicit FolderHandle(int descriptor) noexcept : descriptor_(descriptor) {}
    FolderHandle(FolderHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FolderHandle& operator=(FolderHandle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FolderHandle() { close(); }

    int descriptor() const noexcept { return descriptor_; }
    explicit operator bool() const noexcept { return descriptor_ >= 0; }
    void close() noexcept;

private:
    int descriptor_ = -1;
};

using OpenedFolder = std::expected<FolderHandle, std::error_code>;
using AskedStatus = std::expected<EntryStatus, std::error_code>;

/// Whether reading a folder may be tried without leaving an access date; only an owner may.
enum class AccessDate { keep, allow };

/// The folder at an absolute path of any length. Links on the way are followed, a link at its end is refused.
OpenedFolder openFolder(const std::string& path);
/// The folder `name` in `parent`; a link and what is mounted there are refused (EXDEV for the latter).
OpenedFolder openFolderIn(const FolderHandle& parent, const std::string& name, AccessDate date);
/// The folder that the link `name` in `parent` leads to, wherever that is.
OpenedFolder openLinkedFolder(const FolderHandle& parent, const std::string& name);
/// The folder above, whatever it is by now; the caller compares its identity.
OpenedFolder openFolderAbove(const FolderHandle& folder);

/// Lets what is read through this handle leave no access date, where the system allows it: only for the
/// owner.
void keepAccessDate(const FolderHandle& folder) noexcept;
/// Lets the folder be read from its beginning again.
void rewindFolder(const FolderHandle& folder) noexcept;

/// Whether mounts on the way may be crossed.
enum class Mounts { refuse, cross };
/// The folder at a path of any length relative to `root`, without a link or ".." on the way; an empty path
/// gives another handle on `root`.
OpenedFolder openFolderBelow(const FolderHandle& root, std::string_view relativePath, Mounts mounts);

/// The same for a piece that is short enough for the system.
OpenedFolder openPieceBelow(const FolderHandle& root, const std::string& piece, Mounts mounts);

/// Of the entry itself, links not followed.
AskedStatus entryStatus(const FolderHandle& folder, const char* name) noexcept;
/// Of what the entry leads to.
AskedStatus targetStatus(const FolderHandle& folder, const char* name) noexcept;
/// Of what stands at an absolute path; a link at its end is not followed (statusAt) or is (targetStatusAt).
AskedStatus statusAt(const std::string& path) noexcept;
AskedStatus targetStatusAt(const std::string& path) noexcept;
/// Of the open folder.
AskedStatus folderStatus(const FolderHandle& folder) noexcept;

/// Takes a name away that is no folder's; a link goes as the link.
std::error_code removeEntry(const FolderHandle& folder, const char* name) noexcept;
/// Takes an empty folder away.
std::error_code removeEmptyFolder(const FolderHandle& folder, const char* name) noexcept;

} // namespace vesko
