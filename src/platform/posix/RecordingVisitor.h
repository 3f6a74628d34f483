#pragma once
#include "platform/posix/AllocationSum.h"
#include "platform/posix/RecordBudget.h"
#include "platform/posix/TreeRecord.h"
#include "platform/posix/TreeWalker.h"
#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace vesko {

/// The trees that were begun before the one at hand.
class EarlierTrees {
public:
    virtual ~EarlierTrees() = default;
    /// Whether the folder is the root of one. Any thread, often.
    virtual bool isRoot(const FolderIdentity& folder) = 0;
    /// Waits for its end. Nothing when it kept no record or did not come to one.
    virtual std::shared_ptr<const TreeRecord> recordOf(const FolderIdentity& folder) = 0;
};

/// Adds a tree up as `du` does and records every folder's sum. Roots of earlier trees are put off and, once
/// all else is walked, taken from their records where those hold what this walk needs.
class RecordingVisitor final : public TreeVisitor {
public:
    struct Budgets {
        RecordBudget folders;
        RecordBudget sightings;
    };
    RecordingVisitor(bool followsLinks, EarlierTrees& earlier, Budgets& budgets);
    ~RecordingVisitor() override;
    RecordingVisitor(const RecordingVisitor&) = delete;
    RecordingVisitor& operator=(const RecordingVisitor&) = delete;

    Next visit(const TreeEntry& entry, unsigned worker) override;
    void linkPutOff() override { metLink_ = true; }

    // Once the walk is finished:
    const EntryStatus& root() const noexcept { return root_; }
    /// The record; null when the budgets did not allow one. Once.
    std::shared_ptr<const TreeRecord> takeRecord();
    /// The sum, with the record that takeRecord gave. Nothing when something that was taken from a record
    /// turned out not to fit: the tree has to be walked by itself.
    std::optional<std::int64_t> bytes(const TreeRecord* record) const;

private:
    /// What one thread of the walk gathers.
    struct alignas(64) Lines {
        TreeRecord::Parts parts;
        TreeRecord::Content content; ///< of the folder that is being read
        std::int64_t mayKeepFolders = 0;
        std::int64_t mayKeepSightings = 0;
    };

    bool isPlaceOfOwn(const TreeEntry& entry) const;
    bool takeFromRecord(const TreeEntry& entry, Lines& lines);
    bool mayUseRecords();
    void note(const TreeEntry& entry, Lines& lines);
    void noteFolder(const TreeEntry& entry, Lines& lines, std::int64_t bytes, bool hasLinks);
    void noteSighting(const TreeRecord::Sighting& sighting, Lines& lines);
    bool allow(std::int64_t& left, RecordBudget& budget, std::atomic<std::int64_t>& taken);
    void endContent(Lines& lines);

    const bool followsLinks_;
    EarlierTrees& earlier_;
    Budgets& budgets_;
    AllocationSum sum_;
    EntryStatus root_;
    std::array<Lines, TreeWalkOptions::mostThreads> lines_;
    std::atomic<bool> keepsRecord_{true};
    std::atomic<bool> metLink_{false};
    std::mutex mutex_;
    std::vector<FolderIdentity> putOff_;
    std::optional<bool> mayUseRecords_; ///< decided when the first one is needed
    bool usedRecords_ = false;
    std::atomic<std::int64_t> takenFolders_{0}; ///< from the budgets, without what the record holds
    std::atomic<std::int64_t> takenSightings_{0};
};

} // namespace vesko
