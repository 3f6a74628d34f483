#include "core/MeasuredTrees.h"

#include "concurrency/CurrentTask.h"
#include "platform/posix/FolderHandle.h"
#include "platform/posix/RecordingVisitor.h"
#include "platform/posix/TreeUsage.h"
#include <algorithm>
#include <array>
#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vesko {

namespace {

constexpr std::int64_t mostFolders = 200'000;
constexpr std::int64_t mostSightings = 150'000;

struct Request {
    std::string path;
    bool followLinks = false;
    EntryStatus root;
};

/// One reading of a tree. Everything but `request` and `sequence` is guarded by the state's mutex until the
/// reading has ended; then it does not change any more.
struct Reading {
    Reading(Request asked, std::uint64_t number) : request(std::move(asked)), sequence(number) {}
    const Request request;
    const std::uint64_t sequence; ///< above that of every reading that began before
    bool hasEnded = false;
    std::optional<std::int64_t> bytes; ///< nothing: it did not come to its end
    std::shared_ptr<const TreeRecord> record;

    bool isOf(const FolderIdentity& identity, std::uint64_t mount) const {
        return request.root.identity == identity && request.root.mount == mount;
    }
    std::optional<std::int64_t> answer(const Request& wanted) const {
        if (!bytes || wanted.root.mount != request.root.mount) return std::nullopt;
        if (wanted.followLinks == request.followLinks && wanted.root.identity == request.root.identity)
            return bytes;
        const auto place = record ? record->find(wanted.root.identity) : std::nullopt;
        if (!place || !record->holdsFor(*place, wanted.followLinks)) return std::nullopt;
        return roundedUpToKiB(record->bytes(*place));
    }
};
using SharedReading = std::shared_ptr<Reading>;

struct TextHash : std::hash<std::string_view> {
    using is_transparent = void;
};
/// The latest reading of a path without and with links followed.
using ReadingsByPath =
    std::unordered_map<std::string, std::array<SharedReading, 2>, TextHash, std::equal_to<>>;

std::string_view pathAbove(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

} // namespace

class MeasuredTrees::State {
public:
    std::optional<std::int64_t> bytes(Request wanted);

private:
    class Earlier;

    SharedReading nextCandidate(const Request& wanted, const std::vector<SharedReading>& refused) const;
    bool waitForEnd(std::unique_lock<std::mutex>& lock, const Reading& reading, const StopToken& stop);
    SharedReading begin(Request wanted);
    std::optional<std::int64_t> read(const SharedReading& reading, const StopToken& stop);
    void end(const SharedReading& reading);

    std::mutex mutex_;
    std::condition_variable changed_;
    ReadingsByPath byPath_;
    std::multimap<std::uint64_t, SharedReading> byInode_; ///< of their roots
    std::uint64_t readings_ = 0;
    RecordingVisitor::Budgets budgets_{RecordBudget(mostFolders), RecordBudget(mostSightings)};
};

/// What a reading sees of those that began before it.
class MeasuredTrees::State::Earlier final : public EarlierTrees {
public:
    Earlier(State& state, const Reading& own, StopToken stop)
        : state_(state), own_(own), stop_(std::move(stop)) {}

    bool isRoot(const FolderIdentity& folder) override {
        const std::lock_guard lock(state_.mutex_);
        return !readingsOf(folder).empty();
    }

    std::shared_ptr<const TreeRecord> recordOf(const FolderIdentity& folder) override {
        std::unique_lock lock(state_.mutex_);
        for (const SharedReading& reading : readingsOf(folder)) {
            if (!state_.waitForEnd(lock, *reading, stop_)) return nullptr;
            const auto place = reading->record ? reading->record->find(folder) : std::nullopt;
            if (place && reading->record->holdsFor(*place, own_.request.followLinks)) return reading->record;
        }
        return nullptr;
    }

private:
    std::vector<SharedReading> readingsOf(const FolderIdentity& folder) const {
        std::vector<SharedReading> found;
        const auto [first, last] = state_.byInode_.equal_range(folder.inode);
        for (auto each = first; each != last; ++each)
            if (each->second->sequence < own_.sequence && each->second->isOf(folder, own_.request.root.mount))
                found.push_back(each->second);
        return found;
    }

    State& state_;
    const Reading& own_;
    StopToken stop_;
};

std::optional<std::int64_t> MeasuredTrees::State::bytes(Request wanted) {
    const StopToken stop = currentStopToken();
    const StopCallback wake(stop, [this] {
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
    });
    std::vector<SharedReading> refused;
    std::unique_lock lock(mutex_);
    while (SharedReading candidate = nextCandidate(wanted, refused)) {
        if (!waitForEnd(lock, *candidate, stop)) return std::nullopt;
        lock.unlock();
        if (const auto answer = candidate->answer(wanted)) return answer;
        lock.lock();
        refused.push_back(std::move(candidate));
    }
    const SharedReading own = begin(std::move(wanted));
    lock.unlock();
    return read(own, stop);
}

/// The innermost reading of the path or of a folder above that was not tried yet.
SharedReading MeasuredTrees::State::nextCandidate(const Request& wanted,
                                                  const std::vector<SharedReading>& refused) const {
    const std::size_t first = wanted.followLinks ? 1 : 0;
    for (std::string_view path = wanted.path; !path.empty(); path = pathAbove(path)) {
        const auto known = byPath_.find(path);
        if (known == byPath_.end()) continue;
        for (const std::size_t kind : {first, 1 - first}) {
            const SharedReading& reading = known->second[kind];
            if (reading && std::ranges::find(refused, reading) == refused.end()) return reading;
        }
    }
    return nullptr;
}

/// False when the stop was requested first.
bool MeasuredTrees::State::waitForEnd(std::unique_lock<std::mutex>& lock, const Reading& reading,
                                      const StopToken& stop) {
    changed_.wait(lock, [&] { return reading.hasEnded || stop.stopRequested(); });
    return reading.hasEnded;
}

SharedReading MeasuredTrees::State::begin(Request wanted) {
    const auto made = std::make_shared<Reading>(std::move(wanted), ++readings_);
    byPath_[made->request.path][made->request.followLinks ? 1 : 0] = made;
    byInode_.emplace(made->request.root.identity.inode, made);
    return made;
}

std::optional<std::int64_t> MeasuredTrees::State::read(const SharedReading& reading, const StopToken& stop) {
    const Request& wanted = reading->request;
    Earlier earlier(*this, *reading, stop);
    std::optional<std::int64_t> bytes;
    std::shared_ptr<const TreeRecord> record;
    {
        RecordingVisitor visitor(wanted.followLinks, earlier, budgets_);
        TreeWalkOptions options;
        options.links = wanted.followLinks ? TreeWalkOptions::Links::follow : TreeWalkOptions::Links::keep;
        options.stop = stop;
        if (walkTree(FileURL(wanted.path), visitor, options) == WalkOutcome::finished) {
            record = visitor.takeRecord();
            bytes = visitor.bytes(record.get());
            if (!bytes) bytes = treeUsage(FileURL(wanted.path), wanted.followLinks, stop);
            // Another folder has taken the place meanwhile: nothing is known of the one that was asked for.
            if (!reading->isOf(visitor.root().identity, visitor.root().mount)) record = nullptr;
        }
    }
    const std::lock_guard lock(mutex_);
    reading->bytes = bytes;
    reading->record = std::move(record);
    end(reading);
    return bytes;
}

void MeasuredTrees::State::end(const SharedReading& reading) {
    reading->hasEnded = true;
    const Request& asked = reading->request;
    if (!reading->bytes) {
        // It says nothing, so the next to ask reads the tree.
        const auto known = byPath_.find(asked.path);
        SharedReading& kept = known->second[asked.followLinks ? 1 : 0];
        if (kept == reading) kept = nullptr;
    }
    if (!reading->record) {
        auto [each, last] = byInode_.equal_range(asked.root.identity.inode);
        while (each != last) each = each->second == reading ? byInode_.erase(each) : std::next(each);
    }
    changed_.notify_all();
}

MeasuredTrees::MeasuredTrees() : state_(std::make_unique<State>()) {}
MeasuredTrees::~MeasuredTrees() = default;

std::optional<std::int64_t> MeasuredTrees::bytes(const FileURL& url, bool followLinks) {
    if (!url.path().starts_with('/')) return std::nullopt;
    const AskedStatus root = statusAt(url.path());
    // Too long for the system's own lookup; such a place is measured by itself.
    if (!root && root.error() == std::errc::filename_too_long)
        return treeUsage(url, followLinks, currentStopToken());
    if (!root || root->kind != EntryKind::folder) return std::nullopt;
    std::string path = url.path();
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return state_->bytes({std::move(path), followLinks, *root});
}

} // namespace vesko
