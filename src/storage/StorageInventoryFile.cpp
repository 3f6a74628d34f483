#include "storage/StorageInventoryFile.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include "base/Paths.h"

namespace vesko {
namespace {

constexpr std::int64_t schemaVersion = 1;

using Words = std::vector<std::string>;

/// Words that are no UTF-8, as paths may be, can't be written.
void writeWords(JsonWriter& json, std::string_view key, const Words& words) {
    json.key(key);
    json.beginArray();
    for (const std::string& word : words)
        if (isUtf8(word)) json.string(word);
    json.endArray();
}

void writeBucket(JsonWriter& json, const StorageCategoryBucket& bucket) {
    json.beginObject();
    json.key("id");
    json.string(bucket.id);
    json.key("titleKey");
    json.string(bucket.titleKey);
    json.key("icon");
    json.string(bucket.icon);
    json.key("bytes");
    json.integer(bucket.bytes);
    writeWords(json, "paths", bucket.paths);
    if (bucket.cleanupCategoryIDs) writeWords(json, "cleanupCategoryIDs", *bucket.cleanupCategoryIDs);
    json.endObject();
}

bool readWords(JsonValue value, Words& into) {
    if (!value.isArray()) return false;
    into.clear();
    for (const JsonValue word : value.elements())
        if (!readJson(word, into.emplace_back())) return false;
    return true;
}

bool readCategories(JsonValue bucket, std::optional<Words>& into) {
    const auto list = bucket.member("cleanupCategoryIDs");
    if (!list || list->isNull()) return true;
    return readWords(*list, into.emplace());
}

/// `total` adds up all buckets: whoever shows them does so too, and stops the process where the sum does not
/// fit, which a file must not bring about.
bool readBucket(JsonValue value, StorageCategoryBucket& into, std::int64_t& total) {
    const auto paths = value.member("paths");
    return readMember(value, "id", into.id) && readMember(value, "titleKey", into.titleKey) &&
           readMember(value, "icon", into.icon) && readMember(value, "bytes", into.bytes) && paths &&
           readWords(*paths, into.paths) && readCategories(value, into.cleanupCategoryIDs) &&
           !__builtin_add_overflow(total, into.bytes, &total);
}

bool readBuckets(JsonValue root, std::vector<StorageCategoryBucket>& into) {
    const auto list = root.member("buckets");
    if (!list || !list->isArray()) return false;
    std::int64_t total = 0;
    for (const JsonValue value : list->elements())
        if (!readBucket(value, into.emplace_back(), total)) return false;
    return true;
}

} // namespace

std::string StorageInventoryFile::encode(const StorageInventorySnapshot& snapshot) {
    JsonWriter json;
    json.beginObject();
    json.key("schemaVersion");
    json.integer(schemaVersion);
    json.key("capturedAt");
    json.string(iso8601(snapshot.capturedAt));
    json.key("volumeUsedBytes");
    json.integer(snapshot.volumeUsedBytes);
    json.key("buckets");
    json.beginArray();
    for (const StorageCategoryBucket& bucket : snapshot.buckets) writeBucket(json, bucket);
    json.endArray();
    json.endObject();
    return json.take();
}

std::optional<StorageInventorySnapshot> StorageInventoryFile::decode(std::string_view bytes) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return std::nullopt;
    const JsonValue root = document->root();
    std::int64_t version = 0;
    StorageInventorySnapshot snapshot;
    if (!readMember(root, "schemaVersion", version) || version != schemaVersion ||
        !readMember(root, "capturedAt", snapshot.capturedAt) ||
        !readMember(root, "volumeUsedBytes", snapshot.volumeUsedBytes) ||
        !readBuckets(root, snapshot.buckets))
        return std::nullopt;
    return snapshot;
}

} // namespace vesko
