#include "orchestration/PathOverlapSet.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <string>
#include <vector>

namespace vesko {
namespace {

/// Compares with every member.
bool overlapsPlainly(const std::string& path, const std::vector<std::string>& seen) {
    for (const std::string& member : seen)
        if (path == member || path.starts_with(member + "/") || member.starts_with(path + "/")) return true;
    return false;
}

rc::Gen<std::string> paths() {
    const auto name = rc::gen::element<std::string>("a", "b", "ab", "a.b");
    const auto names = rc::gen::resize(4, rc::gen::container<std::vector<std::string>>(name));
    return rc::gen::map(rc::gen::pair(names, rc::gen::inRange(0, 12)),
                        [](const std::pair<std::vector<std::string>, int>& made) {
                            if (made.second == 0) return std::string("/");
                            if (made.second == 1) return std::string();
                            std::string path;
                            for (const std::string& each : made.first) path += "/" + each;
                            if (made.second == 2 && !path.empty()) return path.substr(1);
                            return path;
                        });
}

RC_GTEST_PROP(PathOverlapSetProperty, AnswersAsComparingWithEveryMemberDoes, ()) {
    const auto list = *rc::gen::container<std::vector<std::string>>(paths());
    PathOverlapSet set;
    std::vector<std::string> seen;
    for (const std::string& path : list) {
        const bool overlaps = overlapsPlainly(path, seen);
        RC_ASSERT(set.insert(path) == !overlaps);
        if (!overlaps) seen.push_back(path);
    }
}

} // namespace
} // namespace vesko
