#pragma once
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace vesko {

/// A set of paths that answers quickly how another path lies to them. The answers are those of comparing with
/// every member: exact bytes, case matters, a part of a name is no match. Paths are given in their cleaned
/// form. Immutable, safe from any thread; near-linear to build, a question costs the path's depth.
class PathOverlapIndex {
public:
    explicit PathOverlapIndex(std::vector<std::string> paths);
    PathOverlapIndex(const PathOverlapIndex&) = delete;
    PathOverlapIndex& operator=(const PathOverlapIndex&) = delete;

    bool empty() const noexcept { return sorted_.empty(); }
    /// Whether `path` is a member or lies in one.
    bool holds(std::string_view path) const;
    /// Whether a member lies in `path`.
    bool liesBelow(std::string_view path) const;
    /// Whether `path` is a member, lies in one or contains one.
    bool overlaps(std::string_view path) const { return holds(path) || liesBelow(path); }

private:
    std::vector<std::string> sorted_;
    std::unordered_set<std::string_view> members_; // views into sorted_
};

} // namespace vesko
