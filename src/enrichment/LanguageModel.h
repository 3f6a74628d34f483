#pragma once
#include "concurrency/Task.h"
#include "enrichment/LanguageModelSession.h"
#include <memory>
#include <string>

namespace vesko {

/// Why there is no model is of no interest to anybody.
enum class ModelAvailability { available, unavailable };

/// The language model of this machine. What it is asked never leaves the machine. Main thread.
class LanguageModel {
public:
    virtual ~LanguageModel() = default;
    /// Whether a question would be answered now. A task, since asking a server takes a moment; throws nothing
    /// but the cancellation of its task.
    virtual Task<ModelAvailability> availability() = 0;
    /// A fresh conversation that knows the instructions and nothing of other sessions. The model outlives it.
    virtual std::unique_ptr<LanguageModelSession> session(std::string instructions) = 0;
};

} // namespace vesko
