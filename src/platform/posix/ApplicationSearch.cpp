#include "search/FileIndex.h"

#include "base/FileSystem.h"
#include "platform/posix/SearchRoot.h"
#include "platform/posix/SearchedPart.h"
#include "platform/posix/TreeWalker.h"
#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <sys/stat.h>

namespace vesko {
namespace {

bool isApplication(const TreeEntry& entry) {
    constexpr std::string_view bundle = ".app";
    constexpr std::string_view image = ".AppImage";
    const auto hasExtension = [&](std::string_view extension) {
        return entry.name.size() > extension.size() && entry.name.ends_with(extension);
    };
    switch (entry.status.kind) {
    case EntryKind::folder: return hasExtension(bundle);
    case EntryKind::file: return hasExtension(image);
    default: return false;
    }
}

/// Collects applications, and does not look for further ones inside of them.
class ApplicationVisitor final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned) override {
        if (entry.depth == 0) return Next::enter;
        if (!isSeenBySearch(entry)) return Next::pass;
        if (!isApplication(entry)) return isEnteredBySearch(entry) ? Next::enter : Next::pass;
        const std::lock_guard lock(mutex_);
        found_.push_back(entry.path());
        return Next::pass;
    }
    FoundPaths take() { return std::move(found_); }

private:
    std::mutex mutex_;
    FoundPaths found_;
};

/// The latest access date of an executable file in an application; of an image the image's own.
class LastUseVisitor final : public TreeVisitor {
public:
    Next visit(const TreeEntry& entry, unsigned worker) override {
        if (entry.status.kind == EntryKind::file) take(FileURL(entry.path()), latest_[worker]);
        return Next::enter;
    }
    static void take(const FileURL& file, std::optional<Date>& latest) {
        struct stat status{};
        if (::lstat(file.path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return;
        if ((status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) == 0) return;
        const std::optional<Date> read = contentAccessDate(file);
        if (read && (!latest || *latest < *read)) latest = read;
    }
    std::optional<Date> latest() const { return *std::ranges::max_element(latest_); }

private:
    std::array<std::optional<Date>, TreeWalkOptions::mostThreads> latest_;
};

std::optional<Date> lastUse(const FileURL& application, const StopToken& stop) {
    LastUseVisitor visitor;
    TreeWalkOptions options;
    options.details = TreeWalkOptions::Details::namesOnly;
    options.stop = stop;
    if (walkTree(application, visitor, options) != WalkOutcome::noFolder) return visitor.latest();
    std::optional<Date> ofImage;
    LastUseVisitor::take(application, ofImage);
    return ofImage;
}

std::optional<SearchFailure> failureOf(WalkOutcome outcome) {
    switch (outcome) {
    case WalkOutcome::finished: break;
    case WalkOutcome::stopped: return SearchFailure::stopped;
    case WalkOutcome::exhausted: return SearchFailure::incomplete;
    case WalkOutcome::noFolder: return SearchFailure::noFolder;
    }
    return std::nullopt;
}

} // namespace

std::expected<FoundPaths, SearchFailure> findApplicationsUnusedSince(const FileURL& root, Date limit,
                                                                     const StopToken& stop) {
    const SearchRoot searched(root);
    ApplicationVisitor visitor;
    TreeWalkOptions options;
    options.details = TreeWalkOptions::Details::namesOnly;
    options.stop = stop;
    if (const auto failure = failureOf(walkTree(searched.walked(), visitor, options)))
        return std::unexpected(*failure);
    FoundPaths found;
    for (const std::string& path : visitor.take()) {
        if (stop.stopRequested()) return std::unexpected(SearchFailure::stopped);
        const auto answer = searched.answered(path);
        const auto used = answer ? lastUse(FileURL(path), stop) : std::nullopt;
        if (used && *used < limit) found.push_back(*answer);
    }
    std::ranges::sort(found);
    return found;
}

} // namespace vesko
