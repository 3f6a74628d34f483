#include "orchestration/RemovalRelay.h"

#include "concurrency/HomeGate.h"

namespace vesko {

namespace {

constexpr std::chrono::milliseconds betweenMessages{50};

} // namespace

void RemovalRelay::report(std::int64_t bytesFreed) {
    {
        const std::lock_guard lock(mutex_);
        news_.bytesInside = bytesFreed;
    }
    post();
}

void RemovalRelay::settle(Outcome outcome) {
    {
        const std::lock_guard lock(mutex_);
        news_.settled.push_back(std::move(outcome));
        news_.bytesInside = 0;
    }
    post();
}

void RemovalRelay::post() {
    const auto now = std::chrono::steady_clock::now();
    if (now - last_ < betweenMessages) return;
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(isOnItsWay_, true)) return;
    }
    last_ = now;
    postHome(home_, [self = shared_from_this()] { self->tellNews(); });
}

void RemovalRelay::tellNews() {
    News news;
    {
        const std::lock_guard lock(mutex_);
        isOnItsWay_ = false;
        news.settled.swap(news_.settled);
        news.bytesInside = news_.bytesInside;
    }
    if (tell_) tell_(std::move(news));
}

void RemovalRelay::close() {
    tellNews();
    tell_ = nullptr;
}

} // namespace vesko
