#include "concurrency/Sleep.h"

namespace vesko {

bool Sleep::start(std::coroutine_handle<> sleeper, const TaskContext& context) {
    if (context.stop.stopRequested()) return false;
    auto wakeup = std::make_shared<Wakeup>(sleeper, *context.home);
    wakeup_ = wakeup;
    clock_ = context.clock;
    const Instant now = clock_->now();
    const Instant end = duration_ > Instant::max() - now ? Instant::max() : now + duration_;
    timer_ = clock_->at(end, [wakeup] { wakeup->fire(Wakeup::Reason::Ready); });
    onStop_.emplace(context.stop, [wakeup] { wakeup->fire(Wakeup::Reason::Cancelled); });
    wakeup->arm();
    return true;
}

void Sleep::await_resume() {
    onStop_.reset();
    if (!wakeup_) throw Cancelled{};
    if (!wakeup_->cancelled()) return;
    clock_->cancel(timer_);
    throw Cancelled{};
}

} // namespace vesko
