#pragma once
#include "background/BackgroundScanScheduler.h"
#include "orchestration/CleanupViewModel.h"
#include <memory>

namespace vesko {

/// Ties the background scans to the one list. Main thread only. Always owned by a shared pointer; one object
/// for the life of the program.
class BackgroundScanCoordinator : public std::enable_shared_from_this<BackgroundScanCoordinator> {
public:
    std::weak_ptr<CleanupViewModel> viewModel;

    /// From now on turns of the scheduler scan for this view model. Called once, when the program starts.
    void attach(const std::shared_ptr<CleanupViewModel>& model, BackgroundScanScheduler& scheduler);

    /// Whether the view model scans or deletes.
    bool isScanActive() const;
    /// Looks again at what is listed, so that the list on the screen is not emptied. Does nothing while the
    /// view model is busy, nor without one.
    Task<void> runScan();
};

} // namespace vesko
