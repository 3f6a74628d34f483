#pragma once
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a language model is asked to answer, as data: one table serves the question, the check of the answer
/// and whatever form an adapter's model wants to be told in. Every answer is one list, "entries", of records
/// that hold texts alone.
namespace vesko {

/// A text that is one of a few words.
struct SchemaChoices {
    std::string_view name;
    std::span<const std::string_view> words;
};

struct SchemaProperty {
    std::string_view name;
    std::string_view description;           ///< part of the question, in its very words; empty: none
    const SchemaChoices* choices = nullptr; ///< none: any text
    bool isOptional = false;
};

struct AnswerSchema {
    std::string_view name;      ///< of the whole answer
    std::string_view entryName; ///< of one record
    std::span<const SchemaProperty> properties;
};

/// One record of an answer: its values in the order of the schema's properties, nothing for an optional one
/// that is missing or null.
using AnswerEntry = std::vector<std::optional<std::string>>;

/// Reads an answer strictly: one JSON document of exactly this form, with nothing before, behind, missing or
/// besides, of at most 1 MiB. Whatever differs makes the whole answer worthless; the failure says what, for a
/// developer.
std::expected<std::vector<AnswerEntry>, std::string> decodeAnswer(const AnswerSchema& schema,
                                                                  std::string_view json);

/// The same as a JSON Schema (json-schema.org, 2020-12) in the narrow form that servers call strict: every
/// member required, none besides, an optional text nullable.
std::string jsonSchema(const AnswerSchema& schema);

} // namespace vesko
