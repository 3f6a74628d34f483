#pragma once
#include "core/SizeCalculating.h"

namespace vesko {

/// Measures on this machine. The flag of `size` has one effect: links are followed.
class DiskSizeCalculator final : public SizeCalculating {
public:
    std::int64_t size(const FileURL& url, bool preferDiskUsage) const override;
    std::int64_t linkAwareSize(const FileURL& url) const override;
};

} // namespace vesko
