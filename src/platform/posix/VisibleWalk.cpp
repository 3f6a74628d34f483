#include "core/FastDirectorySize.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "platform/posix/AllocationSum.h"
#include "platform/posix/FolderHandle.h"
#include "platform/posix/TreeWalker.h"
#include <algorithm>
#include <array>

namespace vesko {

namespace {

/// Folders that are shown to people as one thing.
bool isPackage(std::string_view name) {
    constexpr std::array<std::string_view, 8> extensions = {"app", "bundle", "plugin",   "kext",
                                                            "xpc", "appex",  "prefPane", "photoslibrary"};
    const std::size_t dot = name.rfind('.');
    return dot != std::string_view::npos && dot != 0 &&
           std::ranges::find(extensions, name.substr(dot + 1)) != extensions.end();
}

class VisibleVisitor final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned worker) override {
        const bool isFolder = entry.status.kind == EntryKind::folder;
        if (entry.depth == 0) return Next::enter;
        if (entry.isHidden() || entry.status.isMountRoot) return Next::pass;
        if (!isFolder) sum_.add(worker, entry.status.allocatedBytes);
        return isFolder && isPackage(entry.name) ? Next::pass : Next::enter;
    }
    std::int64_t bytes() const { return sum_.total(); }

private:
    AllocationSum sum_;
};

} // namespace

VisibleAllocation visibleAllocatedSize(const FileURL& url) {
    if (!isReadable(url)) return WalkUnreadable{};
    const AskedStatus status = statusAt(url.path());
    if (!status) return WalkUnreadable{};
    if (status->kind != EntryKind::folder) return status->allocatedBytes;
    VisibleVisitor visitor;
    TreeWalkOptions options;
    options.stop = currentStopToken();
    if (walkTree(url, visitor, options) == WalkOutcome::stopped) return WalkCancelled{};
    return visitor.bytes();
}

} // namespace vesko
