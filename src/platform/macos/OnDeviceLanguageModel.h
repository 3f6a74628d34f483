#pragma once
#include "enrichment/LanguageModel.h"
#include <memory>
#include <string>

namespace vesko {

/// The language model that is part of macOS (FoundationModels), reached through OnDeviceModel.h. An answer
/// that does not come within a minute is given up, so that nobody waits for a model that hangs. Main thread.
class OnDeviceLanguageModel final : public LanguageModel {
public:
    Task<ModelAvailability> availability() override;
    std::unique_ptr<LanguageModelSession> session(std::string instructions) override;
};

} // namespace vesko
