#include "core/SharedSizeCalculator.h"

#include "core/MeasuredTrees.h"
#include <memory>

namespace vesko {

SharedSizeCalculator::SharedSizeCalculator() : levels_(sharedSizeLevels(std::make_shared<MeasuredTrees>())) {}

std::int64_t SharedSizeCalculator::size(const FileURL& url, bool preferDiskUsage) const {
    return sizeByLevels(url, preferDiskUsage, levels_);
}

std::int64_t SharedSizeCalculator::linkAwareSize(const FileURL& url) const { return size(url, false); }

} // namespace vesko
