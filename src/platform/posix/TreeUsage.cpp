#include "platform/posix/TreeUsage.h"

#include "platform/posix/AllocationSum.h"
#include <utility>

namespace vesko {

namespace {

class UsageVisitor final : public TreeVisitor {
public:
    explicit UsageVisitor(bool followsLinks) : followsLinks_(followsLinks) {}

    Next visit(const TreeEntry& entry, unsigned worker) override {
        if (countsAsUsage(entry, followsLinks_) && entry.isFirstSighting)
            sum_.add(worker, entry.status.allocatedBytes);
        return Next::enter;
    }
    std::int64_t bytes() const { return sum_.total(); }

private:
    bool followsLinks_;
    AllocationSum sum_;
};

} // namespace

bool countsAsUsage(const TreeEntry& entry, bool followsLinks) noexcept {
    const bool isOfThisTree = !entry.status.isMountRoot || entry.isThroughLink || entry.depth == 0;
    const bool isDangling = followsLinks && entry.status.kind == EntryKind::link;
    return isOfThisTree && !isDangling;
}

std::optional<std::int64_t> treeUsage(const FileURL& url, bool followLinks, StopToken stop) {
    UsageVisitor visitor(followLinks);
    TreeWalkOptions options;
    options.links = followLinks ? TreeWalkOptions::Links::follow : TreeWalkOptions::Links::keep;
    options.stop = std::move(stop);
    if (walkTree(url, visitor, options) != WalkOutcome::finished) return std::nullopt;
    return roundedUpToKiB(visitor.bytes());
}

} // namespace vesko
