#include "platform/macos/FakeActivities.h"

#include "platform/macos/FakeObjects.h"
#include <algorithm>
#include <mutex>
#include <thread>

namespace vesko::testing {
namespace {

FakeActivities current;
std::mutex mutex; // of what an activity keeps; a turn may be finished on any thread
std::vector<std::shared_ptr<const void>> handlers; // the program may call them as late as it likes

using Activity = FakeActivities::Activity;
std::shared_ptr<Activity>& activityOf(id object) {
    return valueOf<std::shared_ptr<Activity>>(object, "activity");
}

/// Nothing: none is due until then.
std::shared_ptr<Activity> nextDue(double end) {
    const std::lock_guard lock(mutex);
    std::shared_ptr<Activity> next;
    for (const auto& activity : current.all) {
        if (!activity->isValid || !activity->block || activity->isRunning || activity->due > end) continue;
        if (!next || activity->due < next->due) next = activity;
    }
    return next;
}

void fire(const std::shared_ptr<Activity>& activity) {
    {
        const std::lock_guard lock(mutex);
        current.now = std::max(current.now, activity->due);
        activity->due = current.now + activity->interval;
        activity->isRunning = true;
    }
    std::thread([activity] {
        activity->block([activity](long result) {
            const std::lock_guard lock(mutex);
            activity->results.push_back(result);
            activity->isRunning = false;
            if (!activity->repeats) activity->isValid = false;
        });
    }).join();
}

} // namespace

FakeActivities& fakeActivities() { return current; }
void resetFakeActivities() {
    current = FakeActivities();
    handlers.clear();
}

void FakeActivities::pass(std::chrono::seconds time) {
    const double end = now + static_cast<double>(time.count());
    while (const auto activity = nextDue(end)) fire(activity);
    now = end;
}

} // namespace vesko::testing

using namespace vesko::testing;

@implementation NSBackgroundActivityScheduler
- (instancetype)initWithIdentifier:(NSString*)identifier {
    activityOf(self) = std::make_shared<Activity>();
    activityOf(self)->identifier = bytesOf(identifier);
    fakeActivities().all.push_back(activityOf(self));
    return self;
}
- (NSQualityOfService)qualityOfService {
    return NSQualityOfServiceBackground;
}
- (void)setQualityOfService:(NSQualityOfService)quality {
    activityOf(self)->hasOwnQuality = true;
}
- (BOOL)repeats {
    return activityOf(self)->repeats;
}
- (void)setRepeats:(BOOL)repeats {
    activityOf(self)->repeats = repeats != NO;
}
- (NSTimeInterval)interval {
    return activityOf(self)->interval;
}
- (void)setInterval:(NSTimeInterval)interval {
    activityOf(self)->interval = interval;
}
- (NSTimeInterval)tolerance {
    return activityOf(self)->tolerance;
}
- (void)setTolerance:(NSTimeInterval)tolerance {
    activityOf(self)->tolerance = tolerance;
}
- (BOOL)shouldDefer {
    return NO;
}
- (void)scheduleWithBlock:(void (^)(NSBackgroundActivityCompletionHandler completionHandler))block {
    const std::shared_ptr<Activity> activity = activityOf(self);
    activity->due = fakeActivities().now + activity->interval;
    activity->block = [block = kept(block)](const std::function<void(long)>& completion) {
        const std::function<void(long)> finished = completion;
        NSBackgroundActivityCompletionHandler handler =
            Block_copy(^(NSBackgroundActivityResult result) { finished(result); });
        handlers.emplace_back(static_cast<const void*>(handler),
                              [](const void* owned) { _Block_release(owned); });
        block(handler);
    };
}
- (void)invalidate {
    const std::lock_guard lock(mutex);
    activityOf(self)->isValid = false;
}
@end
