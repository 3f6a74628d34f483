#include "orchestration/PathOverlapSet.h"

#include <utility>

namespace vesko {

bool PathOverlapSet::insert(std::string path) {
    if (holds(path) || above_.contains(path)) return false;
    const std::string_view member = kept_.emplace_back(std::move(path));
    members_.insert(member);
    // From below upwards, so that a walk ends where an earlier member has marked the way.
    for (std::size_t slash = member.rfind('/'); slash != std::string_view::npos;
         slash = member.rfind('/', slash - 1)) {
        if (!above_.insert(member.substr(0, slash)).second || slash == 0) break;
    }
    return true;
}

bool PathOverlapSet::holds(std::string_view path) const {
    if (members_.contains(path)) return true;
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
         slash = path.find('/', slash + 1))
        if (members_.contains(path.substr(0, slash))) return true;
    return false;
}

} // namespace vesko
