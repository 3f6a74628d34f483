#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace vesko {

// What a StopSource, its tokens and its callbacks share. All operations may be called from any thread.
// Written here because the standard one is not in every standard library that we build against.
class StopState {
public:
    class Registration; // one callback that waits for the request

    bool requested() const noexcept { return requested_.load(std::memory_order_acquire); }

    // The first call runs the registered callbacks on its own thread; further calls do nothing.
    void request();

    // Runs the callback at once, and gives nothing, when the stop was requested before.
    std::shared_ptr<Registration> add(std::function<void()> callback);

    // After this the callback neither runs nor is running, except when it is the callback itself that calls.
    void remove(const std::shared_ptr<Registration>& registration);

private:
    std::atomic<bool> requested_{false};
    std::mutex mutex_;
    std::condition_variable ended_;
    std::list<std::shared_ptr<Registration>> waiting_;
    std::thread::id requester_;
};

} // namespace vesko
