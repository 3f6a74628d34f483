#pragma once
#include "enrichment/LanguageModel.h"
#include <stdexcept>

namespace vesko {

/// Stands where there is no language model.
class UnavailableLanguageModel final : public LanguageModel {
public:
    Task<ModelAvailability> availability() override { co_return ModelAvailability::unavailable; }
    std::unique_ptr<LanguageModelSession> session(std::string) override {
        return std::make_unique<Session>();
    }

private:
    class Session final : public LanguageModelSession {
    public:
        void prewarm() override {}
        Task<std::string> respond(ModelRequest) override {
            throw std::runtime_error("no language model");
            co_return std::string();
        }
    };
};

} // namespace vesko
