#include "enrichment/EnrichmentCacheFile.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include "base/Paths.h"

namespace vesko {
namespace {

constexpr std::int64_t schemaVersion = 2;

bool hasForm(const EnrichmentKey& key, const Enrichment& entry) {
    return isUtf8(key.rawValue) && isUtf8(entry.friendlyName) && isUtf8(entry.reason) &&
           isUtf8(entry.kind.value_or("")) && isUtf8(entry.modelVersion.value_or(""));
}

void writeText(JsonWriter& json, std::string_view key, std::string_view text) {
    json.key(key);
    json.string(text);
}

void writeEnrichment(JsonWriter& json, const Enrichment& entry) {
    json.beginObject();
    writeText(json, "friendlyName", entry.friendlyName);
    writeText(json, "safety", safetyWord(entry.safety));
    writeText(json, "reason", entry.reason);
    if (entry.kind) writeText(json, "kind", *entry.kind);
    writeText(json, "source", enrichmentSourceWord(entry.source));
    if (entry.modelVersion) writeText(json, "modelVersion", *entry.modelVersion);
    json.key("updatedAt");
    json.number(referenceSeconds(entry.updatedAt));
    json.endObject();
}

std::size_t expectedLength(const EnrichmentEntries& entries) {
    std::size_t length = 128;
    for (const auto& [key, entry] : entries)
        length += 192 + key.rawValue.size() + entry.friendlyName.size() + entry.reason.size();
    return length;
}

bool readEnrichment(JsonValue value, Enrichment& into) {
    std::string_view safetyText;
    std::string_view sourceText;
    double updatedAt = 0;
    if (!readMember(value, "friendlyName", into.friendlyName) || !readMember(value, "safety", safetyText) ||
        !readMember(value, "reason", into.reason) || !readMember(value, "kind", into.kind) ||
        !readMember(value, "source", sourceText) || !readMember(value, "modelVersion", into.modelVersion) ||
        !readMember(value, "updatedAt", updatedAt))
        return false;
    const auto safety = safetyFromWord(safetyText);
    const auto source = enrichmentSourceFromWord(sourceText);
    const auto date = dateFromReferenceSeconds(updatedAt);
    if (!safety || !source || !date) return false;
    into.safety = *safety;
    into.source = *source;
    into.updatedAt = *date;
    return true;
}

bool readEntry(JsonValue value, EnrichmentKey& key, Enrichment& entry) {
    const auto enrichment = value.member("enrichment");
    return readMember(value, "key", key.rawValue) && enrichment && readEnrichment(*enrichment, entry);
}

bool isOfVersion(const Enrichment& entry, std::string_view modelVersion) {
    return entry.source != EnrichmentSource::model || entry.modelVersion == modelVersion;
}

} // namespace

std::string EnrichmentCacheFile::encode(const EnrichmentEntries& entries, std::string_view localeIdentifier) {
    JsonWriter json;
    json.reserve(expectedLength(entries));
    json.beginObject();
    json.key("schemaVersion");
    json.integer(schemaVersion);
    writeText(json, "localeIdentifier", localeIdentifier);
    json.key("entries");
    json.beginArray();
    for (const auto& [key, entry] : entries) {
        if (!hasForm(key, entry)) continue;
        json.beginObject();
        writeText(json, "key", key.rawValue);
        json.key("enrichment");
        writeEnrichment(json, entry);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.take();
}

EnrichmentEntries EnrichmentCacheFile::decode(std::string_view bytes, std::string_view localeIdentifier,
                                              std::string_view modelVersion) {
    const auto document = JsonDocument::parse(bytes);
    if (!document) return {};
    const JsonValue root = document->root();
    std::int64_t version = 0;
    std::optional<std::string_view> locale;
    const auto list = root.member("entries");
    if (!readMember(root, "schemaVersion", version) || version != schemaVersion ||
        !readMember(root, "localeIdentifier", locale) || locale != localeIdentifier || !list ||
        !list->isArray())
        return {};
    EnrichmentEntries entries;
    entries.reserve(list->elements().size());
    for (const JsonValue value : list->elements()) {
        EnrichmentKey key;
        Enrichment entry;
        if (!readEntry(value, key, entry)) return {};
        if (isOfVersion(entry, modelVersion)) entries.insert_or_assign(std::move(key), std::move(entry));
    }
    return entries;
}

} // namespace vesko
