#include "platform/qt/ModelServer.h"
#include "platform/qt/ChatProtocol.h"
#include <stdexcept>
#include <utility>

namespace vesko {

namespace {

/// A request with nothing in it that tells one person from another.
std::string requestFor(std::string_view methodAndPath, const LoopbackAddress& server,
                       std::string_view document) {
    const bool isIPv6 = server.host.protocol() == QAbstractSocket::IPv6Protocol;
    const std::string host = server.host.toString().toStdString();
    std::string request(methodAndPath);
    request += " HTTP/1.1\r\nHost: " + (isIPv6 ? "[" + host + "]" : host) + ":" + std::to_string(server.port);
    request += "\r\nUser-Agent: vesko\r\nAccept: application/json\r\nAccept-Encoding: identity\r\n"
               "Connection: close\r\n";
    if (!document.empty())
        request +=
            "Content-Type: application/json\r\nContent-Length: " + std::to_string(document.size()) + "\r\n";
    request += "\r\n";
    request += document;
    return request;
}

} // namespace

class ModelServer::Session final : public LanguageModelSession {
public:
    Session(ModelServer& server, std::string instructions)
        : server_(server), instructions_(std::move(instructions)) {}

    /// A server loads its model when it is asked, and a question for nothing would only be in the way.
    void prewarm() override {}

    Task<std::string> respond(ModelRequest request) override {
        if (!server_.address_ || server_.model_.empty()) throw std::runtime_error("no model known");
        const std::string document = chatQuestion(server_.model_, instructions_, request);
        ModelExchange exchange(*server_.address_,
                               requestFor("POST /v1/chat/completions", *server_.address_, document),
                               server_.limits_.answer);
        const std::string completion = co_await exchange;
        std::optional<std::string> said = chatAnswer(completion);
        if (!said) throw std::runtime_error("no answer of the protocol's form");
        co_return std::move(*said);
    }

private:
    ModelServer& server_;
    std::string instructions_;
};

ModelServer::ModelServer(std::string_view address) : ModelServer(address, Limits()) {}

ModelServer::ModelServer(std::string_view address, Limits limits)
    : address_(LoopbackAddress::parse(address)), limits_(limits) {}

Task<ModelAvailability> ModelServer::availability() {
    std::optional<std::string> model;
    if (!address_) co_return ModelAvailability::unavailable;
    try {
        ModelExchange exchange(*address_, requestFor("GET /v1/models", *address_, {}), limits_.availability);
        const std::string list = co_await exchange;
        model = firstModel(list);
    } catch (const std::runtime_error&) {
        model.reset();
    }
    model_ = std::move(model).value_or(std::string());
    co_return model_.empty() ? ModelAvailability::unavailable : ModelAvailability::available;
}

std::unique_ptr<LanguageModelSession> ModelServer::session(std::string instructions) {
    return std::make_unique<Session>(*this, std::move(instructions));
}

} // namespace vesko
