#pragma once
#include "execution/Remover.h"
#include "platform/posix/FolderFinder.h"
#include "platform/posix/FolderReader.h"
#include "platform/posix/PackedNames.h"
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesko {

/// One run of removeForGood on an item in an open folder: depth first, by handles, with a bounded number of
/// them and no recursion. One thread: the system makes the removals in a folder wait for each other anyway.
class Removal {
public:
    /// `forbidden` is a folder that stays whatever happens, with all in it.
    Removal(std::string path, const RemovalProgress& progress, StopToken stop,
            std::optional<FolderIdentity> forbidden);

    std::optional<RemovalFailure> run(FolderHandle parent, const std::string& name);

private:
    struct Frame {
        OpenFolder folder;
        PackedNames inside;          ///< folders that are still to be emptied
        std::int64_t ownBytes = 0;   ///< what the folder itself takes
        unsigned passes = 0;         ///< how often it was read
        bool keepsSomething = false; ///< an entry could not go, so the folder can't either
    };
    /// An entry as read, kept until a batch of them is removed in the order of the inodes.
    struct Found {
        std::uint64_t inode;
        std::uint32_t nameOffset;
        EntryKind kind;
        bool isKindKnown;
    };

    void enter(const FolderHandle& parent, const std::string& name, Frame* above);
    void empty(Frame& frame);
    bool readBatch(Frame& frame, FolderReader& reader);
    void removeFound(Frame& frame, const Found& found);
    void removeNonFolder(const FolderHandle& folder, const char* name, Frame* frame);
    void removeEmptied();
    bool openAbove();
    void closeOldHandles(std::size_t kept);

    void fail(const FolderHandle* folder, Frame* frame, std::string_view name, std::error_code code);
    void failWith(RemovalFailureKind kind, Frame* frame, std::string_view name, std::error_code code);
    void countRemoved(std::int64_t bytes);
    bool isStopped();
    bool isTooManyNewcomers(const EntryStatus& status);

    const std::string path_;
    const RemovalProgress& progress_;
    const StopToken stop_;
    const std::optional<FolderIdentity> forbidden_;
    const std::int64_t begun_; ///< nanoseconds since 1970

    FolderHandle parent_; ///< where the item stands
    std::string name_;
    SharedHandle root_; ///< the item's own handle; open to the end
    std::vector<Frame> frames_;
    std::size_t closedBelow_ = 0;
    FolderReader reader_;
    std::string names_; ///< of the present batch, each with a zero byte behind it
    std::vector<Found> batch_;

    std::optional<RemovalFailure> failure_;
    std::int64_t bytesFreed_ = 0;
    std::int64_t entriesRemoved_ = 0;
    std::int64_t newcomers_ = 0;
    std::chrono::steady_clock::time_point told_;
};

} // namespace vesko
