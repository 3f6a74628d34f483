#pragma once

#include "concurrency/Executor.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace vesko {

// Runs closures one after the other, in the order of posting, on the workers of another executor, which must
// outlive it. May be used from any thread. Destroying it leaves what is posted to run.
class SerialQueue : public Executor {
public:
    explicit SerialQueue(Executor& workers) : state_(std::make_shared<State>(workers)) {}

    void post(std::function<void()> closure) override {
        {
            std::lock_guard lock(state_->mutex);
            state_->closures.push_back(std::move(closure));
            if (state_->isRunning) return;
            state_->isRunning = true;
        }
        state_->workers.post([state = state_] { run(*state); });
    }

private:
    struct State {
        explicit State(Executor& executor) : workers(executor) {}
        Executor& workers;
        std::mutex mutex;
        std::deque<std::function<void()>> closures;
        bool isRunning = false;
    };

    static void run(State& state) {
        for (;;) {
            std::function<void()> next;
            {
                std::lock_guard lock(state.mutex);
                if (state.closures.empty()) {
                    state.isRunning = false;
                    return;
                }
                next = std::move(state.closures.front());
                state.closures.pop_front();
            }
            next();
        }
    }

    std::shared_ptr<State> state_;
};

} // namespace vesko
