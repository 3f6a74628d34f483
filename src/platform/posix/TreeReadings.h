#pragma once
#include "concurrency/StopToken.h"
#include "platform/posix/EntryStatus.h"
#include "platform/posix/RecordingVisitor.h"
#include <array>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vesko {

/// The readings of trees that several runs share; what MeasuredTrees and MeasuringRuns stand on. A run is
/// known by the number of the last reading that began before it: it uses only later ones. What no living run
/// may use any more is let go, so that nothing is kept while none runs. Any thread.
class TreeReadings {
public:
    /// A folder to be measured, as it was found at its path.
    struct Request {
        std::string path; ///< absolute, without a trailing "/"
        bool followLinks = false;
        EntryStatus root;
    };

    TreeReadings();
    TreeReadings(const TreeReadings&) = delete;
    TreeReadings& operator=(const TreeReadings&) = delete;
    ~TreeReadings();

    std::uint64_t beginRun();
    /// No request of the run is under way.
    void endRun(std::uint64_t since);
    /// As MeasuredTrees says; of a run that lives until this returns.
    std::optional<std::int64_t> bytes(Request wanted, std::uint64_t since);

    /// Folders that are kept.
    std::int64_t keptFolders() const noexcept;

private:
    struct Reading;
    using SharedReading = std::shared_ptr<Reading>;
    class Earlier;
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    /// The latest reading of a path without and with links followed.
    using ReadingsByPath =
        std::unordered_map<std::string, std::array<SharedReading, 2>, TextHash, std::equal_to<>>;

    SharedReading nextCandidate(const Request& wanted, std::uint64_t since,
                                const std::vector<SharedReading>& refused) const;
    bool waitForEnd(std::unique_lock<std::mutex>& lock, const Reading& reading, const StopToken& stop);
    SharedReading begin(Request wanted, std::uint64_t since);
    std::optional<std::int64_t> read(const SharedReading& reading, const StopToken& stop);
    void end(const SharedReading& reading);
    void letGo(std::uint64_t upTo);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::multiset<std::uint64_t> runs_;
    ReadingsByPath byPath_;
    std::multimap<std::uint64_t, SharedReading> byInode_; ///< of their roots
    std::uint64_t readings_ = 0;
    RecordingVisitor::Budgets budgets_;
};

} // namespace vesko
