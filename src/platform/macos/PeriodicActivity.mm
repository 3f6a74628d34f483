#include "background/PeriodicActivity.h"

#import <Foundation/Foundation.h>
#include <utility>

// On other systems, whose runtimes do not count references, it is compiled for the tests alone, and those
// keep what is theirs.
#if defined(__APPLE__) && !__has_feature(objc_arc)
#error "build with -fobjc-arc"
#endif

/// NSBackgroundActivityScheduler (Energy Efficiency Guide for Mac Apps, Schedule Background Activity). It
/// calls on a queue of its own. The quality of service stays the system's default, and a turn is never
/// deferred: it is short, and the next one comes by itself.
namespace vesko {
namespace {

class SystemPeriodicActivity final : public PeriodicActivity {
public:
    explicit SystemPeriodicActivity(const PeriodicActivitySettings& settings)
        : scheduler_([[NSBackgroundActivityScheduler alloc]
              initWithIdentifier:[NSString stringWithUTF8String:settings.identifier.c_str()]]) {
        scheduler_.repeats = settings.repeats;
        scheduler_.interval = static_cast<NSTimeInterval>(settings.interval.count());
        scheduler_.tolerance = static_cast<NSTimeInterval>(settings.tolerance.count());
    }
    // The system may hold on to a scheduler of which this program knows nothing any more.
    ~SystemPeriodicActivity() override { [scheduler_ invalidate]; }
    SystemPeriodicActivity(const SystemPeriodicActivity&) = delete;
    SystemPeriodicActivity& operator=(const SystemPeriodicActivity&) = delete;

    void schedule(Block block) override {
        [scheduler_ scheduleWithBlock:^(NSBackgroundActivityCompletionHandler completion) {
          block([completion] { completion(NSBackgroundActivityResultFinished); });
        }];
    }

private:
    NSBackgroundActivityScheduler* scheduler_;
};

} // namespace

PeriodicActivityMaker platformPeriodicActivity(const TaskContext& /*tasks*/) {
    return [](const PeriodicActivitySettings& settings) {
        return std::make_unique<SystemPeriodicActivity>(settings);
    };
}

} // namespace vesko
