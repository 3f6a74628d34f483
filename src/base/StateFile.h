#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// Longer state files count as unreadable.
inline constexpr std::uint64_t largestStateFile = 256ull << 20;

/// The whole file, or nothing when it is missing, unreadable, too long or no regular file. Also takes away
/// what an earlier process left beside it when it was killed while writing. Blocks; any thread.
std::optional<std::string> readStateFile(const FileURL& url);

/// Replaces the whole file in one step and makes the folders above it. State is a convenience: a failure is
/// silent and leaves the old file. Blocks; any thread.
void writeStateFile(const FileURL& url, std::string_view bytes);

} // namespace vesko
