#include "core/FastDirectorySize.h"

#include "concurrency/CurrentTask.h"
#include "platform/posix/AllocationSum.h"
#include "platform/posix/TreeWalker.h"

namespace vesko {

namespace {

/// Adds up what `du` counts: everything in the tree once, folders with their own blocks. With links followed,
/// a link that leads nowhere is nothing.
class UsageVisitor final : public TreeVisitor {
public:
    explicit UsageVisitor(bool followsLinks) : followsLinks_(followsLinks) {}

    Next visit(const TreeEntry& entry, unsigned worker) override {
        const bool isOfThisTree = !entry.status.isMountRoot || entry.isThroughLink || entry.depth == 0;
        const bool isDangling = followsLinks_ && entry.status.kind == EntryKind::link;
        if (isOfThisTree && !isDangling && entry.isFirstSighting)
            sum_.add(worker, entry.status.allocatedBytes);
        return Next::enter;
    }
    std::int64_t bytes() const { return sum_.total(); }

private:
    bool followsLinks_;
    AllocationSum sum_;
};

} // namespace

std::optional<std::int64_t> fastDirectorySize(const FileURL& url, bool followLinks) {
    UsageVisitor visitor(followLinks);
    TreeWalkOptions options;
    options.links = followLinks ? TreeWalkOptions::Links::follow : TreeWalkOptions::Links::keep;
    options.stop = currentStopToken();
    if (walkTree(url, visitor, options) != WalkOutcome::finished) return std::nullopt;
    const std::int64_t bytes = roundedUpToKiB(visitor.bytes());
    // A figure of one block says nothing that asking again could not say better.
    if (bytes <= 4096) return std::nullopt;
    return bytes;
}

} // namespace vesko
