#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <optional>

namespace vesko::bench {

/// What all entries of a tree take on the disk, in bytes, by a walk of ours with at most so many threads and
/// nothing done beside it; nothing when the walk did not come to its end.
std::optional<std::int64_t> walkBare(const FileURL& root, unsigned threads);

} // namespace vesko::bench
