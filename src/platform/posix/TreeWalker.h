#pragma once
#include "base/FileURL.h"
#include "concurrency/StopToken.h"
#include "platform/posix/EntryStatus.h"
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

namespace vesko {

class FolderNode;

/// One entry as a walk meets it; valid during the call that shows it.
class TreeEntry {
public:
    TreeEntry(const FolderNode& folder, std::string_view entryName) noexcept;

    std::string_view name; ///< its last component; empty for the root of the walk
    EntryStatus status;    ///< without sizes only kind, inode and, for links' targets, the device are set
    std::size_t depth = 0; ///< 0 for the root, 1 for what lies in it
    /// Of a folder, and of the folder that the entry lies in: 0 for the root, above that of the folder around
    /// it, none twice. Only in a walk that asks sizes.
    std::uint32_t number = 0;
    std::uint32_t holder = 0;
    bool isThroughLink = false; ///< the status is that of a followed link's target
    bool isBeyondLink = false;  ///< it lies below a followed link
    bool isAgain = false;       ///< it was put off before
    /// False for a further name of something already shown: a hard link, or a folder that moved meanwhile.
    bool isFirstSighting = true;

    bool isHidden() const noexcept { return name.starts_with('.'); }
    /// Built on demand; a walk by itself makes no paths.
    std::string path() const;
    /// The folder that the entry lies in; of the root of the walk the root itself. All entries of one folder
    /// are shown by one worker, one after the other.
    const FolderNode& folder() const noexcept { return folder_; }

private:
    const FolderNode& folder_;
};

/// Something that could not be read. The walk goes on beside it.
struct TreeProblem {
    std::string path;
    std::error_code code;
};

/// What a walk shows its entries to. Called by several threads at once, each with a number of its own below
/// TreeWalkOptions::mostThreads, so that sums can be kept apart without a lock.
class TreeVisitor {
public:
    virtual ~TreeVisitor() = default;
    enum class Next {
        enter,
        pass,
        putOff, ///< shown again once everything else is walked, and before links to folders are followed
    };
    /// Before an entry's own entries. The answer counts for folders that the walk could enter; what was put
    /// off once is not put off again.
    virtual Next visit(const TreeEntry& entry, unsigned worker) = 0;
    /// A link to a folder was met; it is shown later, with its target.
    virtual void linkPutOff() {}
    virtual void problem(const TreeProblem&, unsigned /*worker*/) {}
};

struct TreeWalkOptions {
    static constexpr unsigned mostThreads = 16;

    enum class Links { keep, follow } links = Links::keep;
    enum class Details { namesOnly, sizes } details = Details::sizes;
    unsigned threads = 0; ///< at most so many; 0: as the machine has, shared by all walks of the process
    /// Entries after which a tree counts as large and further threads start.
    std::size_t largeTree = 2'000;
    StopToken stop;
};

enum class WalkOutcome {
    finished,
    stopped,   ///< the token asked for it; what was shown stays shown
    noFolder,  ///< there is no folder at the path, or it can't be opened (the problem was told)
    exhausted, ///< descriptors or memory of the system ran out, so that something was left out
};

/// Walks a tree, the root first and every folder before what is in it; otherwise in no order. Blocks.
///
/// Works through handles, with few descriptors (some six for each thread) and no recursion, whatever the
/// depth. Further threads start once a tree turns out to be large. Never enters what is mounted inside (such
/// an entry is shown with `isMountRoot`) nor opens anything but folders, and leaves no access dates where it
/// may. What it asks of the system is added to walkCounts. With links followed, an entry that is a link is
/// shown as its target, a dangling one as itself; every folder is entered once, whatever leads to it, so
/// loops end; links to folders come after all else, so that what lies in the tree is met at its own place.
/// The root itself is never followed.
WalkOutcome walkTree(const FileURL& root, TreeVisitor& visitor, const TreeWalkOptions& options = {});

} // namespace vesko
