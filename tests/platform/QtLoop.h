#pragma once
#include "concurrency/Concurrency.h"
#include "platform/qt/QtClock.h"
#include "platform/qt/QtExecutor.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <optional>

namespace vesko::testing {

/// The toolkit's loop with flows on it; measures how long it ever stood still.
class QtLoop {
public:
    QtLoop() {
        since_.start();
        ticks_.callOnTimeout([this] { longestStandstill_ = std::max(longestStandstill_, since_.restart()); });
        ticks_.start(5);
    }
    ~QtLoop() {
        shutDown(registry_, [] { QCoreApplication::processEvents(); }, std::chrono::seconds(2));
    }
    QtLoop(const QtLoop&) = delete;
    QtLoop& operator=(const QtLoop&) = delete;

    TaskContext context() { return {&home_, &workers_, &clock_, {}, &registry_}; }

    /// False: the limit passed first.
    template <class Condition>
    bool until(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        QElapsedTimer timer;
        timer.start();
        since_.restart();
        while (!condition()) {
            if (timer.hasExpired(limit.count())) return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        }
        return true;
    }
    void turnFor(std::chrono::milliseconds time) {
        until([] { return false; }, time);
    }
    /// Runs a task to its end; nothing where it does not end in ten seconds.
    template <class F> auto run(F body) -> std::optional<typename std::invoke_result_t<F&>::value_type> {
        using T = typename std::invoke_result_t<F&>::value_type;
        const auto result = std::make_shared<std::optional<T>>();
        spawn(context(), [result, body = std::move(body)]() mutable -> Task<void> {
            T value = co_await body();
            *result = std::move(value);
        });
        until([&] { return result->has_value(); });
        return *result;
    }
    std::chrono::milliseconds longestStandstill() const {
        return std::chrono::milliseconds(longestStandstill_);
    }

private:
    QtExecutor home_;
    QtClock clock_;
    WorkerPool workers_;
    TaskRegistry registry_;
    QTimer ticks_;
    QElapsedTimer since_;
    qint64 longestStandstill_ = 0;
};

} // namespace vesko::testing
