#include "core/SizeLevels.h"

#include "base/FileSystem.h"
#include "concurrency/Cancelled.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskUsage.h"
#include "core/FastDirectorySize.h"
#include "core/MeasuredTrees.h"
#include "core/WalkedSize.h"

namespace vesko {

const SizeLevels& platformSizeLevels() {
    static const SizeLevels levels{
        [](const FileURL& url) { return fileExists(url); },
        [](const FileURL& url, bool followLinks) { return fastDirectorySize(url, followLinks); },
        [](const FileURL& url, bool followLinks) { return duSize(url, followLinks); },
        [](const FileURL& url) { return walkedSize(url); },
    };
    return levels;
}

SizeLevels sharedSizeLevels(std::shared_ptr<MeasuredTrees> trees) {
    SizeLevels levels = platformSizeLevels();
    levels.quick = [trees](const FileURL& url, bool followLinks) {
        const std::optional<std::int64_t> bytes = trees->bytes(url, followLinks);
        return bytes && *bytes > quickFigureFloor ? bytes : std::nullopt;
    };
    levels.du = [trees](const FileURL& url, bool followLinks) {
        const std::optional<std::int64_t> bytes = trees->bytes(url, followLinks);
        if (bytes) return *bytes;
        // A walk that was cut short must not be done again by a program that nobody can stop.
        return currentTaskIsCancelled() ? 0 : duSize(url, followLinks);
    };
    return levels;
}

std::int64_t sizeByLevels(const FileURL& url, bool followLinks, const SizeLevels& levels) {
    if (!levels.exists(url)) return 0;
    if (const std::optional<std::int64_t> quick = levels.quick(url, followLinks)) return *quick;
    if (const std::int64_t told = levels.du(url, followLinks); told > 0) return told;
    try {
        return levels.walk(url);
    } catch (const Cancelled&) {
        return 0;
    }
}

} // namespace vesko
