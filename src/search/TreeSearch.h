#pragma once
#include "base/FileURL.h"
#include "search/FileIndex.h"
#include "search/SearchQuery.h"
#include <expected>
#include <map>
#include <memory>
#include <mutex>

namespace vesko {

/// Answers queries, and walks a root once for all queries by name: the first one starts the walk, those that
/// come meanwhile wait for it, later ones cost a look at the index. Blocks; any thread. The calling task's
/// cancellation ends the wait, and the walk with it where that task walks; another task that waits then walks
/// by itself.
class TreeSearch {
public:
    std::expected<FoundPaths, SearchFailure> search(const FileURL& root, const SearchQuery& query) const;

private:
    class SharedWalk;
    std::shared_ptr<SharedWalk> walkOf(const FileURL& root) const;

    mutable std::mutex mutex_;
    mutable std::map<FileURL, std::shared_ptr<SharedWalk>> walks_;
};

} // namespace vesko
