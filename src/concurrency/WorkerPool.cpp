#include "concurrency/WorkerPool.h"

#include "concurrency/CurrentTask.h"
#include "concurrency/HomeGate.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace vesko {

struct WorkerPool::State : std::enable_shared_from_this<WorkerPool::State> {
    struct Call {
        std::function<void()> closure;
        StopToken stop;
    };
    using Lock = std::unique_lock<std::mutex>;
    /// A worker that waits. Each has a condition variable to itself: to notify one that several threads share
    /// may take until a thread that was woken before has come to run, and a worker that stands behind others
    /// takes its time while the main thread posts.
    struct Sleeper {
        std::condition_variable wake;
        bool isCalled = false;
    };

    explicit State(WorkerPoolLimits l) : limits(l) {}

    // Idle workers are those that wait, so what exceeds them has nobody to run it.
    std::size_t unserved() const { return calls.size() > idle ? calls.size() - idle : 0; }

    void post(Call call);
    void start();
    void superviseStalls();
    void work(std::uint64_t id);
    bool waitForCall(Lock& lock);
    bool sleep(Lock& lock);
    void wakeOne();
    void leave(Lock& lock, std::uint64_t id);
    std::vector<std::thread> close();

    const WorkerPoolLimits limits;
    HomeGate gate;
    mutable std::mutex mutex;
    std::condition_variable overloaded;
    std::deque<Call> calls;
    std::vector<Sleeper*> sleepers; // those not called yet
    std::size_t idle = 0;           // those who sleep, and those who were called and have yet to come
    std::uint64_t taken = 0;
    std::uint64_t lastId = 0;
    bool closing = false;
    std::map<std::uint64_t, std::thread> workers;
    std::thread retired; // the last worker that ended for want of work, not joined yet
    std::thread supervisor;
};

void WorkerPool::State::post(Call call) {
    std::lock_guard lock(mutex);
    if (closing) return;
    calls.push_back(std::move(call));
    if (unserved() == 0) {
        wakeOne();
    } else if (workers.size() < limits.prompt) {
        start();
    } else if (workers.size() < limits.most) {
        if (!supervisor.joinable()) {
            supervisor = std::thread([self = shared_from_this()] { self->superviseStalls(); });
        }
        overloaded.notify_one();
    }
}

// With the lock held. Where the system refuses another thread, the calls wait for the workers there are.
void WorkerPool::State::start() {
    const std::uint64_t id = ++lastId;
    try {
        workers.emplace(id, std::thread([self = shared_from_this(), id] { self->work(id); }));
    } catch (const std::system_error&) {
        if (workers.empty()) throw;
    }
}

// Many short calls are served well by few workers; only when none is taken for a while are the workers
// blocked.
void WorkerPool::State::superviseStalls() {
    Lock lock(mutex);
    while (!closing) {
        overloaded.wait(lock, [&] { return closing || (unserved() > 0 && workers.size() < limits.most); });
        const std::uint64_t before = taken;
        overloaded.wait_for(lock, limits.stall, [&] { return closing; });
        if (closing || taken != before) continue;
        const std::size_t room = limits.most - std::min(limits.most, workers.size());
        const std::size_t more = std::min({unserved(), room, std::max<std::size_t>(workers.size(), 1)});
        for (std::size_t i = 0; i < more; ++i) start();
    }
}

void WorkerPool::State::work(std::uint64_t id) {
    Lock lock(mutex);
    while (waitForCall(lock)) {
        Call call = std::move(calls.front());
        calls.pop_front();
        ++taken;
        lock.unlock();
        {
            HomeGateScope through(gate);
            CurrentTaskScope task(std::move(call.stop));
            call.closure();
            call.closure = nullptr;
        }
        lock.lock();
    }
    leave(lock, id);
}

bool WorkerPool::State::waitForCall(Lock& lock) {
    while (calls.empty() && !closing) {
        if (!sleep(lock)) break;
    }
    return !calls.empty();
}

// Until a call wakes it, which another worker may have taken by then; false when none came for a while.
bool WorkerPool::State::sleep(Lock& lock) {
    Sleeper sleeper;
    sleepers.push_back(&sleeper);
    ++idle;
    sleeper.wake.wait_for(lock, limits.idle, [&] { return closing || sleeper.isCalled; });
    --idle;
    if (!sleeper.isCalled) std::erase(sleepers, &sleeper);
    return sleeper.isCalled;
}

// With the lock held, so that the sleeper is still there. Whoever was called and has yet to come takes a call
// too, so there may be nobody to wake.
void WorkerPool::State::wakeOne() {
    if (sleepers.empty()) return;
    Sleeper& last = *sleepers.back();
    sleepers.pop_back();
    last.isCalled = true;
    last.wake.notify_one();
}

// A thread can't join itself, so each one that leaves joins the one that left before it.
void WorkerPool::State::leave(Lock& lock, std::uint64_t id) {
    if (closing) return; // whoever closes has the thread
    auto self = workers.extract(id);
    std::thread previous = std::exchange(retired, std::move(self.mapped()));
    lock.unlock();
    if (previous.joinable()) previous.join();
}

std::vector<std::thread> WorkerPool::State::close() {
    std::vector<std::thread> threads;
    std::lock_guard lock(mutex);
    closing = true;
    threads.reserve(workers.size() + 2);
    for (auto& [id, thread] : workers) threads.push_back(std::move(thread));
    workers.clear();
    if (retired.joinable()) threads.push_back(std::move(retired));
    if (supervisor.joinable()) threads.push_back(std::move(supervisor));
    for (Sleeper* sleeper : sleepers) sleeper->wake.notify_one();
    overloaded.notify_all();
    return threads;
}

WorkerPool::WorkerPool(WorkerPoolLimits limits) : state_(std::make_shared<State>(limits)) {}

WorkerPool::~WorkerPool() {
    for (std::thread& thread : state_->close()) thread.join();
}

void WorkerPool::post(std::function<void()> closure) {
    state_->post({std::move(closure), currentStopToken()});
}

std::size_t WorkerPool::abandon() {
    std::deque<State::Call> dropped;
    std::size_t blocked = 0;
    {
        std::lock_guard lock(state_->mutex);
        dropped.swap(state_->calls);
        blocked = state_->workers.size() - state_->idle;
    }
    for (std::thread& thread : state_->close()) thread.detach();
    state_->gate.close();
    return blocked;
}

std::size_t WorkerPool::threads() const {
    std::lock_guard lock(state_->mutex);
    return state_->workers.size();
}

} // namespace vesko
