#pragma once
#include "concurrency/Task.h"
#include "enrichment/AnswerSchema.h"
#include "enrichment/LanguageModel.h"
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// Whether the model can be asked now; a failure counts as no.
Task<bool> canAsk(std::shared_ptr<LanguageModel> model);

/// One question in a session of its own, so that no question knows of another, at the temperature that makes
/// answers repeatable. Nothing for any failure, cancellation included.
Task<std::optional<std::string>> askModel(std::shared_ptr<LanguageModel> model, std::string instructions,
                                          std::string prompt, const AnswerSchema* schema);

/// A name or path as it stands in a line of a prompt: the bytes of each line break and control character
/// (Unicode's Cc, the line and the paragraph separator) become "\xNN" with two upper-case hexadecimal digits,
/// so that no name can begin a line. Every other byte stays, also where the name is not UTF-8.
std::string promptField(std::string_view bytes);

} // namespace vesko
