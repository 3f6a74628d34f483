#include "core/SharedSizeCalculator.h"

#include "core/MeasuredTrees.h"
#include <memory>
#include <utility>

namespace vesko {

SharedSizeCalculator::SharedSizeCalculator() : SharedSizeCalculator(std::make_shared<MeasuredTrees>()) {}
SharedSizeCalculator::SharedSizeCalculator(std::shared_ptr<MeasuredTrees> trees)
    : levels_(sharedSizeLevels(std::move(trees))) {}

std::int64_t SharedSizeCalculator::size(const FileURL& url, bool preferDiskUsage) const {
    return sizeByLevels(url, preferDiskUsage, levels_);
}

std::int64_t SharedSizeCalculator::linkAwareSize(const FileURL& url) const { return size(url, false); }

} // namespace vesko
