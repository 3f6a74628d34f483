#pragma once
#include "base/FileURL.h"
#include <mutex>
#include <string>
#include <unordered_set>

namespace vesko {

/// The paths that a scan leaves out. Nothing writes the file: one that an earlier version left is removed at
/// every start, so the set is normally empty. Both operations block, may be called from any thread and are
/// silent about every failure.
class DemotedPathsStore {
public:
    explicit DemotedPathsStore(FileURL fileURL);
    /// "demoted-paths.json" in the application-support folder.
    static FileURL defaultFileURL();

    const FileURL& fileURL() const noexcept { return fileURL_; }

    /// The paths of the file in cleaned form; empty for a missing or damaged file or another schema.
    std::unordered_set<std::string> load() const;
    /// Removes the file.
    void clear() const;

private:
    FileURL fileURL_;
    mutable std::mutex lock_;
};

} // namespace vesko
