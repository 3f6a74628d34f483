#include "core/SharedStoragePathSizer.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskUsage.h"
#include "core/MeasuredTrees.h"
#include "core/MeasuringRuns.h"
#include <optional>
#include <utility>

namespace vesko {
namespace {

class RunSizer final : public StoragePathSizing {
public:
    explicit RunSizer(std::shared_ptr<MeasuredTrees> trees) : trees_(std::move(trees)) {}

    std::int64_t allocatedBytes(const FileURL& url) const override {
        if (!fileExists(url)) return 0;
        if (const std::optional<std::int64_t> bytes = trees_->bytes(url, false)) return *bytes;
        // A walk that was cut short must not be done again by a program that nobody can stop.
        return currentTaskIsCancelled() ? 0 : duSize(url, false);
    }

private:
    std::shared_ptr<MeasuredTrees> trees_;
};

} // namespace

SharedStoragePathSizer::SharedStoragePathSizer(std::shared_ptr<const MeasuringRuns> runs)
    : runs_(std::move(runs)) {}

std::int64_t SharedStoragePathSizer::allocatedBytes(const FileURL& url) const {
    return RunSizer(runs_->begin()).allocatedBytes(url);
}

std::shared_ptr<const StoragePathSizing> SharedStoragePathSizer::forOneRun() const {
    return std::make_shared<const RunSizer>(runs_->begin());
}

} // namespace vesko
