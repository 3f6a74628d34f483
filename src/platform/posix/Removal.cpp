#include "platform/posix/Removal.h"

#include "platform/posix/RemovalFailureKind.h"
#include <algorithm>
#include <cerrno>

namespace vesko {

namespace {

constexpr std::size_t mostOpenFolders = 8;
/// Entries of one folder that are read before they are removed. In the order of their inodes they lie side by
/// side on disk.
constexpr std::size_t batchEntries = 32'768;
/// How often a folder is read again that is not empty after all in it was removed.
constexpr unsigned mostPasses = 8;
/// Entries made since the removal began that it still removes; beyond, another program is faster.
constexpr std::int64_t mostNewcomers = 100'000;
constexpr std::chrono::milliseconds betweenTellings{100};

std::int64_t nowInNanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

bool isOneOf(const std::error_code& code, std::initializer_list<int> values) {
    return std::ranges::find(values, code.value()) != values.end();
}

} // namespace

Removal::Removal(std::string path, const RemovalProgress& progress, StopToken stop,
                 std::optional<FolderIdentity> forbidden)
    : path_(std::move(path)), progress_(progress), stop_(std::move(stop)), forbidden_(forbidden),
      begun_(nowInNanoseconds()), told_(std::chrono::steady_clock::now()) {}

std::optional<RemovalFailure> Removal::run(FolderHandle parent, const std::string& name) {
    parent_ = std::move(parent);
    name_ = name;
    const AskedStatus status = entryStatus(parent_, name.c_str());
    if (!status) {
        fail(nullptr, nullptr, {}, status.error());
    } else if (status->isMountRoot) {
        failWith(RemovalFailureKind::mounted, nullptr, {},
                 std::make_error_code(std::errc::device_or_resource_busy));
    } else if (status->kind == EntryKind::folder) {
        enter(parent_, name, nullptr);
    } else {
        removeNonFolder(parent_, name.c_str(), nullptr);
    }
    while (!frames_.empty() && !isStopped()) {
        Frame& top = frames_.back();
        if (top.inside.empty()) {
            removeEmptied();
            continue;
        }
        std::string inside;
        top.inside.pop(inside);
        if (!top.folder.isOpen() && reopen(top.folder, {}, root_)) {
            failWith(RemovalFailureKind::changed, &top, inside,
                     std::make_error_code(std::errc::no_such_file_or_directory));
            continue;
        }
        const SharedHandle handle = top.folder.handle;
        enter(*handle, inside, &top);
    }
    if (progress_) progress_(bytesFreed_, entriesRemoved_);
    return failure_;
}

/// Opens a folder and removes what is directly in it; the folders in it wait on the new frame.
void Removal::enter(const FolderHandle& parent, const std::string& name, Frame* above) {
    OpenedFolder opened = openFolderIn(parent, name, AccessDate::allow);
    if (!opened && isOneOf(opened.error(), {EMFILE, ENFILE})) {
        closeOldHandles(0);
        opened = openFolderIn(parent, name, AccessDate::allow);
    }
    if (!opened) {
        const std::error_code code = opened.error();
        if (code.value() == ENOENT) return;
        if (isOneOf(code, {ENOTDIR, ELOOP})) return removeNonFolder(parent, name.c_str(), above);
        // A folder that may not be looked into can still go when there is nothing in it.
        if (code.value() == EACCES && !removeEmptyFolder(parent, name.c_str())) return countRemoved(0);
        return fail(&parent, above, above ? std::string_view(name) : std::string_view(), code);
    }
    const AskedStatus status = folderStatus(*opened);
    if (!status)
        return fail(&parent, above, above ? std::string_view(name) : std::string_view(), status.error());
    if (forbidden_ && status->identity == *forbidden_)
        return failWith(RemovalFailureKind::busy, above, above ? std::string_view(name) : std::string_view(),
                        std::make_error_code(std::errc::device_or_resource_busy));
    if (isTooManyNewcomers(*status))
        return failWith(RemovalFailureKind::changed, above,
                        above ? std::string_view(name) : std::string_view(),
                        std::make_error_code(std::errc::directory_not_empty));
    Frame frame;
    frame.folder.node = above ? FolderNodeRef::below(above->folder.node, name) : FolderNodeRef::root(path_);
    frame.folder.handle = std::make_shared<const FolderHandle>(std::move(*opened));
    frame.ownBytes = status->allocatedBytes;
    if (!above) root_ = frame.folder.handle;
    frames_.push_back(std::move(frame));
    closeOldHandles(mostOpenFolders);
    empty(frames_.back());
}

void Removal::closeOldHandles(std::size_t kept) {
    while (frames_.size() - closedBelow_ > kept) frames_[closedBelow_++].folder.closeHandle();
}

void Removal::empty(Frame& frame) {
    if (frame.passes++ > 0) rewindFolder(*frame.folder.handle);
    reader_.begin(*frame.folder.handle, FolderReader::Details::namesOnly);
    while (readBatch(frame, reader_)) {
        std::ranges::sort(batch_, {}, &Found::inode);
        for (const Found& found : batch_) {
            if (isStopped()) return;
            removeFound(frame, found);
            if (newcomers_ > mostNewcomers) return;
        }
    }
}

/// Reads the next entries of the folder; false when there are none.
bool Removal::readBatch(Frame& frame, FolderReader& reader) {
    names_.clear();
    batch_.clear();
    while (batch_.size() < batchEntries) {
        const FolderReader::Step step = reader.next();
        if (step == FolderReader::Step::stopped && reader.error().value() != ENOENT)
            fail(nullptr, &frame, {}, reader.error());
        if (step != FolderReader::Step::entry) break;
        batch_.push_back({reader.status().identity.inode, static_cast<std::uint32_t>(names_.size()),
                          reader.status().kind, reader.isKindKnown()});
        names_ += reader.name();
        names_ += '\0';
    }
    return !batch_.empty();
}

void Removal::removeFound(Frame& frame, const Found& found) {
    const char* name = names_.c_str() + found.nameOffset;
    if (found.isKindKnown && found.kind == EntryKind::folder)
        frame.inside.push(name, 'f');
    else
        removeNonFolder(*frame.folder.handle, name, &frame);
}

/// Removes one entry that is no folder; one that has become a folder meanwhile waits with the others.
void Removal::removeNonFolder(const FolderHandle& folder, const char* name, Frame* frame) {
    const std::string_view shown = frame ? std::string_view(name) : std::string_view();
    const AskedStatus status = entryStatus(folder, name);
    if (!status) {
        if (status.error().value() != ENOENT) fail(&folder, frame, shown, status.error());
        return;
    }
    if (status->kind == EntryKind::folder) {
        if (frame) return frame->inside.push(name, 'f');
        return failWith(RemovalFailureKind::changed, frame, shown,
                        std::make_error_code(std::errc::is_a_directory));
    }
    if (isTooManyNewcomers(*status))
        return failWith(RemovalFailureKind::changed, frame, {},
                        std::make_error_code(std::errc::directory_not_empty));
    if (const std::error_code code = removeEntry(folder, name)) {
        if (code.value() == ENOENT) return;
        if (code.value() == EISDIR && frame) return frame->inside.push(name, 'f');
        return fail(&folder, frame, shown, code);
    }
    countRemoved(status->links == 1 ? status->allocatedBytes : 0);
}

/// Makes sure that the folder above the top frame is open.
bool Removal::openAbove() {
    if (frames_.size() == 1) return true;
    Frame& above = frames_[frames_.size() - 2];
    if (above.folder.isOpen()) return true;
    if (const std::error_code code = reopen(above.folder, frames_.back().folder, root_)) {
        failWith(RemovalFailureKind::changed, &above, frames_.back().folder.node->name(), code);
        return false;
    }
    closedBelow_ = std::min(closedBelow_, frames_.size() - 2);
    return true;
}

/// Takes the top frame's folder away, now that all in it was tried, or reads it again when something came in.
void Removal::removeEmptied() {
    Frame& top = frames_.back();
    Frame* above = frames_.size() > 1 ? &frames_[frames_.size() - 2] : nullptr;
    const auto drop = [&] {
        if (above) above->keepsSomething |= frames_.back().keepsSomething;
        frames_.pop_back();
        closedBelow_ = std::min(closedBelow_, frames_.size());
    };
    if (!openAbove() || top.keepsSomething) return drop();

    const FolderHandle& outer = above ? *above->folder.handle : parent_;
    const std::string& name = above ? top.folder.node->name() : name_;
    const std::string_view shown = above ? std::string_view(name) : std::string_view();
    const std::error_code code = removeEmptyFolder(outer, name.c_str());
    if (!code) {
        countRemoved(top.ownBytes);
    } else if (isOneOf(code, {ENOTEMPTY, EEXIST})) {
        if (top.passes < mostPasses && (top.folder.isOpen() || !reopen(top.folder, {}, root_)))
            return empty(top);
        top.keepsSomething = true;
        failWith(RemovalFailureKind::changed, above, shown, code);
    } else if (code.value() == ENOTDIR) {
        removeNonFolder(outer, name.c_str(), above);
    } else if (code.value() != ENOENT) {
        top.keepsSomething = true;
        fail(&outer, above, shown, code);
    }
    drop();
}

void Removal::fail(const FolderHandle* folder, Frame* frame, std::string_view name, std::error_code code) {
    EntryStatus entry;
    EntryStatus holder;
    if (folder && !failure_) {
        const std::string asked = name.empty() ? name_ : std::string(name);
        if (const AskedStatus status = entryStatus(*folder, asked.c_str())) entry = *status;
        if (const AskedStatus status = folderStatus(*folder)) holder = *status;
    }
    failWith(removalFailureKind(code, entry, holder), frame, name, code);
}

/// Marks that something stays in `frame` and remembers the first reason. Without a frame, or a name, it is
/// the item, or the folder, itself.
void Removal::failWith(RemovalFailureKind kind, Frame* frame, std::string_view name, std::error_code code) {
    if (frame) frame->keepsSomething = true;
    if (failure_) return;
    failure_ = RemovalFailure{FileURL(frame ? frame->folder.node->pathOf(name) : path_), kind, code};
}

void Removal::countRemoved(std::int64_t bytes) {
    ++entriesRemoved_;
    bytesFreed_ += bytes;
    if (!progress_) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - told_ < betweenTellings) return;
    told_ = now;
    progress_(bytesFreed_, entriesRemoved_);
}

bool Removal::isStopped() {
    if (!stop_.stopRequested()) return false;
    failWith(RemovalFailureKind::other, nullptr, {}, std::make_error_code(std::errc::operation_canceled));
    return true;
}

bool Removal::isTooManyNewcomers(const EntryStatus& status) {
    if (status.identity.birth > begun_) ++newcomers_;
    return newcomers_ > mostNewcomers;
}

} // namespace vesko
