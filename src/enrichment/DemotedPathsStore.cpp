#include "enrichment/DemotedPathsStore.h"

#include "base/FileSystem.h"
#include "base/Json.h"
#include "base/Paths.h"
#include "base/StateFile.h"

namespace vesko {
namespace {

constexpr std::int64_t schemaVersion = 1;

std::unordered_set<std::string> decodePaths(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return {};
    std::int64_t version = 0;
    const auto list = document->root().member("paths");
    if (!readMember(document->root(), "schemaVersion", version) || version != schemaVersion || !list ||
        !list->isArray())
        return {};
    std::unordered_set<std::string> paths;
    for (const JsonValue value : list->elements()) {
        const auto path = value.string();
        if (!path) return {};
        paths.insert(standardizedPath(*path));
    }
    return paths;
}

} // namespace

DemotedPathsStore::DemotedPathsStore(FileURL fileURL) : fileURL_(std::move(fileURL)) {}

FileURL DemotedPathsStore::defaultFileURL() {
    return applicationSupportFolder().appending("demoted-paths.json");
}

std::unordered_set<std::string> DemotedPathsStore::load() const {
    const std::lock_guard lock(lock_);
    const auto bytes = readStateFile(fileURL_);
    if (!bytes) return {};
    return decodePaths(*bytes);
}

void DemotedPathsStore::clear() const {
    const std::lock_guard lock(lock_);
    (void)removeFile(fileURL_);
}

} // namespace vesko
