#pragma once
#include "enrichment/ModelRequest.h"
#include <optional>
#include <string>
#include <string_view>

/// The documents of the chat-completions protocol, as far as they are needed: what servers for local models
/// commonly speak. Nothing here throws; a document of another form gives nothing.
namespace vesko {

/// The name of the first model of the list that GET /v1/models answers.
std::optional<std::string> firstModel(std::string_view modelList);

/// The question for POST /v1/chat/completions: the instructions as the system's message, the prompt as the
/// user's, and the answer's form as a strict JSON schema. Not every server shows the schema to the model, so
/// where the request wants that, it stands at the end of the prompt as well.
std::string chatQuestion(std::string_view model, std::string_view instructions, const ModelRequest& request);

/// What the model said, of the first choice of the answer.
std::optional<std::string> chatAnswer(std::string_view completion);

} // namespace vesko
