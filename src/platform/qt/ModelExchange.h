#pragma once
#include "concurrency/Task.h"
#include "concurrency/Wakeup.h"
#include "platform/qt/HttpAnswer.h"
#include "platform/qt/LoopbackAddress.h"
#include <QTcpSocket>
#include <coroutine>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vesko {

/// How long and how much an answer may be.
struct ExchangeLimits {
    Duration total;    ///< from the question to the last byte
    Duration silence;  ///< without a byte, once the first has come
    std::size_t bytes; ///< of the answer's document
};

/// One question to a server on a connection of its own. Awaiting it gives the answer, a JSON document with
/// status 200. Throws std::runtime_error for anything else, and Cancelled as soon as the task is cancelled.
/// The connection is closed when the answer is there, when there will be none, and when this object goes.
/// Main thread, which never waits.
///
/// The toolkit's own HTTP client is not used: it asks again by itself when a connection breaks, and goes on
/// reading an answer that was given up.
class ModelExchange {
public:
    /// The request as it goes over the wire.
    ModelExchange(LoopbackAddress server, std::string request, ExchangeLimits limits);
    ModelExchange(const ModelExchange&) = delete;
    ModelExchange& operator=(const ModelExchange&) = delete;
    ~ModelExchange();

    bool await_ready() const noexcept { return false; }
    template <class Promise> bool await_suspend(std::coroutine_handle<Promise> asking) {
        return start(asking, asking.promise().context);
    }
    std::string await_resume();

private:
    struct CloseLater {
        void operator()(QTcpSocket* socket) const;
    };

    bool start(std::coroutine_handle<> asking, const TaskContext& context);
    void open();
    void take();
    void closed();
    void fail(const char* why);
    void wake();
    void setTimer(std::optional<Clock::Id>& timer, Duration duration, const char* why);

    LoopbackAddress server_;
    std::string request_;
    ExchangeLimits limits_;
    HttpAnswer answer_;
    const char* failure_ = nullptr;
    std::unique_ptr<QTcpSocket, CloseLater> socket_;
    std::shared_ptr<Wakeup> wakeup_; ///< none: the task was cancelled before
    Clock* clock_ = nullptr;
    std::optional<Clock::Id> end_;
    std::optional<Clock::Id> silence_;
    std::optional<StopCallback> onStop_;
};

} // namespace vesko
