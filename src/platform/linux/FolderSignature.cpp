#include "FolderSignature.h"

#include <fcntl.h>
#include <functional>
#include <sys/stat.h>

namespace vesko {
namespace {

std::uint64_t mixed(std::uint64_t sum, std::uint64_t value) {
    sum = (sum ^ value) * 0x9E3779B97F4A7C15;
    return sum ^ (sum >> 29);
}

std::int64_t nanoseconds(const statx_timestamp& date) {
    return date.tv_sec * 1'000'000'000 + static_cast<std::int64_t>(date.tv_nsec);
}

} // namespace

/// Any change of a file or of its size sets the date of its status (inode(7)), which no program can set back;
/// size and blocks stand beside it for two changes within one tick of the system's clock.
std::uint64_t entrySignature(const FolderHandle& folder, std::string_view name, EntryKind kind) {
    std::uint64_t sum = mixed(std::hash<std::string_view>{}(name), static_cast<std::uint64_t>(kind));
    struct statx status{};
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    if (::statx(folder.descriptor(), name.data(), flags, STATX_CTIME | STATX_INO | STATX_SIZE | STATX_BLOCKS,
                &status) != 0)
        return sum;
    sum = mixed(sum, status.stx_ino);
    if (kind == EntryKind::folder) return sum;
    sum = mixed(sum, static_cast<std::uint64_t>(nanoseconds(status.stx_ctime)));
    sum = mixed(sum, status.stx_size);
    return mixed(sum, status.stx_blocks);
}

std::optional<std::int64_t> changeDate(const FolderHandle& folder) {
    struct statx status{};
    if (::statx(folder.descriptor(), "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_CTIME, &status) != 0)
        return std::nullopt;
    return nanoseconds(status.stx_ctime);
}

} // namespace vesko
