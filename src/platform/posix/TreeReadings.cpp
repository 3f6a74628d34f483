#include "platform/posix/TreeReadings.h"

#include "concurrency/CurrentTask.h"
#include "platform/posix/TreeUsage.h"
#include <algorithm>
#include <utility>

namespace vesko {

namespace {

constexpr std::int64_t mostFolders = 200'000;
constexpr std::int64_t mostSightings = 150'000;

std::string_view pathAbove(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

} // namespace

/// One reading of a tree. Everything but `request` and `sequence` is guarded by the mutex until the
/// reading has ended; then it does not change any more.
struct TreeReadings::Reading {
    Reading(Request asked, std::uint64_t number, std::uint64_t ofRun)
        : request(std::move(asked)), sequence(number), since(ofRun) {}
    const Request request;
    const std::uint64_t sequence; ///< above that of every reading that began before
    const std::uint64_t since;    ///< of the run that reads
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

/// What a reading sees of those that began before it.
class TreeReadings::Earlier final : public EarlierTrees {
public:
    Earlier(TreeReadings& trees, const Reading& own, StopToken stop)
        : trees_(trees), own_(own), stop_(std::move(stop)) {}

    bool isRoot(const FolderIdentity& folder) override {
        const std::lock_guard lock(trees_.mutex_);
        return !readingsOf(folder).empty();
    }

    std::shared_ptr<const TreeRecord> recordOf(const FolderIdentity& folder) override {
        std::unique_lock lock(trees_.mutex_);
        for (const SharedReading& reading : readingsOf(folder)) {
            if (!trees_.waitForEnd(lock, *reading, stop_)) return nullptr;
            const auto place = reading->record ? reading->record->find(folder) : std::nullopt;
            if (place && reading->record->holdsFor(*place, own_.request.followLinks)) return reading->record;
        }
        return nullptr;
    }

private:
    bool mayBeUsed(const Reading& reading) const {
        return reading.sequence > own_.since && reading.sequence < own_.sequence;
    }
    std::vector<SharedReading> readingsOf(const FolderIdentity& folder) const {
        std::vector<SharedReading> found;
        const auto [first, last] = trees_.byInode_.equal_range(folder.inode);
        for (auto each = first; each != last; ++each)
            if (mayBeUsed(*each->second) && each->second->isOf(folder, own_.request.root.mount))
                found.push_back(each->second);
        return found;
    }

    TreeReadings& trees_;
    const Reading& own_;
    StopToken stop_;
};

TreeReadings::TreeReadings() : budgets_{RecordBudget(mostFolders), RecordBudget(mostSightings)} {}
TreeReadings::~TreeReadings() = default;

std::uint64_t TreeReadings::beginRun() {
    const std::lock_guard lock(mutex_);
    runs_.insert(readings_);
    return readings_;
}

void TreeReadings::endRun(std::uint64_t since) {
    const std::lock_guard lock(mutex_);
    runs_.erase(runs_.find(since));
    letGo(runs_.empty() ? readings_ : *runs_.begin());
}

/// Forgets the readings up to this number. All have ended: a run lives as long as it reads.
void TreeReadings::letGo(std::uint64_t upTo) {
    std::erase_if(byInode_, [&](const auto& entry) {
        const Reading& reading = *entry.second;
        if (reading.sequence > upTo) return false;
        budgets_.folders.giveBack(static_cast<std::int64_t>(reading.record->folders()));
        budgets_.sightings.giveBack(static_cast<std::int64_t>(reading.record->sightings().size()));
        return true;
    });
    for (auto each = byPath_.begin(); each != byPath_.end();) {
        for (SharedReading& reading : each->second)
            if (reading && reading->sequence <= upTo) reading = nullptr;
        each = each->second[0] || each->second[1] ? std::next(each) : byPath_.erase(each);
    }
}

std::int64_t TreeReadings::keptFolders() const noexcept { return mostFolders - budgets_.folders.left(); }

std::optional<std::int64_t> TreeReadings::bytes(Request wanted, std::uint64_t since) {
    const StopToken stop = currentStopToken();
    const StopCallback wake(stop, [this] {
        const std::lock_guard lock(mutex_);
        changed_.notify_all();
    });
    std::vector<SharedReading> refused;
    std::unique_lock lock(mutex_);
    while (SharedReading candidate = nextCandidate(wanted, since, refused)) {
        if (!waitForEnd(lock, *candidate, stop)) return std::nullopt;
        lock.unlock();
        if (const auto answer = candidate->answer(wanted)) return answer;
        lock.lock();
        refused.push_back(std::move(candidate));
    }
    const SharedReading own = begin(std::move(wanted), since);
    lock.unlock();
    return read(own, stop);
}

/// The innermost reading of the path or of a folder above that was not tried yet.
TreeReadings::SharedReading TreeReadings::nextCandidate(const Request& wanted, std::uint64_t since,
                                                        const std::vector<SharedReading>& refused) const {
    const std::size_t first = wanted.followLinks ? 1 : 0;
    for (std::string_view path = wanted.path; !path.empty(); path = pathAbove(path)) {
        const auto known = byPath_.find(path);
        if (known == byPath_.end()) continue;
        for (const std::size_t kind : {first, 1 - first}) {
            const SharedReading& reading = known->second[kind];
            if (reading && reading->sequence > since && std::ranges::find(refused, reading) == refused.end())
                return reading;
        }
    }
    return nullptr;
}

/// False when the stop was requested first.
bool TreeReadings::waitForEnd(std::unique_lock<std::mutex>& lock, const Reading& reading,
                              const StopToken& stop) {
    changed_.wait(lock, [&] { return reading.hasEnded || stop.stopRequested(); });
    return reading.hasEnded;
}

TreeReadings::SharedReading TreeReadings::begin(Request wanted, std::uint64_t since) {
    const auto made = std::make_shared<Reading>(std::move(wanted), ++readings_, since);
    byPath_[made->request.path][made->request.followLinks ? 1 : 0] = made;
    byInode_.emplace(made->request.root.identity.inode, made);
    return made;
}

std::optional<std::int64_t> TreeReadings::read(const SharedReading& reading, const StopToken& stop) {
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

void TreeReadings::end(const SharedReading& reading) {
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

} // namespace vesko
