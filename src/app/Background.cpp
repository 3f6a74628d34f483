#include "app/Background.h"

#include "background/BackgroundRefresh.h"
#include "platform/posix/DiskAccess.h"
#include <utility>

namespace vesko {

Background::Background(std::shared_ptr<const UserDefaults> defaults, const TaskContext& tasks) {
    BackgroundScanSchedulerParts parts;
    parts.tasks = tasks;
    parts.makeActivity = platformPeriodicActivity(tasks);
    parts.hasFullDiskAccess = hasFullDiskAccess;
    parts.isEnabled = [defaults = std::move(defaults)] { return isBackgroundRefreshEnabled(*defaults); };
    scheduler_ = std::make_shared<BackgroundScanScheduler>(std::move(parts));
}

void Background::attach(const std::shared_ptr<CleanupViewModel>& model) {
    coordinator_->attach(model, *scheduler_);
}

} // namespace vesko
