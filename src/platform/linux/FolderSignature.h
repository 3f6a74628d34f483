#pragma once
#include "platform/posix/FolderHandle.h"
#include <cstdint>
#include <optional>
#include <string_view>

namespace vesko {

/// What one entry adds to its folder's signature, whatever the order of reading: a sum over all entries
/// changes when one comes, goes or changes. A folder in it counts by its name and identity; what it holds is
/// its own affair. `name` has a zero byte behind it. One that can't be asked counts by its name.
std::uint64_t entrySignature(const FolderHandle& folder, std::string_view name, EntryKind kind);

/// When the open folder changed last itself, in nanoseconds since 1970.
std::optional<std::int64_t> changeDate(const FolderHandle& folder);

} // namespace vesko
