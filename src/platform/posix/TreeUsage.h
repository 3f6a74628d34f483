#pragma once
#include "platform/posix/TreeWalker.h"
#include <cstdint>
#include <optional>

namespace vesko {

/// Whether `du -s` (with `followsLinks`: `du -sL`) counts the entry where it is met first: what is mounted
/// inside is not of the tree, and a link that leads nowhere is nothing.
bool countsAsUsage(const TreeEntry& entry, bool followsLinks) noexcept;

/// What `du -sk` prints for a folder, in bytes; nothing when the walk did not come to its end. Blocks.
std::optional<std::int64_t> treeUsage(const FileURL& url, bool followLinks, StopToken stop);

} // namespace vesko
