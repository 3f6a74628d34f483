#pragma once
#include "base/FileURL.h"
#include "base/Prefetch.h"
#include "core/ScanCacheSnapshot.h"
#include <optional>
#include <string>

namespace vesko {

/// Keeps the results of the last scan in one file, so that the list is on screen before any probe has run.
/// The file is a convenience: every failure to read or write it is silent, as if there were none. Holds
/// nothing in memory. Both operations block and may be called from any thread; a load sees either the old
/// file or the new one, and of two saves at once the last one to finish wins.
class ScanCacheStore {
public:
    /// Reads nothing yet.
    explicit ScanCacheStore(FileURL fileURL);
    /// "scan-cache.json" in the application-support folder.
    static FileURL defaultFileURL();

    const FileURL& fileURL() const noexcept { return fileURL_; }

    /// Replaces the file with this snapshot, in the current language.
    void save(const ScanCacheSnapshot& snapshot);
    /// The snapshot of the file; nothing for a missing or damaged file and for one of another schema or
    /// language. The disk is not asked whether the items are still there.
    std::optional<ScanCacheSnapshot> load();
    /// Begins to read on a thread, so that the next load finds the work done. What a load gives stays the
    /// same: a file that was saved, or replaced by someone else, meanwhile is read afresh.
    void prefetch();

private:
    struct Prefetched {
        std::optional<ScanCacheSnapshot> snapshot;
        std::string localeIdentifier;
        std::optional<Date> fileDate;
    };
    static Prefetched read(const FileURL& url);

    FileURL fileURL_;
    Prefetch<Prefetched> prefetch_;
};

} // namespace vesko
