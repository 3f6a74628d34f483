#pragma once
#include "base/Date.h"
#include "base/FileURL.h"
#include "concurrency/StopToken.h"
#include "search/SearchFailure.h"
#include <expected>
#include <memory>
#include <string>
#include <vector>

/// Searching below a folder, as the system's index does on other systems. Left out are hidden entries with
/// all that is in them, the inside of dependency folders (`node_modules`, `Pods`), since what lies there
/// belongs to them, the inside of `Library/Caches`, and what can't be read. Nothing mounted below the root is
/// entered and no link followed; the root itself may be a link. Answers are absolute paths that begin with
/// the root as it was given, sorted by their bytes; a path that is no UTF-8 or holds a line's end is never
/// among them, since it would spoil an answer of one path a line. The platform layer implements this.
namespace vesko {

using FoundPaths = std::vector<std::string>;

/// The names below one folder as one walk met them. Never changes; any thread.
class FileIndex {
public:
    virtual ~FileIndex() = default;

    enum class Kind { folder, any };
    /// What is called exactly so and is still there. Asks the disk about the hits alone.
    virtual FoundPaths pathsNamed(const std::string& name, Kind kind) const = 0;
};

using IndexedFiles = std::expected<std::shared_ptr<const FileIndex>, SearchFailure>;
/// Walks the tree once, with several threads. The index takes 4 bytes an entry and some 100 a folder.
IndexedFiles indexFiles(const FileURL& root, const StopToken& stop);

/// The applications below the root, none of them inside another, that were last used before `limit`. An
/// application is a folder whose name ends in ".app" or a file whose name ends in ".AppImage"; its last use
/// is the latest date at which one of its executable files was read. Where the volume keeps no such dates it
/// has none, and is not found.
std::expected<FoundPaths, SearchFailure> findApplicationsUnusedSince(const FileURL& root, Date limit,
                                                                     const StopToken& stop);

} // namespace vesko
