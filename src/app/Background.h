#pragma once
#include "background/BackgroundScanCoordinator.h"
#include "base/UserDefaults.h"
#include <memory>

namespace vesko {

/// The scans that begin by themselves while the program runs. Main thread; ends before what `tasks` shows.
class Background {
public:
    Background(std::shared_ptr<const UserDefaults> defaults, const TaskContext& tasks);
    /// To be called once, when the window is on screen. The view model is not kept alive.
    void attach(const std::shared_ptr<CleanupViewModel>& model);

private:
    std::shared_ptr<BackgroundScanScheduler> scheduler_;
    std::shared_ptr<BackgroundScanCoordinator> coordinator_ = std::make_shared<BackgroundScanCoordinator>();
};

} // namespace vesko
