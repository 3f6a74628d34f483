#include "platform/posix/ContinuousTime.h"
#include "platform/qt/WakeTimer.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace vesko {

class WakeTimer::Implementation {
public:
    explicit Implementation(std::function<void()> onRing) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(onRing));
    }

    void set(Instant instant) {
        const Duration longest = std::chrono::seconds(30);
        const Duration wait = std::clamp(instant - continuousNow(), Duration::zero(), longest);
        timer_.start(std::chrono::ceil<std::chrono::milliseconds>(wait));
    }
    void clear() { timer_.stop(); }

private:
    QTimer timer_;
};

WakeTimer::WakeTimer(std::function<void()> onRing)
    : implementation_(std::make_unique<Implementation>(std::move(onRing))) {}

WakeTimer::~WakeTimer() = default;

void WakeTimer::set(Instant instant) { implementation_->set(instant); }

void WakeTimer::clear() { implementation_->clear(); }

} // namespace vesko
