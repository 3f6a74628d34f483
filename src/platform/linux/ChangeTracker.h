#pragma once
#include "InotifyQueue.h"
#include "WatchedFolders.h"
#include "platform/posix/FolderReader.h"
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace vesko {

/// Knows every folder below some roots, has the system watch them, and collects which of them changed. It
/// works in slices of some milliseconds, so that its thread can read events while a large tree is still being
/// looked at. Links are not followed and mounts not entered, as in measuring; a root that is a link is
/// watched where it leads to. One thread.
///
/// A folder is watched first and listed then, so that nothing falls between. One that comes while the tracker
/// runs is told once it is listed, since what was put into it before that made no event. What events say is
/// asked of the disk again, so their order against a listing does not matter.
///
/// Folders that the system would not watch are compared with what they held before in each round of polling.
class ChangeTracker {
public:
    /// Takes at most `mostWatches`. `since` (nanoseconds since 1970) is from when on a folder's own date
    /// makes it a changed one when it is looked at first. A slice ends early when `isEnding` becomes true.
    /// Beyond `mostChanges` changed folders at once the roots are told instead.
    ChangeTracker(const std::vector<std::string>& roots, std::size_t mostWatches, std::int64_t since,
                  const std::atomic<bool>& isEnding, std::size_t mostChanges = 16'384);

    /// For waiting until there are events; negative when there never are.
    int descriptor() const noexcept { return queue_.descriptor(); }
    /// Whether there were any.
    bool readEvents();
    bool hasWork() const noexcept { return !toVisit_.empty(); }
    void work();
    /// Begins a round over the roots, which may have been replaced, and over what is not watched.
    void beginRound();

    bool hasChanges() const noexcept { return !changed_.empty(); }
    /// The paths of the changed folders.
    std::vector<std::string> takeChanges();

    std::size_t folderCount() const noexcept { return folders_.count(); }
    std::size_t watchCount() const noexcept { return folders_.watchCount(); }

private:
    using Folder = WatchedFolders::Folder;
    enum class Turn { next, last };
    /// What a listing tells beside the folders in it.
    struct Listing {
        bool isWhole = false;
        std::uint64_t signature = 0;
    };

    void take(const InotifyEvent& event);
    void takeFor(Folder folder, const InotifyEvent& event);
    void lookAtChild(Folder folder, std::string_view name);
    void forget(Folder folder);
    void startOver();

    void enqueue(Folder folder, Turn turn);
    void visit(Folder folder);
    void read(Folder folder, const FolderHandle& handle, bool isCompared);
    void lookAtChildren(Folder folder);
    void lose(Folder folder, std::error_code reason);
    void empty(Folder folder);
    Listing list(Folder folder, const FolderHandle& handle, bool isCompared);
    void noteSubfolder(Folder folder, std::string_view name, bool isDeep);
    void forgetUnseen(Folder folder);

    OpenedFolder open(Folder folder);
    const OpenedFolder& openedRoot(Folder root);
    int watchOf(Folder folder, const FolderHandle& handle);
    void setWatch(Folder folder, int watch);
    void tell(Folder folder);
    void tellRoots();

    WatchedFolders folders_;
    InotifyQueue queue_;
    FolderReader reader_;
    std::size_t mostWatches_;
    std::int64_t since_;
    const std::atomic<bool>& isEnding_;
    std::deque<Folder> toVisit_;
    std::vector<std::pair<Folder, OpenedFolder>> openedRoots_; ///< during one slice
    std::size_t mostChanges_;
    bool isFull_ = false; ///< the system refused a watch in this round
    bool isStartingOver_ = false;
    bool mustStartOver_ = false;
    std::vector<std::string> changed_;
    std::vector<Folder> told_;
    bool areRootsTold_ = false;
};

} // namespace vesko
