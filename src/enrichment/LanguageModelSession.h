#pragma once
#include "concurrency/Task.h"
#include "enrichment/ModelRequest.h"
#include <string>

namespace vesko {

/// One conversation with a language model, without any tools. Main thread.
class LanguageModelSession {
public:
    virtual ~LanguageModelSession() = default;
    /// Lets the model get ready. Returns at once and can't fail.
    virtual void prewarm() = 0;
    /// The model's whole answer as it stands: the text of a JSON document that has the schema's form when all
    /// went well, which the asker checks. Throws where there is none, and soon after its task was cancelled.
    /// Outlives neither the session nor the schema.
    virtual Task<std::string> respond(ModelRequest request) = 0;
};

} // namespace vesko
