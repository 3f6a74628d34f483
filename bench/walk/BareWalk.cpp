#include "walk/BareWalk.h"

#include "platform/posix/AllocationSum.h"
#include "platform/posix/TreeWalker.h"

namespace vesko::bench {

namespace {

class Sum final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned worker) override {
        if (entry.isFirstSighting) bytes.add(worker, entry.status.allocatedBytes);
        return Next::enter;
    }
    AllocationSum bytes;
};

} // namespace

std::optional<std::int64_t> walkBare(const FileURL& root, unsigned threads) {
    Sum sum;
    TreeWalkOptions options;
    options.threads = threads;
    if (walkTree(root, sum, options) != WalkOutcome::finished) return std::nullopt;
    return sum.bytes.total();
}

} // namespace vesko::bench
