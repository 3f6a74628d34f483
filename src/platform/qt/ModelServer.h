#pragma once
#include "enrichment/LanguageModel.h"
#include "platform/qt/LoopbackAddress.h"
#include "platform/qt/ModelExchange.h"
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// A server for language models on this very machine, asked in the chat-completions protocol (GET /v1/models,
/// POST /v1/chat/completions with a JSON schema for the answer). It is available when it lists a model within
/// a second; the first one is used. Nothing but the loopback address is ever contacted: at any other address
/// there is no server, proxies are passed over, and a redirection is a failure. Each question has a
/// connection of its own, closed at its end and when its task is cancelled; nothing is asked twice or stored.
/// Main thread, which never waits.
class ModelServer final : public LanguageModel {
public:
    /// Models without a graphics card write some 15 words a second, and the answer for a batch has several
    /// hundred: a minute is what an honest answer can take. A server that hangs costs a pass no more than
    /// that either, since no pass begins a batch that late. An honest answer has some thousand bytes; what is
    /// allowed is read within 50 ms on the main thread, whatever it holds.
    struct Limits {
        ExchangeLimits availability{std::chrono::seconds(1), std::chrono::seconds(1), 1 << 18};
        ExchangeLimits answer{std::chrono::seconds(60), std::chrono::seconds(5), 1 << 18};
    };

    /// The address in the form that LoopbackAddress reads.
    explicit ModelServer(std::string_view address);
    ModelServer(std::string_view address, Limits limits);

    Task<ModelAvailability> availability() override;
    std::unique_ptr<LanguageModelSession> session(std::string instructions) override;

private:
    class Session;

    std::optional<LoopbackAddress> address_; ///< none: no address of this machine
    Limits limits_;
    std::string model_; ///< the one that was listed first; empty: none known
};

} // namespace vesko
