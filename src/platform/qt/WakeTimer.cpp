#include "platform/qt/WakeTimer.h"

#include <QSocketNotifier>

#include <algorithm>
#include <chrono>
#include <utility>

#include <sys/timerfd.h>
#include <unistd.h>

namespace vesko {

class WakeTimer::Implementation {
public:
    explicit Implementation(std::function<void()> onRing)
        : descriptor_(timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
          notifier_(descriptor_, QSocketNotifier::Read) {
        if (descriptor_ < 0) qFatal("timerfd_create failed");
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                         [this, onRing = std::move(onRing)] {
                             std::uint64_t rings = 0;
                             // Nothing to read: it was set anew since the loop saw it ring.
                             if (read(descriptor_, &rings, sizeof rings) == sizeof rings) onRing();
                         });
    }
    ~Implementation() {
        notifier_.setEnabled(false);
        close(descriptor_);
    }

    void set(Instant instant) {
        // A time of zero would clear the timer.
        const auto time = std::max(instant.time_since_epoch(), Duration(1));
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
        itimerspec when{};
        when.it_value.tv_sec = seconds.count();
        when.it_value.tv_nsec = (time - seconds).count();
        timerfd_settime(descriptor_, TFD_TIMER_ABSTIME, &when, nullptr);
    }
    void clear() {
        const itimerspec never{};
        timerfd_settime(descriptor_, 0, &never, nullptr);
    }

private:
    int descriptor_;
    QSocketNotifier notifier_;
};

WakeTimer::WakeTimer(std::function<void()> onRing)
    : implementation_(std::make_unique<Implementation>(std::move(onRing))) {}

WakeTimer::~WakeTimer() = default;

void WakeTimer::set(Instant instant) { implementation_->set(instant); }

void WakeTimer::clear() { implementation_->clear(); }

} // namespace vesko
