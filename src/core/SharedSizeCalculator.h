#pragma once
#include "core/SizeCalculating.h"
#include "core/SizeLevels.h"

namespace vesko {

/// Measures on this machine as DiskSizeCalculator does and gives the same figures, but reads folders that
/// overlap once. Made for one scan: what it has read it takes for true as long as it lives. Copies share.
class SharedSizeCalculator final : public SizeCalculating {
public:
    SharedSizeCalculator();
    std::int64_t size(const FileURL& url, bool preferDiskUsage) const override;
    std::int64_t linkAwareSize(const FileURL& url) const override;

private:
    SizeLevels levels_;
};

} // namespace vesko
