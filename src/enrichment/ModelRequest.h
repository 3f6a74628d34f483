#pragma once
#include "enrichment/AnswerSchema.h"
#include <cstdint>
#include <optional>
#include <string>

namespace vesko {

/// How a model is to answer. What is absent is left to the model.
struct GenerationOptions {
    std::optional<double> temperature;
    std::optional<std::int64_t> maximumResponseTokens;

    friend bool operator==(const GenerationOptions&, const GenerationOptions&) = default;
};

/// One question to a session.
struct ModelRequest {
    std::string prompt;                   ///< bytes; names in it need not be UTF-8
    const AnswerSchema* schema = nullptr; ///< lives for the whole program
    bool includeSchemaInPrompt = true;    ///< the model is to see the schema's names and descriptions too
    GenerationOptions options;
};

} // namespace vesko
