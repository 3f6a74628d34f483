#pragma once
#include "platform/posix/FolderNode.h"
#include "platform/posix/TreeWalker.h"

namespace vesko {

/// Whether searches see the entry: hidden ones they do not. The root is seen, whatever its name.
inline bool isSeenBySearch(const TreeEntry& entry) { return entry.depth == 0 || !entry.isHidden(); }

/// Whether searches look into the folder. What lies in a dependency folder belongs to it, and a home's
/// entries are mostly there; what lies in `Library/Caches` belongs to the programs, as in the hidden
/// `.cache`.
inline bool isEnteredBySearch(const TreeEntry& entry) {
    const bool isDependencies = entry.name == "node_modules" || entry.name == "Pods";
    const bool isCaches = entry.name == "Caches" && entry.folder().name() == "Library";
    return isSeenBySearch(entry) && !isDependencies && !isCaches;
}

} // namespace vesko
