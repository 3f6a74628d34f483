#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vesko {

/// A set of paths that answers quickly how another path lies to them. The answers are those of comparing with
/// every member: exact bytes, case matters, a part of a name is no match. Paths are given in their cleaned
/// form. Filling it and asking cost the length of the path alone. Asking is safe from any thread.
///
/// The index refers to its members' bytes and copies none: they stay where they are as long as it is used.
class PathOverlapIndex {
public:
    /// Room for so many paths; more may come.
    explicit PathOverlapIndex(std::size_t expectedPaths = 0);

    void insert(std::string_view path) { insert(std::vector<std::string_view>{path}); }
    void insert(const std::vector<std::string_view>& paths);
    bool empty() const noexcept { return isEmpty_; }

    /// Whether `path` is a member or lies in one.
    bool holds(std::string_view path) const { return relationOf(path) == Relation::held; }
    /// Whether `path` is a member, lies in one or contains one.
    bool overlaps(std::string_view path) const { return relationOf(path) != Relation::none; }
    /// The same for each of the paths. Many at once are quicker than one after the other, and so much the
    /// more the larger the set: what takes the time is waiting for memory, and here that overlaps.
    std::vector<bool> overlaps(const std::vector<std::string_view>& paths) const;

private:
    enum class Relation { none, held, contains };
    /// A beginning of a member's path that ends before a "/", or the whole of it. Every such beginning has a
    /// place, so that a look along a path can stop at the first one that has none. Small, since looking up
    /// scattered places is what takes the time.
    struct Beginning {
        const char* text = nullptr; ///< a path that begins with it
        std::uint32_t hash = 0;
        std::uint32_t length : 30 = 0;
        std::uint32_t isTaken : 1 = 0;
        std::uint32_t isMember : 1 = 0; ///< it is the whole path of a member
    };

    /// Where a path's beginning ends and what it hashes to.
    struct BeginningHash {
        std::uint32_t hash;
        std::uint32_t length;
    };
    using Hashes = std::vector<BeginningHash>;

    /// Hashes each path and calls for its places in memory, and some paths later hands it to `use`.
    template <class Use> void lookAhead(const std::vector<std::string_view>& paths, Use use) const;
    void hashAndFetch(std::string_view path, Hashes& hashes) const;
    void insertHashed(std::string_view path, const Hashes& hashes);
    Relation relationOf(std::string_view path) const;
    Relation relationOf(std::string_view path, const Hashes& hashes) const;
    static std::string_view textOf(const Beginning& beginning) { return {beginning.text, beginning.length}; }
    std::size_t placeOf(std::uint32_t hash, std::string_view text) const;
    void grow();

    std::vector<Beginning> places_; ///< open addressing; its size is a power of two
    std::size_t taken_ = 0;
    bool isEmpty_ = true;
};

} // namespace vesko
