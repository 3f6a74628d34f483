#pragma once
#include "NumberTable.h"
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// The folders that a watcher knows, as trees below some roots. A folder is a number and keeps its own name
/// alone: some 70 bytes each. A removed folder's number is given out again. One thread.
class WatchedFolders {
public:
    using Folder = std::uint32_t;
    static constexpr Folder none = ~Folder{0};
    static constexpr int unwatched = -1;

    /// What is noted of a folder; the meaning is the watcher's.
    enum Mark : std::uint8_t {
        isUsed = 1,
        isQueued = 2,
        isDeep = 4,  ///< what lies below is looked at again as well
        isFresh = 8, ///< came while the watcher ran, and is told once it was looked at
        isListed = 16,
        isSeen = 32,      ///< was met in the listing that is going on
        isTold = 64,      ///< is among the changes collected now
        isDoubtful = 128, ///< what is known to be in it may not be all
    };

    WatchedFolders();
    WatchedFolders(const WatchedFolders&) = delete;
    WatchedFolders& operator=(const WatchedFolders&) = delete;

    /// Roots are never removed.
    Folder addRoot(std::string_view path);
    /// There must be no child of that name yet.
    Folder add(Folder parent, std::string_view name);
    /// The child of that name, or none.
    Folder child(Folder parent, std::string_view name) const;
    /// Takes a folder away that is no root, with all below it. Watches that no folder holds any more are
    /// added to `released`.
    void remove(Folder folder, std::vector<int>& released);
    void removeChildren(Folder folder, std::vector<int>& released);

    const std::vector<Folder>& roots() const noexcept { return roots_; }
    bool isRoot(Folder folder) const { return nodes_[folder].parent == none; }
    Folder rootOf(Folder folder) const;
    Folder parentOf(Folder folder) const { return nodes_[folder].parent; }
    Folder firstChild(Folder folder) const { return nodes_[folder].firstChild; }
    Folder nextSibling(Folder folder) const { return nodes_[folder].next; }
    /// Absolute, beginning with the root's path as it was given.
    std::string path(Folder folder) const;
    /// Relative to the root; empty for the root itself.
    std::string pathBelowRoot(Folder folder) const;

    int watch(Folder folder) const { return nodes_[folder].watch; }
    /// Several folders may hold one watch: the same folder is met under two names while it moves, and where
    /// roots overlap. The watch held before is added to `released` when nobody holds it any more.
    void setWatch(Folder folder, int watch, std::vector<int>& released);
    std::vector<Folder> holdersOf(int watch) const;

    bool has(Folder folder, Mark mark) const { return (nodes_[folder].marks & mark) != 0; }
    void set(Folder folder, Mark mark) { nodes_[folder].marks |= mark; }
    void clear(Folder folder, Mark mark) {
        nodes_[folder].marks &= static_cast<std::uint8_t>(~unsigned{mark});
    }
    /// Whether it was there; clears it.
    bool take(Folder folder, Mark mark);

    /// Of what a folder held when it was read last.
    std::uint64_t signature(Folder folder) const { return nodes_[folder].signature; }
    void setSignature(Folder folder, std::uint64_t signature) { nodes_[folder].signature = signature; }

    /// Numbers below this one may be in use: isUsed tells.
    Folder end() const noexcept { return static_cast<Folder>(nodes_.size()); }
    std::size_t count() const noexcept { return count_; }
    /// Different ones.
    std::size_t watchCount() const noexcept { return watchCount_; }

private:
    struct Node {
        Folder parent = none;
        Folder firstChild = none;
        Folder next = none; ///< of the parent's children; of the free ones where unused
        Folder previous = none;
        std::uint32_t name = 0; ///< its place among the names
        int watch = unwatched;
        std::uint64_t signature = 0;
        std::uint8_t marks = 0;
    };
    struct NameHash {
        const WatchedFolders* folders;
        std::size_t operator()(Folder folder) const;
    };
    struct WatchHash {
        const WatchedFolders* folders;
        std::size_t operator()(Folder folder) const;
    };

    Folder make(Folder parent, std::string_view name);
    void release(Folder leaf, std::vector<int>& released);
    void dropWatch(Folder folder, std::vector<int>& released);
    std::string_view nameOf(Folder folder) const { return names_.data() + nodes_[folder].name; }
    void packNames();

    std::deque<Node> nodes_;
    std::vector<char> names_; ///< each with a zero byte behind it
    std::size_t unusedNameBytes_ = 0;
    NumberTable<NameHash> byName_;
    NumberTable<WatchHash> byWatch_;
    std::vector<Folder> roots_;
    Folder firstFree_ = none;
    std::size_t count_ = 0;
    std::size_t watchCount_ = 0;
};

} // namespace vesko
