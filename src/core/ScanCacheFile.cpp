#include "core/ScanCacheFile.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include "base/Paths.h"

namespace vesko {
namespace {

constexpr std::int64_t schemaVersion = 1;

/// Texts shown on screen come from the catalog and from tools; one that is no UTF-8 must not cost the file.
void writeText(JsonWriter& json, std::string_view key, std::string_view text) {
    json.key(key);
    if (isUtf8(text))
        json.string(text);
    else
        json.string(escapedForDisplay(text));
}

void writeInteger(JsonWriter& json, std::string_view key, std::int64_t value) {
    json.key(key);
    json.integer(value);
}

void writeItem(JsonWriter& json, const ScannableItem& item) {
    if (!isUtf8(item.url.path()) || !isUtf8(item.enrichmentKey.rawValue)) return;
    json.beginObject();
    json.key("path");
    json.string(item.url.path());
    writeInteger(json, "size", item.size);
    json.key("isDirectory");
    json.boolean(item.isDirectory);
    json.key("enrichmentKey");
    json.string(item.enrichmentKey.rawValue);
    json.endObject();
}

void writeGroup(JsonWriter& json, const CleanupGroup& group) {
    json.beginObject();
    writeText(json, "id", group.id);
    writeText(json, "title", group.title);
    writeText(json, "icon", group.icon);
    writeText(json, "sectionID", group.section.id);
    writeInteger(json, "sectionSortIndex", group.section.sortIndex);
    writeText(json, "providerID", group.providerID.rawValue);
    writeText(json, "relevancePolicy", relevancePolicyWord(group.relevancePolicy));
    writeText(json, "subtitle", group.subtitle);
    writeText(json, "baselineSafety", safetyWord(group.baselineSafety));
    writeText(json, "baselineReason", group.baselineReason);
    json.key("items");
    json.beginArray();
    for (const ScannableItem& item : group.items) writeItem(json, item);
    json.endArray();
    json.endObject();
}

void writeFingerprint(JsonWriter& json, const ProbeFingerprint& fingerprint) {
    json.beginObject();
    json.key("pathMtimes");
    json.beginObject();
    for (const auto& [path, date] : fingerprint.pathMtimes)
        if (isUtf8(path)) writeText(json, path, iso8601(date));
    json.endObject();
    json.endObject();
}

void writeFingerprints(JsonWriter& json, const ProbeFingerprints& fingerprints) {
    if (fingerprints.empty()) return;
    json.key("probeFingerprints");
    json.beginObject();
    for (const auto& [probe, fingerprint] : fingerprints) {
        if (!isUtf8(probe)) continue;
        json.key(probe);
        writeFingerprint(json, fingerprint);
    }
    json.endObject();
}

std::size_t expectedLength(const ScanCacheSnapshot& snapshot) {
    std::size_t length = 4096;
    for (const CleanupGroup& group : snapshot.groups)
        for (const ScannableItem& item : group.items)
            length += 80 + item.url.path().size() + item.enrichmentKey.rawValue.size();
    return length;
}

bool readItem(JsonValue value, ScannableItem& into) {
    std::string path;
    if (!readMember(value, "path", path) || !readMember(value, "size", into.size) ||
        !readMember(value, "isDirectory", into.isDirectory) ||
        !readMember(value, "enrichmentKey", into.enrichmentKey.rawValue))
        return false;
    into.url = FileURL(std::move(path));
    return true;
}

/// `total` adds up the sizes of all items: everybody who shows a group adds them up too and stops the process
/// where the sum does not fit, which a file must not bring about.
bool readItems(JsonValue group, ItemList& into, std::int64_t& total) {
    const auto list = group.member("items");
    if (!list || !list->isArray()) return false;
    std::vector<ScannableItem> items;
    items.reserve(list->elements().size());
    for (const JsonValue value : list->elements()) {
        ScannableItem& item = items.emplace_back();
        if (!readItem(value, item) || __builtin_add_overflow(total, item.size, &total)) return false;
    }
    into = ItemList(std::move(items));
    return true;
}

bool readGroup(JsonValue value, CleanupGroup& into, std::int64_t& total) {
    std::string_view policy;
    std::string_view safetyText;
    if (!readMember(value, "id", into.id) || !readMember(value, "title", into.title) ||
        !readMember(value, "icon", into.icon) || !readMember(value, "sectionID", into.section.id) ||
        !readMember(value, "sectionSortIndex", into.section.sortIndex) ||
        !readMember(value, "providerID", into.providerID.rawValue) ||
        !readMember(value, "relevancePolicy", policy) || !readMember(value, "subtitle", into.subtitle) ||
        !readMember(value, "baselineSafety", safetyText) ||
        !readMember(value, "baselineReason", into.baselineReason) || !readItems(value, into.items, total))
        return false;
    const auto safety = safetyFromWord(safetyText);
    if (!safety) return false;
    into.baselineSafety = *safety;
    into.section.title = into.section.id;
    into.relevancePolicy =
        policy == "alwaysRelevant" ? RelevancePolicy::alwaysRelevant : RelevancePolicy::standard;
    return true;
}

bool readGroups(JsonValue root, std::vector<CleanupGroup>& into) {
    const auto list = root.member("groups");
    if (!list || !list->isArray()) return false;
    std::int64_t total = 0;
    into.reserve(list->elements().size());
    for (const JsonValue value : list->elements())
        if (!readGroup(value, into.emplace_back(), total)) return false;
    return true;
}

bool readFingerprint(JsonValue value, ProbeFingerprint& into) {
    const auto dates = value.member("pathMtimes");
    if (!dates || !dates->isObject()) return false;
    for (const auto& [path, date] : dates->members())
        if (!readJson(date, into.pathMtimes[std::string(path)])) return false;
    return true;
}

bool readFingerprints(JsonValue root, ProbeFingerprints& into) {
    const auto list = root.member("probeFingerprints");
    if (!list || list->isNull()) return true;
    if (!list->isObject()) return false;
    for (const auto& [probe, value] : list->members()) {
        ProbeFingerprint fingerprint;
        if (!readFingerprint(value, fingerprint)) return false;
        into.insert_or_assign(std::string(probe), std::move(fingerprint));
    }
    return true;
}

} // namespace

std::string ScanCacheFile::encode(const ScanCacheSnapshot& snapshot, std::string_view localeIdentifier) {
    JsonWriter json;
    json.reserve(expectedLength(snapshot));
    json.beginObject();
    writeInteger(json, "schemaVersion", schemaVersion);
    writeText(json, "localeIdentifier", localeIdentifier);
    writeText(json, "scanDate", iso8601(snapshot.scanDate));
    writeInteger(json, "foundTotalBytes", snapshot.foundTotalBytes);
    json.key("groups");
    json.beginArray();
    for (const CleanupGroup& group : snapshot.groups) writeGroup(json, group);
    json.endArray();
    if (snapshot.lastCleanupDate) writeText(json, "lastCleanupDate", iso8601(*snapshot.lastCleanupDate));
    if (snapshot.lastCleanupFreedBytes)
        writeInteger(json, "lastCleanupFreedBytes", *snapshot.lastCleanupFreedBytes);
    writeFingerprints(json, snapshot.probeFingerprints);
    json.endObject();
    return json.take();
}

std::optional<ScanCacheSnapshot> ScanCacheFile::decode(std::string_view bytes,
                                                       std::string_view localeIdentifier) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return std::nullopt;
    const JsonValue root = document->root();
    std::int64_t version = 0;
    std::string_view locale;
    ScanCacheSnapshot snapshot;
    if (!readMember(root, "schemaVersion", version) || version != schemaVersion ||
        !readMember(root, "localeIdentifier", locale) || locale != localeIdentifier ||
        !readMember(root, "scanDate", snapshot.scanDate) ||
        !readMember(root, "foundTotalBytes", snapshot.foundTotalBytes) ||
        !readMember(root, "lastCleanupDate", snapshot.lastCleanupDate) ||
        !readMember(root, "lastCleanupFreedBytes", snapshot.lastCleanupFreedBytes) ||
        !readGroups(root, snapshot.groups) || !readFingerprints(root, snapshot.probeFingerprints))
        return std::nullopt;
    return snapshot;
}

} // namespace vesko
