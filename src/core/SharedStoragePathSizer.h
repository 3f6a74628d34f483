#pragma once
#include "core/StoragePathSizing.h"
#include <memory>

namespace vesko {

class MeasuringRuns;

/// Gives the figures of DirectoryStoragePathSizer, and shares its readings with the scans and loads that run
/// meanwhile.
class SharedStoragePathSizer final : public StoragePathSizing {
public:
    explicit SharedStoragePathSizer(std::shared_ptr<const MeasuringRuns> runs);
    /// A run of its own.
    std::int64_t allocatedBytes(const FileURL& url) const override;
    std::shared_ptr<const StoragePathSizing> forOneRun() const override;

private:
    std::shared_ptr<const MeasuringRuns> runs_;
};

} // namespace vesko
