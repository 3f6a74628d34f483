#include "ChangeTracker.h"

#include "FolderSignature.h"
#include <algorithm>
#include <filesystem>
#include <optional>
#include <sys/inotify.h>
#include <utility>

namespace vesko {
namespace {

constexpr std::size_t visitsInASlice = 64;

/// No folder stands under that name.
bool isAbsence(std::error_code reason) {
    return reason == std::errc::no_such_file_or_directory || reason == std::errc::not_a_directory ||
           reason == std::errc::too_many_symbolic_link_levels;
}

/// One does, and is closed to this program: by its permissions, or because something is mounted there.
bool isDenial(std::error_code reason) {
    return reason == std::errc::permission_denied || reason == std::errc::operation_not_permitted ||
           reason == std::errc::cross_device_link;
}

OpenedFolder openRoot(const std::string& path) {
    OpenedFolder folder = openFolder(path);
    if (folder || (folder.error() != std::errc::not_a_directory &&
                   folder.error() != std::errc::too_many_symbolic_link_levels))
        return folder;
    std::error_code failure;
    const std::filesystem::path target = std::filesystem::canonical(path, failure);
    if (failure) return std::unexpected(failure);
    return openFolder(target.string());
}

} // namespace

ChangeTracker::ChangeTracker(const std::vector<std::string>& roots, std::size_t mostWatches,
                             std::int64_t since, const std::atomic<bool>& isEnding, std::size_t mostChanges)
    : mostWatches_(mostWatches), since_(since), isEnding_(isEnding), mostChanges_(mostChanges) {
    for (auto root = roots.begin(); root != roots.end(); ++root)
        if (std::find(roots.begin(), root, *root) == root) enqueue(folders_.addRoot(*root), Turn::last);
}

bool ChangeTracker::readEvents() {
    return queue_.read([this](const InotifyEvent& event) { take(event); });
}

void ChangeTracker::take(const InotifyEvent& event) {
    if (event.mask & IN_Q_OVERFLOW) {
        startOver();
        return;
    }
    for (const Folder folder : folders_.holdersOf(event.watch))
        // What an event did for one holder may have taken the next one away.
        if (folders_.has(folder, WatchedFolders::isUsed) && folders_.watch(folder) == event.watch)
            takeFor(folder, event);
}

void ChangeTracker::takeFor(Folder folder, const InotifyEvent& event) {
    if (event.mask & IN_IGNORED) {
        // The folder is gone, or its file system; should its path come back, everything below is another's.
        setWatch(folder, WatchedFolders::unwatched);
        folders_.set(folder, WatchedFolders::isDeep);
        return;
    }
    tell(folder);
    if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT) && folders_.isRoot(folder))
        enqueue(folder, Turn::next);
    if (!(event.mask & IN_ISDIR) || event.name.empty()) return;
    if (event.mask & (IN_DELETE | IN_MOVED_FROM)) {
        const Folder gone = folders_.child(folder, event.name);
        if (gone != WatchedFolders::none) forget(gone);
        // Where two folders changed places, the last event about a name says that it left.
        if (event.mask & IN_MOVED_FROM) lookAtChild(folder, event.name);
    } else {
        lookAtChild(folder, event.name);
    }
}

/// Events may have been lost, so every folder is looked at again. A folder that changes before it is reached
/// in that is covered by the roots, which are told at its end once more.
void ChangeTracker::startOver() {
    tellRoots();
    if (isStartingOver_) {
        mustStartOver_ = true;
        return;
    }
    isStartingOver_ = true;
    for (const Folder root : folders_.roots()) {
        folders_.set(root, WatchedFolders::isDeep);
        enqueue(root, Turn::last);
    }
}

void ChangeTracker::lookAtChild(Folder folder, std::string_view name) {
    Folder child = folders_.child(folder, name);
    if (child == WatchedFolders::none) {
        child = folders_.add(folder, name);
        folders_.set(child, WatchedFolders::isFresh);
    }
    enqueue(child, Turn::next);
}

void ChangeTracker::forget(Folder folder) {
    std::vector<int> released;
    folders_.remove(folder, released);
    for (const int watch : released) queue_.forget(watch);
}

void ChangeTracker::enqueue(Folder folder, Turn turn) {
    if (folders_.has(folder, WatchedFolders::isQueued)) return;
    folders_.set(folder, WatchedFolders::isQueued);
    if (turn == Turn::next)
        toVisit_.push_front(folder);
    else
        toVisit_.push_back(folder);
}

void ChangeTracker::work() {
    for (std::size_t visits = 0; visits < visitsInASlice && !toVisit_.empty() && !isEnding_; ++visits) {
        const Folder folder = toVisit_.front();
        toVisit_.pop_front();
        // A folder that was forgotten meanwhile has lost the mark.
        if (folders_.take(folder, WatchedFolders::isQueued)) visit(folder);
    }
    // An open root would keep its file system from being unmounted.
    openedRoots_.clear();
    if (!toVisit_.empty() || !isStartingOver_) return;
    isStartingOver_ = false;
    tellRoots();
    if (std::exchange(mustStartOver_, false)) startOver();
}

void ChangeTracker::beginRound() {
    isFull_ = false;
    for (Folder folder = 0; folder < folders_.end(); ++folder) {
        if (!folders_.has(folder, WatchedFolders::isUsed)) continue;
        if (folders_.isRoot(folder) || folders_.watch(folder) == WatchedFolders::unwatched ||
            !folders_.has(folder, WatchedFolders::isListed) ||
            folders_.has(folder, WatchedFolders::isDoubtful))
            enqueue(folder, Turn::last);
    }
}

void ChangeTracker::visit(Folder folder) {
    const OpenedFolder opened = open(folder);
    if (!opened) {
        lose(folder, opened.error());
        return;
    }
    const int before = folders_.watch(folder);
    const int watch = watchOf(folder, *opened);
    const bool isListed = folders_.has(folder, WatchedFolders::isListed);
    const bool isWatched = watch != WatchedFolders::unwatched;
    const bool mustBeRead = !isListed || folders_.has(folder, WatchedFolders::isDeep) ||
                            folders_.has(folder, WatchedFolders::isDoubtful);
    if (isWatched && watch == before && !mustBeRead) return;
    if (before != WatchedFolders::unwatched && watch != before) {
        // Another folder stands there now, so nothing known of what lies below can be trusted.
        folders_.set(folder, WatchedFolders::isDeep);
        tell(folder);
    }
    setWatch(folder, watch);
    read(folder, *opened, !isWatched || (before == WatchedFolders::unwatched && isListed));
}

void ChangeTracker::read(Folder folder, const FolderHandle& handle, bool isCompared) {
    const bool isFirst = !folders_.has(folder, WatchedFolders::isListed);
    // Asked before the listing, so that a change after it is newer than the answer.
    const std::optional<std::int64_t> changedAt = changeDate(handle);
    const Listing listing = list(folder, handle, isCompared);
    if (!listing.isWhole) {
        folders_.set(folder, WatchedFolders::isDoubtful);
        return;
    }
    folders_.set(folder, WatchedFolders::isListed);
    if (folders_.take(folder, WatchedFolders::isFresh) || (isFirst && changedAt && *changedAt >= since_))
        tell(folder);
    if (!isCompared) return;
    if (!isFirst && listing.signature != folders_.signature(folder)) {
        tell(folder);
        lookAtChildren(folder);
    }
    folders_.setSignature(folder, listing.signature);
}

/// In a folder that is not watched, another folder may have taken the place of one that is.
void ChangeTracker::lookAtChildren(Folder folder) {
    for (Folder child = folders_.firstChild(folder); child != WatchedFolders::none;
         child = folders_.nextSibling(child))
        enqueue(child, Turn::next);
}

void ChangeTracker::lose(Folder folder, std::error_code reason) {
    if (folders_.isRoot(folder) ? isAbsence(reason) || isDenial(reason) : isDenial(reason)) {
        // Each round asks for it; when it opens again it is news.
        empty(folder);
    } else if (isAbsence(reason)) {
        // Perhaps only a folder above was away for a moment, which nobody tells where that is not watched.
        folders_.set(folders_.parentOf(folder), WatchedFolders::isDoubtful);
        forget(folder);
    } else {
        // A passing trouble, like too many open files.
        folders_.set(folder, WatchedFolders::isDoubtful);
    }
}

void ChangeTracker::empty(Folder folder) {
    if (folders_.take(folder, WatchedFolders::isListed)) tell(folder);
    folders_.clear(folder, WatchedFolders::isDeep);
    folders_.set(folder, WatchedFolders::isFresh);
    std::vector<int> released;
    folders_.removeChildren(folder, released);
    for (const int watch : released) queue_.forget(watch);
    setWatch(folder, WatchedFolders::unwatched);
}

ChangeTracker::Listing ChangeTracker::list(Folder folder, const FolderHandle& handle, bool isCompared) {
    const bool isDeep = folders_.take(folder, WatchedFolders::isDeep);
    folders_.clear(folder, WatchedFolders::isDoubtful);
    Listing listing;
    reader_.begin(handle, FolderReader::Details::namesOnly);
    for (FolderReader::Step step = reader_.next(); !isEnding_; step = reader_.next()) {
        if (step == FolderReader::Step::end) {
            listing.isWhole = true;
            break;
        }
        if (step == FolderReader::Step::stopped) break;
        if (step == FolderReader::Step::failed) continue;
        const std::string_view name = reader_.name();
        EntryKind kind = reader_.status().kind;
        if (!reader_.isKindKnown()) {
            const AskedStatus status = entryStatus(handle, name.data());
            if (!status) continue;
            kind = status->kind;
        }
        if (isCompared) listing.signature += entrySignature(handle, name, kind);
        if (kind == EntryKind::folder) noteSubfolder(folder, name, isDeep);
    }
    if (listing.isWhole) forgetUnseen(folder);
    if (!listing.isWhole && isDeep) folders_.set(folder, WatchedFolders::isDeep);
    return listing;
}

void ChangeTracker::noteSubfolder(Folder folder, std::string_view name, bool isDeep) {
    Folder child = folders_.child(folder, name);
    if (child == WatchedFolders::none) {
        child = folders_.add(folder, name);
        const bool isNews =
            folders_.has(folder, WatchedFolders::isListed) || folders_.has(folder, WatchedFolders::isFresh);
        if (isNews) folders_.set(child, WatchedFolders::isFresh);
        enqueue(child, isNews ? Turn::next : Turn::last);
    } else if (isDeep) {
        folders_.set(child, WatchedFolders::isDeep);
        enqueue(child, Turn::last);
    }
    folders_.set(child, WatchedFolders::isSeen);
}

void ChangeTracker::forgetUnseen(Folder folder) {
    for (Folder child = folders_.firstChild(folder); child != WatchedFolders::none;) {
        const Folder next = folders_.nextSibling(child);
        if (!folders_.take(child, WatchedFolders::isSeen)) forget(child);
        child = next;
    }
}

OpenedFolder ChangeTracker::open(Folder folder) {
    if (folders_.isRoot(folder)) return openRoot(folders_.path(folder));
    const OpenedFolder& root = openedRoot(folders_.rootOf(folder));
    if (!root) return std::unexpected(root.error());
    constexpr std::size_t shortPath = 1000;
    const std::string below = folders_.pathBelowRoot(folder);
    // One call where the system takes the path whole.
    if (below.size() < shortPath) return openPieceBelow(*root, below, Mounts::refuse);
    return openFolderBelow(*root, below, Mounts::refuse);
}

const OpenedFolder& ChangeTracker::openedRoot(Folder root) {
    const auto known = std::ranges::find(openedRoots_, root, &std::pair<Folder, OpenedFolder>::first);
    if (known != openedRoots_.end()) return known->second;
    return openedRoots_.emplace_back(root, openRoot(folders_.path(root))).second;
}

int ChangeTracker::watchOf(Folder folder, const FolderHandle& handle) {
    // One that is watched may be asked for again at no cost; only a new watch counts.
    const bool isWatched = folders_.watch(folder) != WatchedFolders::unwatched;
    if (!isWatched && (isFull_ || folders_.watchCount() >= mostWatches_)) return WatchedFolders::unwatched;
    const auto watch = queue_.watch(handle);
    if (watch) return *watch;
    isFull_ = true;
    return WatchedFolders::unwatched;
}

void ChangeTracker::setWatch(Folder folder, int watch) {
    std::vector<int> released;
    folders_.setWatch(folder, watch, released);
    for (const int unused : released) queue_.forget(unused);
}

void ChangeTracker::tell(Folder folder) {
    if (areRootsTold_ || folders_.has(folder, WatchedFolders::isTold)) return;
    if (changed_.size() >= mostChanges_) {
        tellRoots();
        return;
    }
    folders_.set(folder, WatchedFolders::isTold);
    told_.push_back(folder);
    changed_.push_back(folders_.path(folder));
}

void ChangeTracker::tellRoots() {
    if (std::exchange(areRootsTold_, true)) return;
    changed_.clear();
    for (const Folder root : folders_.roots()) changed_.push_back(folders_.path(root));
}

std::vector<std::string> ChangeTracker::takeChanges() {
    for (const Folder folder : told_) folders_.clear(folder, WatchedFolders::isTold);
    told_.clear();
    areRootsTold_ = false;
    return std::exchange(changed_, {});
}

} // namespace vesko
