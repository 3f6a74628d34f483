#include "platform/posix/RecordingVisitor.h"

#include "platform/posix/TreeUsage.h"
#include <algorithm>
#include <iterator>
#include <utility>

namespace vesko {

namespace {

/// Lines are taken from a budget so many at a time, so that threads seldom meet there.
constexpr std::int64_t linesAtOnce = 64;
constexpr std::uint32_t noFolder = 0xFFFF'FFFF;

template <class Line> void append(std::vector<Line>& all, std::vector<Line>& part) {
    if (all.empty())
        all = std::move(part);
    else
        all.insert(all.end(), part.begin(), part.end());
    part = {};
}

} // namespace

RecordingVisitor::RecordingVisitor(bool followsLinks, EarlierTrees& earlier, Budgets& budgets)
    : followsLinks_(followsLinks), earlier_(earlier), budgets_(budgets) {
    for (Lines& lines : lines_) lines.content.number = noFolder;
}

RecordingVisitor::~RecordingVisitor() {
    budgets_.folders.giveBack(takenFolders_);
    budgets_.sightings.giveBack(takenSightings_);
}

TreeVisitor::Next RecordingVisitor::visit(const TreeEntry& entry, unsigned worker) {
    Lines& lines = lines_[worker];
    if (entry.depth == 0) root_ = entry.status;
    if (entry.isAgain) {
        if (takeFromRecord(entry, lines)) return Next::pass;
    } else if (isPlaceOfOwn(entry) && earlier_.isRoot(entry.status.identity)) {
        const std::lock_guard lock(mutex_);
        putOff_.push_back(entry.status.identity);
        return Next::putOff;
    }
    if (countsAsUsage(entry, followsLinks_) && entry.isFirstSighting)
        sum_.add(worker, entry.status.allocatedBytes);
    note(entry, lines);
    return Next::enter;
}

/// Whether it is a folder of the tree itself that the walk will enter.
bool RecordingVisitor::isPlaceOfOwn(const TreeEntry& entry) const {
    return entry.depth > 0 && entry.status.kind == EntryKind::folder && entry.isFirstSighting &&
           !entry.status.isMountRoot && !entry.isThroughLink && !entry.isBeyondLink;
}

bool RecordingVisitor::takeFromRecord(const TreeEntry& entry, Lines& lines) {
    if (!keepsRecord_ || !mayUseRecords()) return false;
    const std::shared_ptr<const TreeRecord> record = earlier_.recordOf(entry.status.identity);
    const auto place = record ? record->find(entry.status.identity) : std::nullopt;
    if (!place || !record->holdsFor(*place, followsLinks_)) return false;
    // Without room for all names of its files the sum could not be told.
    if (static_cast<std::int64_t>(record->sightings().size()) > budgets_.sightings.left()) return false;
    noteFolder(entry, lines, record->plainBytes(*place), record->hasLinks(*place));
    for (TreeRecord::Sighting sighting : record->sightings()) {
        sighting.folder = entry.number;
        noteSighting(sighting, lines);
    }
    usedRecords_ = true;
    return true;
}

/// With links followed, one link anywhere may lead into any of the trees, so it is all of them or none.
bool RecordingVisitor::mayUseRecords() {
    if (!followsLinks_) return true;
    if (!mayUseRecords_) {
        mayUseRecords_ = !metLink_ && std::ranges::all_of(putOff_, [this](const FolderIdentity& folder) {
            const std::shared_ptr<const TreeRecord> record = earlier_.recordOf(folder);
            const auto place = record ? record->find(folder) : std::nullopt;
            return place && !record->hasLinks(*place);
        });
    }
    return *mayUseRecords_;
}

void RecordingVisitor::note(const TreeEntry& entry, Lines& lines) {
    const EntryStatus& status = entry.status;
    if (entry.isThroughLink || status.kind == EntryKind::link) metLink_ = true;
    if (!keepsRecord_ || entry.isBeyondLink) return;
    if (entry.depth > 0 && lines.content.number != entry.holder) {
        endContent(lines);
        lines.content.number = entry.holder;
    }
    if (entry.isThroughLink || status.kind == EntryKind::link) lines.content.hasLinks = true;
    if (entry.isThroughLink || !countsAsUsage(entry, followsLinks_)) return;
    // Parts of a file system may have numbers of their own, where inodes come twice.
    if (status.identity.device != root_.identity.device) keepsRecord_ = false;
    if (status.kind == EntryKind::folder) {
        if (entry.isFirstSighting) noteFolder(entry, lines, status.allocatedBytes, false);
    } else if (status.links > 1) {
        noteSighting({entry.holder, status.identity.inode, status.allocatedBytes}, lines);
    } else if (__builtin_add_overflow(lines.content.bytes, status.allocatedBytes, &lines.content.bytes)) {
        AllocationSum::stopOnOverflow();
    }
}

void RecordingVisitor::noteFolder(const TreeEntry& entry, Lines& lines, std::int64_t bytes, bool hasLinks) {
    if (!allow(lines.mayKeepFolders, budgets_.folders, takenFolders_)) return;
    const FolderIdentity& identity = entry.status.identity;
    lines.parts.folders.push_back(
        {entry.number, entry.holder, identity.inode, bytes, TreeRecord::shortBirth(identity), hasLinks});
}

void RecordingVisitor::noteSighting(const TreeRecord::Sighting& sighting, Lines& lines) {
    if (allow(lines.mayKeepSightings, budgets_.sightings, takenSightings_))
        lines.parts.sightings.push_back(sighting);
}

bool RecordingVisitor::allow(std::int64_t& left, RecordBudget& budget, std::atomic<std::int64_t>& taken) {
    if (left == 0) {
        if (!budget.take(linesAtOnce)) {
            keepsRecord_ = false;
            return false;
        }
        taken += linesAtOnce;
        left = linesAtOnce;
    }
    --left;
    return true;
}

void RecordingVisitor::endContent(Lines& lines) {
    if (lines.content.number != noFolder && (lines.content.bytes > 0 || lines.content.hasLinks))
        lines.parts.contents.push_back(lines.content);
    lines.content = {noFolder, false, 0};
}

std::shared_ptr<const TreeRecord> RecordingVisitor::takeRecord() {
    if (!keepsRecord_) return nullptr;
    TreeRecord::Parts all;
    for (Lines& lines : lines_) {
        endContent(lines);
        append(all.folders, lines.parts.folders);
        append(all.contents, lines.parts.contents);
        append(all.sightings, lines.parts.sightings);
    }
    // What the record holds stays taken.
    takenFolders_ -= static_cast<std::int64_t>(all.folders.size());
    takenSightings_ -= static_cast<std::int64_t>(all.sightings.size());
    return std::make_shared<const TreeRecord>(std::move(all), followsLinks_);
}

std::optional<std::int64_t> RecordingVisitor::bytes(const TreeRecord* record) const {
    if (!usedRecords_) return roundedUpToKiB(sum_.total());
    if (!record || (followsLinks_ && metLink_)) return std::nullopt;
    return roundedUpToKiB(record->bytes(0));
}

} // namespace vesko
