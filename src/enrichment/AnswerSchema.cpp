#include "enrichment/AnswerSchema.h"

#include "base/Json.h"
#include "base/JsonWriter.h"
#include <algorithm>
#include <cstddef>
#include <utility>

namespace vesko {
namespace {

using Failure = std::unexpected<std::string>;

constexpr std::string_view entriesKey = "entries";
/// An honest answer has some thousand bytes. Answers are read on the main thread, which has no time for more
/// than this.
constexpr std::size_t longestAnswer = 1 << 20;

std::string quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

bool isAllowed(const SchemaProperty& property, std::string_view text) {
    return !property.choices ||
           std::ranges::find(property.choices->words, text) != property.choices->words.end();
}

std::expected<std::optional<std::string>, std::string> decodeValue(const SchemaProperty& property,
                                                                   JsonValue value) {
    if (property.isOptional && value.isNull()) return std::nullopt;
    const std::optional<std::string_view> text = value.string();
    if (!text) return Failure("No text for " + quoted(property.name));
    if (!isAllowed(property, *text))
        return Failure("Unexpected value " + quoted(*text) + " for " + std::string(property.choices->name));
    return std::string(*text);
}

/// Each key that is there is one of the schema's, and there once.
std::expected<void, std::string> checkMembers(const AnswerSchema& schema, JsonValue record) {
    std::vector<std::string_view> seen;
    for (const JsonMember member : record.members()) {
        if (std::ranges::find(schema.properties, member.key, &SchemaProperty::name) ==
            schema.properties.end())
            return Failure("Unknown member " + quoted(member.key));
        if (std::ranges::find(seen, member.key) != seen.end())
            return Failure("Repeated member " + quoted(member.key));
        seen.push_back(member.key);
    }
    return {};
}

std::expected<AnswerEntry, std::string> decodeEntry(const AnswerSchema& schema, JsonValue record) {
    if (!record.isObject()) return Failure("No record where " + std::string(schema.entryName) + " belongs");
    if (auto checked = checkMembers(schema, record); !checked) return Failure(std::move(checked.error()));
    AnswerEntry entry;
    entry.reserve(schema.properties.size());
    for (const SchemaProperty& property : schema.properties) {
        const std::optional<JsonValue> member = record.member(property.name);
        if (!member) {
            if (!property.isOptional) return Failure("Missing member " + quoted(property.name));
            entry.emplace_back(std::nullopt);
            continue;
        }
        auto value = decodeValue(property, *member);
        if (!value) return Failure(std::move(value.error()));
        entry.push_back(std::move(*value));
    }
    return entry;
}

void writeProperty(JsonWriter& writer, const SchemaProperty& property) {
    writer.key(property.name);
    writer.beginObject();
    writer.key("type");
    if (property.isOptional) {
        writer.beginArray();
        writer.string("string");
        writer.string("null");
        writer.endArray();
    } else {
        writer.string("string");
    }
    if (property.choices) {
        writer.key("enum");
        writer.beginArray();
        for (const std::string_view word : property.choices->words) writer.string(word);
        if (property.isOptional) writer.null();
        writer.endArray();
    }
    if (!property.description.empty()) {
        writer.key("description");
        writer.string(property.description);
    }
    writer.endObject();
}

/// The members of an object that are all required, and that no other is.
void closeRecord(JsonWriter& writer, std::span<const std::string_view> required) {
    writer.key("required");
    writer.beginArray();
    for (const std::string_view name : required) writer.string(name);
    writer.endArray();
    writer.key("additionalProperties");
    writer.boolean(false);
    writer.endObject();
}

void writeRecord(JsonWriter& writer, const AnswerSchema& schema) {
    std::vector<std::string_view> names;
    writer.beginObject();
    writer.key("type");
    writer.string("object");
    writer.key("properties");
    writer.beginObject();
    for (const SchemaProperty& property : schema.properties) {
        writeProperty(writer, property);
        names.push_back(property.name);
    }
    writer.endObject();
    closeRecord(writer, names);
}

} // namespace

std::expected<std::vector<AnswerEntry>, std::string> decodeAnswer(const AnswerSchema& schema,
                                                                  std::string_view json) {
    if (json.size() > longestAnswer) return Failure("An answer of " + std::to_string(json.size()) + " bytes");
    const std::optional<JsonDocument> document = JsonDocument::parse(json);
    if (!document) return Failure("No JSON document");
    const JsonMembers members = document->root().members();
    const std::optional<JsonValue> list = document->root().member(entriesKey);
    if (members.size() != 1 || !list || !list->isArray())
        return Failure("No " + std::string(schema.name) + " with its one list");
    std::vector<AnswerEntry> entries;
    entries.reserve(list->elements().size());
    for (const JsonValue record : list->elements()) {
        auto entry = decodeEntry(schema, record);
        if (!entry) return Failure(std::move(entry.error()));
        entries.push_back(std::move(*entry));
    }
    return entries;
}

std::string jsonSchema(const AnswerSchema& schema) {
    JsonWriter writer;
    writer.beginObject();
    writer.key("type");
    writer.string("object");
    writer.key("properties");
    writer.beginObject();
    writer.key(entriesKey);
    writer.beginObject();
    writer.key("type");
    writer.string("array");
    writer.key("items");
    writeRecord(writer, schema);
    writer.endObject();
    writer.endObject();
    closeRecord(writer, std::span(&entriesKey, 1));
    return writer.take();
}

} // namespace vesko
