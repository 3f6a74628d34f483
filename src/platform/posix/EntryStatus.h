#pragma once
#include <cstdint>

namespace vesko {

enum class EntryKind : std::uint8_t {
    folder,
    file,
    link,
    other, ///< a pipe, a socket, a device: never opened
};

/// Tells a folder from every other while a walk lasts. The moment of birth stands beside the numbers because
/// a number is given out again after its owner's end.
struct FolderIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t birth = 0; ///< nanoseconds since 1970; 0 on a file system that does not keep it

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

/// What the system says of one entry.
struct EntryStatus {
    FolderIdentity identity;
    std::uint64_t mount = 0; ///< set by statusAt and folderStatus: the same for all of one mount
    std::int64_t allocatedBytes = 0;
    std::uint32_t links = 1;
    EntryKind kind = EntryKind::other;
    bool isMountRoot = false;   ///< another file system, or another part of this one, is mounted here
    bool isPlaceholder = false; ///< its content is not on this machine, and reading would have it fetched
    bool isImmutable = false;   ///< marked as not to be changed, or as only to be appended to
    bool isOwned = false;       ///< this process may read it without leaving an access date
};

} // namespace vesko
