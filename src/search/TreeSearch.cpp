#include "search/TreeSearch.h"

#include "concurrency/CurrentTask.h"
#include <condition_variable>
#include <optional>

namespace vesko {

class TreeSearch::SharedWalk {
public:
    explicit SharedWalk(FileURL root) : root_(std::move(root)) {}

    IndexedFiles index() {
        const StopToken stop = currentStopToken();
        // Before the lock, so that it goes away after it: a callback that runs needs the lock.
        const StopCallback wake(stop, [this] {
            const std::lock_guard lock(mutex_);
            changed_.notify_all();
        });
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return finished_ || !underWay_ || stop.stopRequested(); });
        if (finished_) return *finished_;
        if (stop.stopRequested()) return std::unexpected(SearchFailure::stopped);
        underWay_ = true;
        lock.unlock();
        IndexedFiles made = indexFiles(root_, stop);
        lock.lock();
        underWay_ = false;
        if (made || made.error() != SearchFailure::stopped) finished_ = made;
        changed_.notify_all();
        return made;
    }

private:
    const FileURL root_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool underWay_ = false;
    std::optional<IndexedFiles> finished_;
};

std::shared_ptr<TreeSearch::SharedWalk> TreeSearch::walkOf(const FileURL& root) const {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<SharedWalk>& walk = walks_[root];
    if (!walk) walk = std::make_shared<SharedWalk>(root);
    return walk;
}

std::expected<FoundPaths, SearchFailure> TreeSearch::search(const FileURL& root,
                                                            const SearchQuery& query) const {
    if (const auto* unused = std::get_if<ApplicationsUnusedSince>(&query)) {
        // A limit that no date can reach has every application on one side of it.
        const auto seconds = static_cast<double>(unused->referenceSeconds);
        const Date limit =
            dateFromReferenceSeconds(seconds).value_or(seconds < 0 ? Date::min() : Date::max());
        return findApplicationsUnusedSince(root, limit, currentStopToken());
    }
    const IndexedFiles index = walkOf(root)->index();
    if (!index) return std::unexpected(index.error());
    if (const auto* folder = std::get_if<FolderNamed>(&query))
        return (*index)->pathsNamed(folder->name, FileIndex::Kind::folder);
    return (*index)->pathsNamed(std::get<EntryNamed>(query).name, FileIndex::Kind::any);
}

} // namespace vesko
