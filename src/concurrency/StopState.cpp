#include "concurrency/StopState.h"

#include <utility>

namespace vesko {

class StopState::Registration {
public:
    enum class Phase { Waiting, Running, Ended };

    explicit Registration(std::function<void()> f) : callback(std::move(f)) {}

    std::function<void()> callback;
    Phase phase = Phase::Waiting;
    std::list<std::shared_ptr<Registration>>::iterator place;
};

void StopState::request() {
    std::unique_lock lock(mutex_);
    if (requested_.exchange(true, std::memory_order_acq_rel)) return;
    requester_ = std::this_thread::get_id();
    while (!waiting_.empty()) {
        auto registration = std::move(waiting_.front());
        waiting_.pop_front();
        registration->phase = Registration::Phase::Running;
        lock.unlock();
        std::exchange(registration->callback, nullptr)();
        lock.lock();
        registration->phase = Registration::Phase::Ended;
        ended_.notify_all();
    }
}

std::shared_ptr<StopState::Registration> StopState::add(std::function<void()> callback) {
    {
        std::lock_guard lock(mutex_);
        if (!requested_.load(std::memory_order_relaxed)) {
            auto registration = std::make_shared<Registration>(std::move(callback));
            registration->place = waiting_.insert(waiting_.end(), registration);
            return registration;
        }
    }
    callback();
    return nullptr;
}

void StopState::remove(const std::shared_ptr<Registration>& registration) {
    std::unique_lock lock(mutex_);
    if (registration->phase == Registration::Phase::Waiting) {
        waiting_.erase(registration->place);
        registration->phase = Registration::Phase::Ended;
        return;
    }
    // A callback that removes itself would wait for its own end.
    if (requester_ == std::this_thread::get_id()) return;
    ended_.wait(lock, [&] { return registration->phase == Registration::Phase::Ended; });
}

} // namespace vesko
