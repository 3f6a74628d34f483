#include "search/FileIndex.h"

#include "platform/posix/FolderHandle.h"
#include "platform/posix/FolderNode.h"
#include "platform/posix/SearchRoot.h"
#include "platform/posix/SearchedPart.h"
#include "platform/posix/TreeWalker.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string_view>

namespace vesko {
namespace {

/// Of each entry only a mark is kept, 31 bits of its name's hash and whether it is a folder; the names
/// themselves would take many times the room. A mark can point at an entry of another name, so hits are
/// confirmed by asking the disk, which also leaves out what is gone meanwhile.
using Mark = std::uint32_t;

Mark markOf(std::string_view name, bool isFolder) {
    return (static_cast<Mark>(std::hash<std::string_view>()(name)) << 1) | static_cast<Mark>(isFolder);
}

class WalkedIndex final : public FileIndex, public TreeVisitor {
public:
    explicit WalkedIndex(const FileURL& root) : root_(root) {}

    const FileURL& walkedRoot() const { return root_.walked(); }

    Next visit(const TreeEntry& entry, unsigned worker) override {
        if (entry.depth == 0) return Next::enter;
        if (!isSeenBySearch(entry)) return Next::pass;
        parts_[worker].add(entry);
        return isEnteredBySearch(entry) ? Next::enter : Next::pass;
    }

    FoundPaths pathsNamed(const std::string& name, Kind kind) const override {
        FoundPaths found;
        for (const Part& part : parts_) part.collect(name, kind, root_, found);
        std::ranges::sort(found);
        return found;
    }

private:
    /// What one worker met. On cache lines of its own, since all workers write at once.
    struct alignas(64) Part {
        struct Folder {
            FolderNodeRef node;
            std::size_t firstMark;
        };
        std::vector<Folder> folders;
        std::vector<Mark> marks; ///< of the first folder's entries, then of the second's, ...

        void add(const TreeEntry& entry) {
            if (folders.empty() || folders.back().node.node() != &entry.folder())
                folders.push_back({FolderNodeRef::to(entry.folder()), marks.size()});
            marks.push_back(markOf(entry.name, entry.status.kind == EntryKind::folder));
        }
        void collect(const std::string& name, Kind kind, const SearchRoot& root, FoundPaths& found) const {
            const Mark ofFile = markOf(name, false);
            const Mark ofFolder = markOf(name, true);
            for (std::size_t i = 0; i < folders.size(); ++i) {
                const std::size_t end = i + 1 < folders.size() ? folders[i + 1].firstMark : marks.size();
                for (std::size_t at = folders[i].firstMark; at < end; ++at) {
                    if (marks[at] != ofFolder && (kind == Kind::folder || marks[at] != ofFile)) continue;
                    if (auto path = confirmed(*folders[i].node, name, kind, root)) found.push_back(*path);
                    break; // a folder has one entry of a name
                }
            }
        }
    };

    static AskedStatus statusOf(const FolderNode& folder, const std::string& name) {
        const AskedStatus status = statusAt(folder.pathOf(name));
        if (status || status.error() != std::errc::filename_too_long) return status;
        const OpenedFolder opened = openFolder(folder.path());
        if (!opened) return std::unexpected(opened.error());
        return entryStatus(*opened, name.c_str());
    }
    static std::optional<std::string> confirmed(const FolderNode& folder, const std::string& name, Kind kind,
                                                const SearchRoot& root) {
        std::optional<std::string> answer = root.answered(folder.pathOf(name));
        if (!answer) return std::nullopt;
        const AskedStatus status = statusOf(folder, name);
        const bool fits = status && (kind == Kind::any || status->kind == EntryKind::folder);
        return fits ? answer : std::nullopt;
    }

    SearchRoot root_;
    std::array<Part, TreeWalkOptions::mostThreads> parts_;
};

} // namespace

IndexedFiles indexFiles(const FileURL& root, const StopToken& stop) {
    auto index = std::make_shared<WalkedIndex>(root);
    TreeWalkOptions options;
    options.details = TreeWalkOptions::Details::namesOnly;
    options.stop = stop;
    switch (walkTree(index->walkedRoot(), *index, options)) {
    case WalkOutcome::finished: return index;
    case WalkOutcome::stopped: return std::unexpected(SearchFailure::stopped);
    case WalkOutcome::exhausted: return std::unexpected(SearchFailure::incomplete);
    case WalkOutcome::noFolder: break;
    }
    return std::unexpected(SearchFailure::noFolder);
}

} // namespace vesko
