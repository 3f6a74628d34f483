#pragma once
#include "core/SizeCalculating.h"
#include "core/SizeLevels.h"
#include <memory>

namespace vesko {

class MeasuredTrees;

/// Measures on this machine as DiskSizeCalculator does and gives the same figures, but reads folders that
/// overlap once. Made for one scan: what it has read it takes for true as long as it lives. Copies share, and
/// so does whatever else measures in the same trees.
class SharedSizeCalculator final : public SizeCalculating {
public:
    SharedSizeCalculator();
    explicit SharedSizeCalculator(std::shared_ptr<MeasuredTrees> trees);
    std::int64_t size(const FileURL& url, bool preferDiskUsage) const override;
    std::int64_t linkAwareSize(const FileURL& url) const override;

private:
    SizeLevels levels_;
};

} // namespace vesko
