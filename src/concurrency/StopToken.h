#pragma once

#include "concurrency/Cancelled.h"
#include "concurrency/StopState.h"

#include <functional>
#include <memory>
#include <utility>

namespace vesko {

// The reading end of a cancellation, cheap to copy, asked from any thread. A default token is never stopped.
class StopToken {
public:
    StopToken() = default;
    explicit StopToken(std::shared_ptr<StopState> state) : state_(std::move(state)) {}

    bool stopRequested() const noexcept { return state_ && state_->requested(); }
    void throwIfStopped() const {
        if (stopRequested()) throw Cancelled{};
    }

private:
    friend class StopCallback;
    std::shared_ptr<StopState> state_;
};

// The writing end. Copies share one state. Dropping the source requests nothing.
class StopSource {
public:
    StopToken token() const { return StopToken(state_); }
    bool stopRequested() const noexcept { return state_->requested(); }
    // Runs the callbacks on the calling thread; a second request does nothing.
    void requestStop() const { state_->request(); }

private:
    std::shared_ptr<StopState> state_ = std::make_shared<StopState>();
};

// Calls back once when the stop is requested: on the requesting thread, or at once on this thread when it was
// requested before. The destructor waits for a callback that is running on another thread, so what the
// callback uses may be destroyed afterwards. The callback must not throw.
class StopCallback {
public:
    StopCallback(const StopToken& token, std::function<void()> callback) : state_(token.state_) {
        if (state_) registration_ = state_->add(std::move(callback));
    }
    StopCallback(const StopCallback&) = delete;
    StopCallback& operator=(const StopCallback&) = delete;
    ~StopCallback() {
        if (registration_) state_->remove(registration_);
    }

private:
    std::shared_ptr<StopState> state_;
    std::shared_ptr<StopState::Registration> registration_;
};

} // namespace vesko
