#pragma once
#include "platform/posix/TreeWalker.h"

namespace vesko {

/// Whether searches see the entry: hidden ones they do not. The root is seen, whatever its name.
inline bool isSeenBySearch(const TreeEntry& entry) { return entry.depth == 0 || !entry.isHidden(); }

/// Whether searches look into the folder. What lies in a dependency folder belongs to it, and a home's
/// entries are mostly there.
inline bool isEnteredBySearch(const TreeEntry& entry) {
    return isSeenBySearch(entry) && entry.name != "node_modules" && entry.name != "Pods";
}

} // namespace vesko
