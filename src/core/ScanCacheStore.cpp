#include "core/ScanCacheStore.h"

#include "base/FileSystem.h"
#include "base/Paths.h"
#include "base/StateFile.h"
#include "base/StringCatalog.h"
#include "core/ScanCacheFile.h"

namespace vesko {

ScanCacheStore::ScanCacheStore(FileURL fileURL) : fileURL_(std::move(fileURL)) {}

FileURL ScanCacheStore::defaultFileURL() { return applicationSupportFolder().appending("scan-cache.json"); }

void ScanCacheStore::save(const ScanCacheSnapshot& snapshot) {
    writeStateFile(fileURL_, ScanCacheFile::encode(snapshot, currentLocaleIdentifier()));
    prefetch_.drop();
}

ScanCacheStore::Prefetched ScanCacheStore::read(const FileURL& url) {
    Prefetched result{std::nullopt, std::string(currentLocaleIdentifier()), contentModificationDate(url)};
    if (const auto bytes = readStateFile(url))
        result.snapshot = ScanCacheFile::decode(*bytes, result.localeIdentifier);
    return result;
}

std::optional<ScanCacheSnapshot> ScanCacheStore::load() {
    auto ready = prefetch_.take();
    if (ready && ready->localeIdentifier == currentLocaleIdentifier() &&
        ready->fileDate == contentModificationDate(fileURL_))
        return std::move(ready->snapshot);
    return read(fileURL_).snapshot;
}

void ScanCacheStore::prefetch() {
    prefetch_.start([url = fileURL_] { return read(url); });
}

} // namespace vesko
