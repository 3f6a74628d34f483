#pragma once
#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>

namespace vesko {

/// A growing set of places of which none lies in another. Paths are given in their cleaned form; a place lies
/// in another when its path begins with the other's and a "/". A question costs the path's depth.
class PathOverlapSet {
public:
    PathOverlapSet() = default;
    PathOverlapSet(const PathOverlapSet&) = delete;
    PathOverlapSet& operator=(const PathOverlapSet&) = delete;

    /// Adds the path unless it is a member, lies in one or contains one; tells whether it was added.
    bool insert(std::string path);
    /// Whether the path is a member or lies in one.
    bool holds(std::string_view path) const;

private:
    std::deque<std::string> kept_;                 // what the views show stays where it is
    std::unordered_set<std::string_view> members_; // views into kept_
    std::unordered_set<std::string_view> above_;   // every folder above a member
};

} // namespace vesko
