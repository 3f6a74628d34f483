#include "enrichment/AskModel.h"

#include <cstddef>
#include <utility>

namespace vesko {
namespace {

/// How many bytes at the beginning of the text are one character that could end a line or act on a terminal.
/// A byte that leads a sequence of several occurs in no other place, so this needs no well-formed text.
std::size_t controlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x20 || first == 0x7f) return 1;
    if (first == 0xc2 && text.size() > 1) {
        const auto second = static_cast<unsigned char>(text[1]);
        return second >= 0x80 && second <= 0x9f ? 2 : 0;
    }
    return text.starts_with("\xe2\x80\xa8") || text.starts_with("\xe2\x80\xa9") ? 3 : 0;
}

void appendEscaped(std::string& text, char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text += "\\x";
    text += digits[value >> 4];
    text += digits[value & 15];
}

} // namespace

Task<bool> canAsk(std::shared_ptr<LanguageModel> model) {
    ModelAvailability found = ModelAvailability::unavailable;
    try {
        found = co_await model->availability();
    } catch (...) {
        found = ModelAvailability::unavailable;
    }
    co_return found == ModelAvailability::available;
}

Task<std::optional<std::string>> askModel(std::shared_ptr<LanguageModel> model, std::string instructions,
                                          std::string prompt, const AnswerSchema* schema) {
    ModelRequest request{.prompt = std::move(prompt),
                         .schema = schema,
                         .includeSchemaInPrompt = true,
                         .options = {.temperature = 0.0, .maximumResponseTokens = std::nullopt}};
    std::optional<std::string> answer;
    try {
        const std::unique_ptr<LanguageModelSession> session = model->session(std::move(instructions));
        session->prewarm();
        answer = co_await session->respond(std::move(request));
    } catch (...) {
        answer.reset();
    }
    co_return answer;
}

std::string promptField(std::string_view bytes) {
    std::string field;
    field.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t control = controlLength(bytes.substr(at));
        if (control == 0) field += bytes[at++];
        for (const std::size_t end = at + control; control > 0 && at < end; ++at)
            appendEscaped(field, bytes[at]);
    }
    return field;
}

} // namespace vesko
