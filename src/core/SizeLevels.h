#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace vesko {

class MeasuredTrees;

/// The ways to measure one path, from the cheapest to the last resort.
struct SizeLevels {
    std::function<bool(const FileURL&)> exists;
    /// Whole-tree figure, or nothing where it can't be had quickly; a file has none.
    std::function<std::optional<std::int64_t>(const FileURL&, bool followLinks)> quick;
    std::function<std::int64_t(const FileURL&, bool followLinks)> du;
    /// Throws Cancelled when its task is cancelled.
    std::function<std::int64_t(const FileURL&)> walk;
};

/// This machine's.
const SizeLevels& platformSizeLevels();

/// This machine's for one scan: folders are asked of `trees`, which reads overlapping ones once. What it says
/// is what `du` would print, so the program runs only where it says nothing, and not for a task that is
/// cancelled.
SizeLevels sharedSizeLevels(std::shared_ptr<MeasuredTrees> trees);

/// Asks the levels in their order: nothing there is 0; the quick figure, if there is one; what `du` says, if
/// that is above zero; else the walk, and 0 when its task was cancelled meanwhile.
std::int64_t sizeByLevels(const FileURL& url, bool followLinks, const SizeLevels& levels);

} // namespace vesko
