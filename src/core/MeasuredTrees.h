#pragma once
#include "base/FileURL.h"
#include <cstdint>
#include <memory>
#include <optional>

namespace vesko {

class TreeReadings;

/// The folders that one run has measured, a scan or a load of the dashboard, so that places which overlap are
/// read once: the work of all requests is that of the union of their trees. Runs that MeasuringRuns began
/// share their readings too. Lives for one run, and an answer may be as old as the run: what was read since
/// it began it never reads again. Any thread; the platform layer implements it.
///
/// - A folder asked for again is answered from the first reading; while that is under way, the second caller
///   waits for it.
/// - A folder inside one that was or is being read, by its path, is answered from that reading.
/// - A folder around others that were asked for before passes them by and adds what was found there.
///
/// An answer is always the one that measuring the folder alone gives. For that a reading keeps for each
/// folder its sum and which files with several links lie where (a file counts once in each folder asked for
/// that holds it): 29 bytes a folder, 24 for each such link, so some 3 MiB for 600,000 entries. Sums of every
/// folder cost less than the choice which ones to keep, since nobody knows what will be asked. Where the runs
/// that share go beyond 200,000 folders or 150,000 such links together, later readings keep only their own
/// sum. Folders below which a link lies are shared only among requests that do not follow links; followed, a
/// link may lead to what lies in another folder asked for.
///
/// A request waits only for requests that began before it, so they never wait for each other in a circle.
class MeasuredTrees {
public:
    /// A run that shares with no other.
    MeasuredTrees();
    explicit MeasuredTrees(std::shared_ptr<TreeReadings> readings);
    MeasuredTrees(const MeasuredTrees&) = delete;
    MeasuredTrees& operator=(const MeasuredTrees&) = delete;
    ~MeasuredTrees();

    /// What `du -sk` prints for the folder (with `followLinks`: `du -skL`), in bytes, as fastDirectorySize
    /// says but of any amount. Nothing for what is no folder or can't be opened, when the tree could not be
    /// walked for lack of resources, and when the current task is cancelled, also while it waits. Blocks.
    std::optional<std::int64_t> bytes(const FileURL& url, bool followLinks);

private:
    std::shared_ptr<TreeReadings> readings_;
    std::uint64_t since_; ///< no reading up to this one is used
};

} // namespace vesko
