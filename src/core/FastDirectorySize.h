#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <optional>
#include <variant>

/// What the platform can say about the room that a path takes. All of it blocks, may be called on any thread
/// and looks at the current task's cancellation. The platform layer implements it.
namespace vesko {

/// A quick figure has to be above; one block says nothing that asking again could not say better.
inline constexpr std::int64_t quickFigureFloor = 4096;

/// The quick whole-tree figure, in bytes: what `du -sk` prints (with `followLinks`: `du -skL`), times 1024.
/// Hard links count once, what is mounted inside does not count; a followed link's target brings its own file
/// system. Nothing for a missing path, for anything but a folder (a link counts as the link), for a figure
/// that is not above quickFigureFloor, when the task is cancelled, and when the tree could not be walked for
/// lack of resources.
///
/// macOS is asked for its own figure of the folder instead, with one call (getattrlist(2),
/// ATTR_DIR_ALLOCSIZE): a link at the end of the path is followed whatever `followLinks` says, the task is
/// not looked at, and the eight bytes of the answer are taken as they stand, with the length word in front.
/// Only a volume that keeps that attribute for folders gives a figure above quickFigureFloor.
std::optional<std::int64_t> fastDirectorySize(const FileURL& url, bool followLinks);

/// What `du -sk` prints for a single thing that is no folder, times 1024: its allocated blocks rounded up to
/// the KiB. With `followLinks` a link's target is asked. Nothing for a folder and for what can't be asked.
std::optional<std::int64_t> allocatedFileSize(const FileURL& url, bool followLinks = false);

/// The task was cancelled before the walk ended.
struct WalkCancelled {
    friend bool operator==(const WalkCancelled&, const WalkCancelled&) = default;
};
/// The path can't be read or asked.
struct WalkUnreadable {
    friend bool operator==(const WalkUnreadable&, const WalkUnreadable&) = default;
};
using VisibleAllocation = std::variant<std::int64_t, WalkCancelled, WalkUnreadable>;

/// The allocated bytes of what a person sees below `url`: hidden names (a leading dot) and the inside of
/// packages are skipped, folders add nothing by themselves, a hard link counts once for each link, links are
/// not followed, entries that fail are passed over. `url` itself is walked also when it is hidden or a
/// package; of anything but a folder it is its own allocation. A sum beyond 63 bits stops the process with a
/// message.
VisibleAllocation visibleAllocatedSize(const FileURL& url);

} // namespace vesko
