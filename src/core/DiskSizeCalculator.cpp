#include "core/DiskSizeCalculator.h"

#include "core/SizeLevels.h"

namespace vesko {

std::int64_t DiskSizeCalculator::size(const FileURL& url, bool preferDiskUsage) const {
    return sizeByLevels(url, preferDiskUsage, platformSizeLevels());
}

std::int64_t DiskSizeCalculator::linkAwareSize(const FileURL& url) const { return size(url, false); }

} // namespace vesko
