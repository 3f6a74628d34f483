#pragma once
#include "platform/posix/FolderFinder.h"
#include "platform/posix/FolderReader.h"
#include "platform/posix/InodeSet.h"
#include "platform/posix/PackedNames.h"
#include "platform/posix/TreeWalker.h"
#include "platform/posix/WalkCounts.h"
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace vesko {

/// One run of walkTree. Each worker keeps a stack of folders with names still to be entered and works on the
/// newest, so that what waits stays little; a worker with nothing to do takes from the oldest of another's,
/// which tends to be the largest piece.
class TreeWalk {
public:
    TreeWalk(TreeVisitor& visitor, const TreeWalkOptions& options);

    WalkOutcome run(const FileURL& root);

private:
    /// A folder with names in it that are still to be entered.
    struct Pending {
        OpenFolder folder;
        PackedNames names;
    };
    /// An entry that comes after all else, and the folder that it lies in.
    struct Late {
        OpenFolder folder;
        std::string name;
        EntryStatus status;
        std::uint32_t number;
        bool isThroughLink;
    };
    struct Worker {
        explicit Worker(unsigned ownNumber) : number(ownNumber) {}
        unsigned number;
        FolderReader reader;
        std::vector<Pending> stack;
        std::size_t closedBelow = 0; ///< the handles of the stack's first entries are closed
        OpenFolder lastFinished;     ///< the way back up begins here
        std::vector<Late> late;      ///< of the folder that is being read
        std::size_t entries = 0;
    };

    WalkPurpose purpose() const noexcept {
        return wantsSizes_ ? WalkPurpose::measuring : WalkPurpose::searching;
    }
    void work(Worker& worker);
    bool takeWork(Worker& worker);
    void shareWork(Worker& worker);
    std::vector<Late> takeLate();
    void showLate(Worker& worker, std::vector<Late> late);
    void keepLate(Worker& worker, const FolderNodeRef& node, FolderIdentity identity);
    void startHelpersForLargeTree(const Worker& worker);
    void joinHelpers();

    void enterNext(Worker& worker);
    OpenedFolder openEntry(Worker& worker, const FolderHandle& parent, const std::string& name, char mark);
    bool openAgain(Worker& worker, OpenFolder& folder);
    void dropTop(Worker& worker);
    void push(Worker& worker, Pending pending);
    void readFolder(Worker& worker, FolderNodeRef node, FolderHandle handle);
    void visitEntry(Worker& worker, const FolderNode& node, const FolderHandle& handle, PackedNames& inside);
    void followLink(const FolderHandle& handle, TreeEntry& entry);
    static void putOff(Worker& worker, const TreeEntry& entry);
    char markOf(const TreeEntry& entry) const;
    std::uint32_t newNumber();
    bool isFirst(const TreeEntry& entry);
    void tell(Worker& worker, const FolderNode& folder, std::string_view name, std::error_code code);

    TreeVisitor& visitor_;
    const TreeWalkOptions options_;
    const bool followsLinks_;
    const bool wantsSizes_;
    unsigned mostWorkers_;
    SharedHandle root_;
    InodeSet met_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Pending> shared_; ///< given away, not yet taken
    std::vector<Late> putOff_;    ///< by the visitor
    std::vector<Late> links_;     ///< to folders
    unsigned workers_ = 1;
    unsigned waiting_ = 0;
    bool done_ = false;
    std::atomic<std::uint32_t> lastNumber_{0};
    std::atomic<bool> someoneWaits_{false};
    std::atomic<bool> stopped_{false};
    std::atomic<bool> exhausted_{false};
    std::vector<std::thread> helpers_; ///< filled by the first worker only
};

} // namespace vesko
