#include "WatchedFolders.h"

#include <algorithm>
#include <functional>
#include <ranges>

namespace vesko {
namespace {

constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;

std::size_t nameHash(WatchedFolders::Folder parent, std::string_view name) {
    std::uint64_t mixed = (std::hash<std::string_view>{}(name) + parent) * spread;
    mixed ^= mixed >> 32;
    return mixed;
}

std::size_t watchHash(int watch) {
    return static_cast<std::size_t>((static_cast<std::uint64_t>(watch) * spread) >> 32);
}

} // namespace

std::size_t WatchedFolders::NameHash::operator()(Folder folder) const {
    return nameHash(folders->nodes_[folder].parent, folders->nameOf(folder));
}

std::size_t WatchedFolders::WatchHash::operator()(Folder folder) const {
    return watchHash(folders->nodes_[folder].watch);
}

WatchedFolders::WatchedFolders() : byName_(NameHash{this}), byWatch_(WatchHash{this}) {}

WatchedFolders::Folder WatchedFolders::make(Folder parent, std::string_view name) {
    Folder folder = firstFree_;
    if (folder == none) {
        folder = end();
        nodes_.emplace_back();
    } else {
        firstFree_ = nodes_[folder].next;
        nodes_[folder] = Node{};
    }
    Node& node = nodes_[folder];
    node.parent = parent;
    node.marks = isUsed;
    node.name = static_cast<std::uint32_t>(names_.size());
    names_.insert(names_.end(), name.begin(), name.end());
    names_.push_back(0);
    ++count_;
    return folder;
}

WatchedFolders::Folder WatchedFolders::addRoot(std::string_view path) {
    const Folder root = make(none, path);
    roots_.push_back(root);
    return root;
}

WatchedFolders::Folder WatchedFolders::add(Folder parent, std::string_view name) {
    const Folder folder = make(parent, name);
    Node& above = nodes_[parent];
    nodes_[folder].next = above.firstChild;
    if (above.firstChild != none) nodes_[above.firstChild].previous = folder;
    above.firstChild = folder;
    byName_.insert(folder);
    return folder;
}

WatchedFolders::Folder WatchedFolders::child(Folder parent, std::string_view name) const {
    return byName_.find(nameHash(parent, name), [&](Folder candidate) {
        return nodes_[candidate].parent == parent && nameOf(candidate) == name;
    });
}

void WatchedFolders::remove(Folder folder, std::vector<int>& released) {
    removeChildren(folder, released);
    release(folder, released);
    packNames();
}

/// Leaf by leaf, since a tree may be deeper than the stack.
void WatchedFolders::removeChildren(Folder folder, std::vector<int>& released) {
    for (Folder leaf = folder;;) {
        while (nodes_[leaf].firstChild != none) leaf = nodes_[leaf].firstChild;
        if (leaf == folder) return;
        const Folder above = nodes_[leaf].parent;
        release(leaf, released);
        leaf = above;
    }
}

void WatchedFolders::release(Folder leaf, std::vector<int>& released) {
    dropWatch(leaf, released);
    byName_.erase(leaf);
    Node& node = nodes_[leaf];
    if (node.previous != none)
        nodes_[node.previous].next = node.next;
    else
        nodes_[node.parent].firstChild = node.next;
    if (node.next != none) nodes_[node.next].previous = node.previous;
    unusedNameBytes_ += nameOf(leaf).size() + 1;
    node.marks = 0;
    node.next = firstFree_;
    firstFree_ = leaf;
    --count_;
}

WatchedFolders::Folder WatchedFolders::rootOf(Folder folder) const {
    while (nodes_[folder].parent != none) folder = nodes_[folder].parent;
    return folder;
}

std::string WatchedFolders::path(Folder folder) const {
    std::string path(nameOf(rootOf(folder)));
    const std::string below = pathBelowRoot(folder);
    if (below.empty()) return path;
    if (!path.ends_with('/')) path += '/';
    return path + below;
}

std::string WatchedFolders::pathBelowRoot(Folder folder) const {
    std::vector<std::string_view> names;
    std::size_t length = 0;
    for (; nodes_[folder].parent != none; folder = nodes_[folder].parent) {
        names.push_back(nameOf(folder));
        length += names.back().size() + 1;
    }
    std::string path;
    path.reserve(length);
    for (const std::string_view name : names | std::views::reverse) {
        if (!path.empty()) path += '/';
        path += name;
    }
    return path;
}

void WatchedFolders::setWatch(Folder folder, int watch, std::vector<int>& released) {
    Node& node = nodes_[folder];
    if (node.watch == watch) return;
    dropWatch(folder, released);
    if (watch == unwatched) return;
    if (holdersOf(watch).empty()) ++watchCount_;
    node.watch = watch;
    byWatch_.insert(folder);
}

void WatchedFolders::dropWatch(Folder folder, std::vector<int>& released) {
    Node& node = nodes_[folder];
    if (node.watch == unwatched) return;
    byWatch_.erase(folder);
    const int watch = node.watch;
    node.watch = unwatched;
    if (!holdersOf(watch).empty()) return;
    --watchCount_;
    released.push_back(watch);
}

std::vector<WatchedFolders::Folder> WatchedFolders::holdersOf(int watch) const {
    std::vector<Folder> holders;
    byWatch_.find(watchHash(watch), [&](Folder candidate) {
        if (nodes_[candidate].watch == watch) holders.push_back(candidate);
        return false;
    });
    return holders;
}

bool WatchedFolders::take(Folder folder, Mark mark) {
    const bool had = has(folder, mark);
    clear(folder, mark);
    return had;
}

/// Names of removed folders are thrown out once they are the larger half.
void WatchedFolders::packNames() {
    constexpr std::size_t worthIt = std::size_t{64} * 1024;
    if (unusedNameBytes_ < worthIt || unusedNameBytes_ * 2 < names_.size()) return;
    std::vector<char> kept;
    kept.reserve(names_.size() - unusedNameBytes_);
    for (Node& node : nodes_) {
        if ((node.marks & isUsed) == 0) continue;
        const std::string_view name(names_.data() + node.name);
        node.name = static_cast<std::uint32_t>(kept.size());
        kept.insert(kept.end(), name.begin(), name.end());
        kept.push_back(0);
    }
    names_ = std::move(kept);
    unusedNameBytes_ = 0;
}

} // namespace vesko
