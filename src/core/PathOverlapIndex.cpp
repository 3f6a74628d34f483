#include "core/PathOverlapIndex.h"

#include <algorithm>
#include <utility>

namespace vesko {

PathOverlapIndex::PathOverlapIndex(std::vector<std::string> paths) : sorted_(std::move(paths)) {
    std::sort(sorted_.begin(), sorted_.end());
    sorted_.erase(std::unique(sorted_.begin(), sorted_.end()), sorted_.end());
    members_.reserve(sorted_.size());
    for (const std::string& path : sorted_) members_.insert(path);
}

bool PathOverlapIndex::holds(std::string_view path) const {
    if (members_.contains(path)) return true;
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
         slash = path.find('/', slash + 1))
        if (members_.contains(path.substr(0, slash))) return true;
    return false;
}

bool PathOverlapIndex::liesBelow(std::string_view path) const {
    // All members that begin with one prefix stand together in sorted order, the first at its lower bound.
    const std::string prefix = std::string(path) + '/';
    const auto found = std::lower_bound(sorted_.begin(), sorted_.end(), prefix);
    return found != sorted_.end() && found->starts_with(prefix);
}

} // namespace vesko
