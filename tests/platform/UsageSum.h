#pragma once
#include "platform/posix/AllocationSum.h"
#include "platform/posix/TreeWalker.h"
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace vesko {

/// What `du` would print for the tree, in bytes, by a walk with exactly so many threads, which start at once;
/// nothing when the walk does not finish.
inline std::optional<std::int64_t> usageByThreads(const std::string& root, bool followLinks,
                                                  unsigned threads) {
    struct Sum final : TreeVisitor {
        explicit Sum(bool follows) : followsLinks(follows) {}
        Next visit(const TreeEntry& entry, unsigned worker) override {
            const bool counts = !entry.status.isMountRoot || entry.isThroughLink || entry.depth == 0;
            const bool dangling = followsLinks && entry.status.kind == EntryKind::link;
            if (counts && !dangling && entry.isFirstSighting) bytes.add(worker, entry.status.allocatedBytes);
            return Next::enter;
        }
        bool followsLinks;
        AllocationSum bytes;
    } sum(followLinks);
    TreeWalkOptions options;
    options.links = followLinks ? TreeWalkOptions::Links::follow : TreeWalkOptions::Links::keep;
    options.threads = threads;
    options.largeTree = 0;
    if (walkTree(FileURL(root), sum, options) != WalkOutcome::finished) return std::nullopt;
    return roundedUpToKiB(sum.bytes.total());
}

} // namespace vesko
