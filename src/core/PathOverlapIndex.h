#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// A set of paths that answers quickly how another path lies to them. The answers are those of comparing with
/// every member: exact bytes, case matters, a part of a name is no match. Paths are given in their cleaned
/// form. Immutable, safe from any thread. Building it and a question cost the length of the paths alone.
class PathOverlapIndex {
public:
    explicit PathOverlapIndex(std::vector<std::string> paths);
    PathOverlapIndex(const PathOverlapIndex&) = delete;
    PathOverlapIndex& operator=(const PathOverlapIndex&) = delete;

    bool empty() const noexcept { return members_.empty(); }
    /// Whether `path` is a member or lies in one.
    bool holds(std::string_view path) const { return relationOf(path) == Relation::held; }
    /// Whether `path` is a member, lies in one or contains one.
    bool overlaps(std::string_view path) const { return relationOf(path) != Relation::none; }

private:
    enum class Relation { none, held, contains };
    /// A beginning of a member's path that ends before a "/", or the whole of it. Every such beginning has a
    /// place, so that a look along a path can stop at the first one that has none.
    struct Beginning {
        std::uint64_t hash = 0;
        std::uint32_t member = 0; ///< a member that begins so
        std::uint32_t length = 0;
        bool isTaken = false;
        bool isMember = false; ///< it is the whole path of a member
    };

    Relation relationOf(std::string_view path) const;
    void insert(std::uint32_t member);
    void enter(std::uint64_t hash, std::uint32_t member, std::size_t length);
    const Beginning* find(std::uint64_t hash, std::string_view text) const;
    std::size_t placeOf(std::uint64_t hash, std::string_view text) const;
    void grow();

    std::vector<std::string> members_;
    std::vector<Beginning> places_; ///< open addressing; its size is a power of two
    std::size_t taken_ = 0;
};

} // namespace vesko
