#include "platform/qt/ChatProtocol.h"
#include "base/Json.h"
#include "base/JsonWriter.h"
#include "enrichment/PromptText.h"

namespace vesko {

namespace {

constexpr std::string_view schemaIntroduction =
    "\n\nAnswer with one JSON document of this JSON schema and with nothing else. null stands for a value "
    "that is not there.\n";

void writeMessage(JsonWriter& writer, std::string_view role, std::string_view content) {
    writer.beginObject();
    writer.key("role");
    writer.string(role);
    writer.key("content");
    writer.string(content);
    writer.endObject();
}

/// The writer knows no ready-made JSON, so the document is closed here by hand.
std::string withResponseFormat(std::string question, const AnswerSchema& schema, std::string_view json) {
    JsonWriter name;
    name.string(schema.name);
    question.pop_back();
    question += R"(,"response_format":{"type":"json_schema","json_schema":{"name":)" + name.take();
    question += R"(,"strict":true,"schema":)";
    question += json;
    return question + "}}}";
}

} // namespace

std::optional<std::string> firstModel(std::string_view modelList) {
    const std::optional<JsonDocument> document = JsonDocument::parse(modelList);
    if (!document) return std::nullopt;
    const std::optional<JsonValue> list = document->root().member("data");
    if (!list || list->elements().size() == 0) return std::nullopt;
    std::string name;
    if (!readMember(*list->elements().begin(), "id", name) || name.empty()) return std::nullopt;
    return name;
}

std::string chatQuestion(std::string_view model, std::string_view instructions, const ModelRequest& request) {
    const std::string schema = request.schema ? jsonSchema(*request.schema) : std::string();
    std::string prompt = promptText(request.prompt);
    if (request.schema && request.includeSchemaInPrompt) prompt += std::string(schemaIntroduction) + schema;
    JsonWriter writer;
    writer.beginObject();
    writer.key("model");
    writer.string(model);
    writer.key("messages");
    writer.beginArray();
    writeMessage(writer, "system", promptText(instructions));
    writeMessage(writer, "user", prompt);
    writer.endArray();
    if (request.options.temperature) {
        writer.key("temperature");
        writer.number(*request.options.temperature);
    }
    if (request.options.maximumResponseTokens) {
        writer.key("max_tokens");
        writer.integer(*request.options.maximumResponseTokens);
    }
    writer.key("stream");
    writer.boolean(false);
    writer.endObject();
    return request.schema ? withResponseFormat(writer.take(), *request.schema, schema) : writer.take();
}

std::optional<std::string> chatAnswer(std::string_view completion) {
    const std::optional<JsonDocument> document = JsonDocument::parse(completion);
    if (!document) return std::nullopt;
    const std::optional<JsonValue> choices = document->root().member("choices");
    if (!choices || choices->elements().size() == 0) return std::nullopt;
    const std::optional<JsonValue> message = (*choices->elements().begin()).member("message");
    std::string said;
    if (!message || !readMember(*message, "content", said)) return std::nullopt;
    return said;
}

} // namespace vesko
