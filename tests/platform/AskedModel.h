#pragma once
#include "concurrency/Concurrency.h"
#include "enrichment/LanguageModel.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace vesko::testing {

inline constexpr std::array<SchemaProperty, 2> sampleProperties{{
    {"id", "The id."},
    {"kind", "Perhaps a kind.", nullptr, true},
}};
inline constexpr AnswerSchema sampleSchema{"Sample", "SampleEntry", sampleProperties};

/// The toolkit's loop with all that a task needs, turned by hand.
class TurnedLoop {
public:
    TaskContext context() {
        TaskContext made;
        made.home = &home_;
        made.workers = &workers_;
        made.clock = &clock_;
        made.registry = &registry_;
        return made;
    }
    /// Turns until the condition holds, for ten seconds at most; whether it holds.
    static bool turnUntil(const std::function<bool()>& holds, int milliseconds = 10'000) {
        const QDeadlineTimer end(milliseconds);
        while (!holds() && !end.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return holds();
    }
    static void turnFor(int milliseconds) {
        turnUntil([] { return false; }, milliseconds);
    }

private:
    QtExecutor home_;
    QtClock clock_;
    WorkerPool workers_;
    TaskRegistry registry_;
};

/// What became of one question.
struct Asked {
    bool ended = false;
    bool cancelled = false;
    std::optional<std::string> answer;
    std::string failure;
};

inline ModelRequest sampleRequest(std::string prompt) {
    ModelRequest request;
    request.prompt = std::move(prompt);
    request.schema = &sampleSchema;
    request.options.temperature = 0.0;
    return request;
}

inline Task<void> askInto(LanguageModel& model, ModelRequest request, Asked& asked) {
    try {
        const ModelAvailability found = co_await model.availability();
        if (found != ModelAvailability::available) throw std::runtime_error("unavailable");
        const std::unique_ptr<LanguageModelSession> session = model.session("Be brief.");
        session->prewarm();
        asked.answer = co_await session->respond(std::move(request));
    } catch (const Cancelled&) {
        asked.cancelled = true;
    } catch (const std::exception& error) {
        asked.failure = error.what();
    }
    asked.ended = true;
}

inline Asked ask(TurnedLoop& loop, LanguageModel& model, ModelRequest request = sampleRequest("Who?")) {
    Asked asked;
    const auto task = spawn(loop.context(), [&] { return askInto(model, request, asked); });
    loop.turnUntil([&] { return task.done(); });
    return asked;
}

inline std::optional<ModelAvailability> availabilityOf(TurnedLoop& loop, LanguageModel& model) {
    std::optional<ModelAvailability> found;
    const auto task = spawn(loop.context(), [&]() -> Task<void> { found = co_await model.availability(); });
    loop.turnUntil([&] { return task.done(); });
    return found;
}

} // namespace vesko::testing
