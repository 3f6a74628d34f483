#include "platform/posix/TreeWalker.h"

#include "platform/posix/FolderNode.h"
#include "platform/posix/TreeWalk.h"

namespace vesko {

TreeEntry::TreeEntry(const FolderNode& folder, std::string_view entryName) noexcept
    : name(entryName), holder(folder.number()), isBeyondLink(folder.isBeyondLink()), folder_(folder) {}

std::string TreeEntry::path() const { return folder_.pathOf(name); }

WalkOutcome walkTree(const FileURL& root, TreeVisitor& visitor, const TreeWalkOptions& options) {
    return TreeWalk(visitor, options).run(root);
}

} // namespace vesko
