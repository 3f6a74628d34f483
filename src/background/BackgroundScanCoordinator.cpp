#include "background/BackgroundScanCoordinator.h"

namespace vesko {

void BackgroundScanCoordinator::attach(const std::shared_ptr<CleanupViewModel>& model,
                                       BackgroundScanScheduler& scheduler) {
    viewModel = model;
    const auto self = shared_from_this();
    scheduler.isScanActive = [self] { return self->isScanActive(); };
    scheduler.onFire = [self] { return self->runScan(); };
    scheduler.schedule();
}

bool BackgroundScanCoordinator::isScanActive() const {
    const auto model = viewModel.lock();
    return model && model->phase->isBusy();
}

Task<void> BackgroundScanCoordinator::runScan() {
    const auto model = viewModel.lock();
    if (!model || model->phase->isBusy()) co_return;
    co_await model->startScan(ScanMode::validation);
}

} // namespace vesko
