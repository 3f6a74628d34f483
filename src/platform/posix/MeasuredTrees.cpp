#include "core/MeasuredTrees.h"

#include "concurrency/CurrentTask.h"
#include "core/MeasuringRuns.h"
#include "platform/posix/FolderHandle.h"
#include "platform/posix/TreeReadings.h"
#include "platform/posix/TreeUsage.h"
#include <utility>

namespace vesko {

MeasuredTrees::MeasuredTrees() : MeasuredTrees(std::make_shared<TreeReadings>()) {}
MeasuredTrees::MeasuredTrees(std::shared_ptr<TreeReadings> readings)
    : readings_(std::move(readings)), since_(readings_->beginRun()) {}
MeasuredTrees::~MeasuredTrees() { readings_->endRun(since_); }

std::optional<std::int64_t> MeasuredTrees::bytes(const FileURL& url, bool followLinks) {
    if (!url.path().starts_with('/')) return std::nullopt;
    const AskedStatus root = statusAt(url.path());
    // Too long for the system's own lookup; such a place is measured by itself.
    if (!root && root.error() == std::errc::filename_too_long)
        return treeUsage(url, followLinks, currentStopToken());
    if (!root || root->kind != EntryKind::folder) return std::nullopt;
    std::string path = url.path();
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return readings_->bytes({std::move(path), followLinks, *root}, since_);
}

MeasuringRuns::MeasuringRuns() : readings_(std::make_shared<TreeReadings>()) {}
MeasuringRuns::~MeasuringRuns() = default;

std::shared_ptr<MeasuredTrees> MeasuringRuns::begin() const {
    return std::make_shared<MeasuredTrees>(readings_);
}

} // namespace vesko
