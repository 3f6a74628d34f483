#include "platform/posix/TreeWalk.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace vesko {

namespace {

/// How a pending name is to be opened.
constexpr char ownFolder = 'o'; ///< without leaving an access date
constexpr char foreignFolder = 'f';
constexpr char linkedFolder = 'l'; ///< through a link

/// Folders on a worker's stack that keep their handle; deeper ones are found again by findFolder.
constexpr std::size_t mostOpenFolders = 4;
/// Entries between two looks at the stop token.
constexpr std::size_t entriesBetweenLooks = 256;

/// Threads that all walks of the process have started beside their callers': ten measurements at once need no
/// further ones on a machine of few cores.
std::atomic<unsigned> helpersRunning{0};

unsigned cores() {
    static const unsigned found = std::max(1U, std::thread::hardware_concurrency());
    return found;
}

bool isLackOfResources(const std::error_code& code) {
    return code.value() == EMFILE || code.value() == ENFILE || code.value() == ENOMEM;
}

} // namespace

TreeWalk::TreeWalk(TreeVisitor& visitor, const TreeWalkOptions& options)
    : visitor_(visitor), options_(options), followsLinks_(options.links == TreeWalkOptions::Links::follow),
      wantsSizes_(followsLinks_ || options.details == TreeWalkOptions::Details::sizes),
      mostWorkers_(std::min(options.threads ? options.threads : cores(), TreeWalkOptions::mostThreads)) {}

WalkOutcome TreeWalk::run(const FileURL& root) {
    const CountedWalk counted(purpose());
    Worker first(0);
    OpenedFolder handle = openFolder(root.path());
    if (!handle) {
        visitor_.problem({root.path(), handle.error()}, 0);
        return isLackOfResources(handle.error()) ? WalkOutcome::exhausted : WalkOutcome::noFolder;
    }
    const AskedStatus status = folderStatus(*handle);
    if (!status) {
        visitor_.problem({root.path(), status.error()}, 0);
        return WalkOutcome::noFolder;
    }
    FolderNodeRef node = FolderNodeRef::root(root.path());
    TreeEntry entry(*node, {});
    entry.status = *status;
    met_.insert(status->identity.device, status->identity.inode);
    if (visitor_.visit(entry, 0) == TreeVisitor::Next::pass) return WalkOutcome::finished;
    // The root stays open to the end; reading goes through a handle of its own.
    OpenedFolder reading = openFolderBelow(*handle, {}, Mounts::refuse);
    root_ = std::make_shared<const FolderHandle>(std::move(*handle));
    if (reading)
        readFolder(first, std::move(node), std::move(*reading));
    else
        tell(first, *node, {}, reading.error());
    work(first);
    joinHelpers();
    if (stopped_) return WalkOutcome::stopped;
    return exhausted_ ? WalkOutcome::exhausted : WalkOutcome::finished;
}

void TreeWalk::work(Worker& worker) {
    for (;;) {
        if (options_.stop.stopRequested()) stopped_ = true;
        if (stopped_) worker.stack.clear();
        if (worker.stack.empty()) {
            if (!takeWork(worker)) return;
            continue;
        }
        enterNext(worker);
        if (worker.number == 0) startHelpersForLargeTree(worker);
        if (someoneWaits_.load(std::memory_order_relaxed)) shareWork(worker);
    }
}

/// Waits until there is something or nobody works any more; false in the latter case.
bool TreeWalk::takeWork(Worker& worker) {
    worker.lastFinished = {};
    worker.closedBelow = 0;
    std::unique_lock lock(mutex_);
    ++waiting_;
    while (shared_.empty() && !done_) {
        if (waiting_ == workers_) {
            // Everything else is walked, and nobody can add to it meanwhile.
            if (std::vector<Late> late = takeLate(); !late.empty()) {
                --waiting_;
                lock.unlock();
                showLate(worker, std::move(late));
                return true;
            }
            done_ = true;
            changed_.notify_all();
            break;
        }
        someoneWaits_ = true;
        changed_.wait(lock);
    }
    if (stopped_) shared_.clear();
    if (shared_.empty()) {
        if (done_) return false;
        --waiting_;
        return true;
    }
    --waiting_;
    someoneWaits_ = waiting_ > shared_.size() - 1;
    worker.stack.push_back(std::move(shared_.back()));
    shared_.pop_back();
    worker.closedBelow = worker.stack.back().folder.isOpen() ? 0 : 1;
    return true;
}

std::vector<TreeWalk::Late> TreeWalk::takeLate() {
    if (stopped_) return {};
    return std::exchange(putOff_.empty() ? links_ : putOff_, {});
}

void TreeWalk::showLate(Worker& worker, std::vector<Late> late) {
    for (Late& each : late) {
        if (options_.stop.stopRequested()) return;
        TreeEntry entry(*each.folder.node, each.name);
        entry.status = each.status;
        entry.depth = each.folder.node->depth() + 1;
        entry.number = each.number;
        entry.isThroughLink = each.isThroughLink;
        entry.isAgain = !each.isThroughLink;
        if (each.isThroughLink) entry.isFirstSighting = isFirst(entry);
        if (visitor_.visit(entry, worker.number) != TreeVisitor::Next::enter || !entry.isFirstSighting)
            continue;
        PackedNames name;
        name.push(each.name, markOf(entry), each.number);
        push(worker, {std::move(each.folder), std::move(name)});
    }
}

/// Gives the oldest folder away, or half of the only one.
void TreeWalk::shareWork(Worker& worker) {
    if (worker.stack.empty()) return;
    Pending given;
    if (worker.stack.size() > 1) {
        given = std::move(worker.stack.front());
        worker.stack.erase(worker.stack.begin());
        if (worker.closedBelow > 0) --worker.closedBelow;
    } else {
        given.names = worker.stack.front().names.takeHalf();
        if (given.names.empty()) return;
        given.folder = worker.stack.front().folder;
    }
    const std::lock_guard lock(mutex_);
    shared_.push_back(std::move(given));
    someoneWaits_ = waiting_ > shared_.size();
    changed_.notify_one();
}

void TreeWalk::startHelpersForLargeTree(const Worker& worker) {
    if (!helpers_.empty() || mostWorkers_ < 2 || worker.entries < options_.largeTree || worker.stack.empty())
        return;
    // A caller that names a number gets it; otherwise the machine's cores are shared by all walks.
    unsigned wanted = mostWorkers_ - 1;
    if (options_.threads == 0) {
        const unsigned running = helpersRunning.load();
        wanted = std::min(wanted, running < cores() ? cores() - running : 0U);
    }
    for (unsigned number = 1; number <= wanted; ++number) {
        {
            const std::lock_guard lock(mutex_);
            ++workers_;
        }
        try {
            helpers_.emplace_back([this, number] {
                const CountedWalk counted(purpose());
                Worker helper(number);
                work(helper);
            });
            ++helpersRunning;
        } catch (const std::system_error&) { // no thread to be had: the walk goes on with those it has
            const std::lock_guard lock(mutex_);
            --workers_;
            break;
        }
    }
    if (helpers_.empty()) mostWorkers_ = 1;
}

void TreeWalk::joinHelpers() {
    for (std::thread& helper : helpers_) {
        helper.join();
        --helpersRunning;
    }
}

void TreeWalk::dropTop(Worker& worker) {
    worker.stack.pop_back();
    worker.closedBelow = std::min(worker.closedBelow, worker.stack.size());
}

void TreeWalk::enterNext(Worker& worker) {
    if (!worker.stack.back().folder.isOpen() && !openAgain(worker, worker.stack.back().folder)) {
        dropTop(worker);
        return;
    }
    Pending& pending = worker.stack.back();
    const OpenFolder folder = pending.folder;
    std::string name;
    const std::uint32_t number = pending.names.lastNumber();
    const char mark = pending.names.pop(name);
    if (pending.names.empty()) {
        dropTop(worker);
        worker.lastFinished = folder;
    }
    OpenedFolder opened = openEntry(worker, *folder.handle, name, mark);
    if (!opened) {
        tell(worker, *folder.node, name, opened.error());
        return;
    }
    FolderNodeRef node = FolderNodeRef::below(folder.node, std::move(name), mark == linkedFolder, number);
    readFolder(worker, std::move(node), std::move(*opened));
}

OpenedFolder TreeWalk::openEntry(Worker& worker, const FolderHandle& parent, const std::string& name,
                                 char mark) {
    const auto open = [&] {
        if (mark == linkedFolder) return openLinkedFolder(parent, name);
        return openFolderIn(parent, name, mark == ownFolder ? AccessDate::keep : AccessDate::allow);
    };
    OpenedFolder opened = open();
    if (opened || !isLackOfResources(opened.error())) return opened;
    worker.lastFinished = {};
    for (; worker.closedBelow < worker.stack.size(); ++worker.closedBelow)
        worker.stack[worker.closedBelow].folder.closeHandle();
    return open();
}

bool TreeWalk::openAgain(Worker& worker, OpenFolder& folder) {
    if (const std::error_code error = reopen(folder, worker.lastFinished, root_)) {
        tell(worker, *folder.node, {}, error);
        return false;
    }
    worker.closedBelow = std::min(worker.closedBelow, worker.stack.size() - 1);
    return true;
}

void TreeWalk::push(Worker& worker, Pending pending) {
    worker.stack.push_back(std::move(pending));
    while (worker.stack.size() - worker.closedBelow > mostOpenFolders)
        worker.stack[worker.closedBelow++].folder.closeHandle();
}

void TreeWalk::readFolder(Worker& worker, FolderNodeRef node, FolderHandle handle) {
    ++callsOfThisThread.foldersRead;
    PackedNames inside;
    FolderReader& reader = worker.reader;
    reader.begin(handle, wantsSizes_ ? FolderReader::Details::status : FolderReader::Details::namesOnly);
    for (;;) {
        const FolderReader::Step step = reader.next();
        if (step == FolderReader::Step::end) break;
        if (step != FolderReader::Step::entry) {
            const bool ofEntry = step == FolderReader::Step::failed;
            tell(worker, *node, ofEntry ? reader.name() : std::string_view(), reader.error());
            if (!ofEntry) break;
            continue;
        }
        visitEntry(worker, *node, handle, inside);
        if (++worker.entries % entriesBetweenLooks == 0 && options_.stop.stopRequested()) {
            stopped_ = true;
            return;
        }
    }
    if (!worker.late.empty())
        if (const AskedStatus own = folderStatus(handle)) keepLate(worker, node, own->identity);
    if (inside.empty()) return;
    auto shared = std::make_shared<const FolderHandle>(std::move(handle));
    push(worker, {OpenFolder{std::move(node), std::move(shared), {}}, std::move(inside)});
}

/// The handle is not kept: there may be very many of them.
void TreeWalk::keepLate(Worker& worker, const FolderNodeRef& node, FolderIdentity identity) {
    const std::lock_guard lock(mutex_);
    for (Late& late : worker.late) {
        late.folder = OpenFolder{node, {}, identity};
        (late.isThroughLink ? links_ : putOff_).push_back(std::move(late));
    }
    worker.late.clear();
}

void TreeWalk::visitEntry(Worker& worker, const FolderNode& node, const FolderHandle& handle,
                          PackedNames& inside) {
    TreeEntry entry(node, worker.reader.name());
    entry.status = worker.reader.status();
    entry.depth = node.depth() + 1;
    if (!worker.reader.isKindKnown())
        if (const AskedStatus asked = entryStatus(handle, entry.name.data())) entry.status = *asked;
    if (followsLinks_ && entry.status.kind == EntryKind::link) followLink(handle, entry);
    const bool isFolder = entry.status.kind == EntryKind::folder;
    if (isFolder) entry.number = newNumber();
    const FolderIdentity& identity = entry.status.identity;
    if (isFolder && entry.isThroughLink && !met_.contains(identity.device, identity.inode)) {
        putOff(worker, entry);
        visitor_.linkPutOff();
        return;
    }
    entry.isFirstSighting = isFirst(entry);
    const TreeVisitor::Next next = visitor_.visit(entry, worker.number);
    if (!isFolder || !entry.isFirstSighting || entry.status.isMountRoot) return;
    if (entry.status.isPlaceholder) return; // nothing of it takes room here
    if (next == TreeVisitor::Next::putOff)
        putOff(worker, entry);
    else if (next == TreeVisitor::Next::enter)
        inside.push(entry.name, markOf(entry), entry.number);
}

void TreeWalk::putOff(Worker& worker, const TreeEntry& entry) {
    worker.late.push_back({{}, std::string(entry.name), entry.status, entry.number, entry.isThroughLink});
}

char TreeWalk::markOf(const TreeEntry& entry) const {
    if (entry.isThroughLink) return linkedFolder;
    return entry.status.isOwned || !wantsSizes_ ? ownFolder : foreignFolder;
}

std::uint32_t TreeWalk::newNumber() {
    return wantsSizes_ ? lastNumber_.fetch_add(1, std::memory_order_relaxed) + 1 : 0;
}

void TreeWalk::followLink(const FolderHandle& handle, TreeEntry& entry) {
    const AskedStatus target = targetStatus(handle, entry.name.data());
    if (!target) return; // it leads nowhere: the link itself is what is there
    entry.status = *target;
    entry.isThroughLink = true;
}

bool TreeWalk::isFirst(const TreeEntry& entry) {
    const EntryStatus& status = entry.status;
    const bool mayComeAgain = status.kind == EntryKind::folder || status.links > 1 || followsLinks_;
    if (!wantsSizes_ || !mayComeAgain) return true;
    // What is mounted here is not of this walk, unless a link leads to it.
    if (status.isMountRoot && !entry.isThroughLink) return true;
    return met_.insert(status.identity.device, status.identity.inode);
}

void TreeWalk::tell(Worker& worker, const FolderNode& folder, std::string_view name, std::error_code code) {
    if (isLackOfResources(code)) exhausted_ = true;
    if (code == std::errc::no_such_file_or_directory) return; // gone meanwhile
    if (code == std::errc::cross_device_link) return;         // mounted there: not of this walk
    visitor_.problem({folder.pathOf(name), code}, worker.number);
}

} // namespace vesko
