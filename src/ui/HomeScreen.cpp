#include "ui/HomeScreen.h"
#include "base/ByteFormat.h"
#include "base/StringCatalog.h"
#include "concurrency/Offload.h"
#include "concurrency/Spawn.h"
#include "orchestration/CleanupViewModel.h"
#include "ui/AppSidebarDestination.h"
#include "ui/WindowModel.h"
#include <QPointer>
#include <algorithm>

namespace vesko {

HomeScreen::HomeScreen(std::shared_ptr<CleanupViewModel> cleanup,
                       std::shared_ptr<const DiskVolumeReading> volumes, WindowModel& shell, QObject* parent)
    : QObject(parent), cleanup_(std::move(cleanup)), volumes_(std::move(volumes)), shell_(shell) {
    subscription_ = cleanup_->changes.subscribe([this] { noteChange(); });
}

HomeScreen::~HomeScreen() = default;

void HomeScreen::noteChange() {
    if (isChangeDue_) return;
    isChangeDue_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            isChangeDue_ = false;
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

QString HomeScreen::availableLine() const {
    if (!volume_) return {};
    return QString::fromStdString(localized("home.availableAmount %@", formatBytes(volume_->availableBytes)));
}

QString HomeScreen::volumeLine() const {
    if (!volume_) return {};
    return QString::fromStdString(
        localized("home.volumeSummary %@ %@", formatBytes(volume_->totalBytes), volume_->volumeName));
}

double HomeScreen::usedFraction() const {
    if (!volume_ || volume_->totalBytes < 1) return 0;
    const auto total = static_cast<double>(volume_->totalBytes);
    return std::clamp((total - static_cast<double>(volume_->availableBytes)) / total, 0.0, 1.0);
}

QString HomeScreen::reviewSubtitle() const {
    const std::int64_t found = *cleanup_->foundTotalBytes;
    return QString::fromStdString(
        found >= 1 ? localized("home.shortcut.reviewCleanup.subtitle %@", formatBytes(found))
                   : localized("home.shortcut.reviewCleanup.subtitleEmpty"));
}

QString HomeScreen::scanSubtitle() const {
    const bool scanning = cleanup_->phase->kind == CleanupPhase::Kind::scanning;
    return QString::fromStdString(
        localized(scanning ? "home.shortcut.scanNow.running" : "home.shortcut.scanNow.subtitle"));
}

bool HomeScreen::canScan() const { return !cleanup_->phase->isBusy(); }

void HomeScreen::readVolume() {
    if (isReading_) return;
    isReading_ = true;
    spawn(cleanup_->tasks(), [screen = QPointer(this), volumes = volumes_]() -> Task<void> {
        auto read = [volumes] { return volumes->readVolume(); };
        const DiskVolumeInfo volume = co_await offload(read);
        if (!screen) co_return;
        screen->isReading_ = false;
        screen->showVolume(volume);
    });
}

void HomeScreen::reviewCleanup() { shell_.setSelection(rawValue(AppSidebarDestination::cleanup)); }

void HomeScreen::scanNow() {
    if (!canScan()) return;
    spawn(cleanup_->tasks(), [model = cleanup_] { return model->startScan(ScanMode::validation); });
}

void HomeScreen::showVolume(const DiskVolumeInfo& volume) {
    volume_ = volume;
    shell_.setFreeSpace(QString::fromStdString(localized(
        "sidebar.freeSpace %1$@ %2$@", formatBytes(volume.availableBytes), formatBytes(volume.totalBytes))));
    Q_EMIT changed();
}

void HomeScreen::languageChanged() {
    if (volume_) {
        showVolume(*volume_);
    } else {
        Q_EMIT changed();
    }
}

} // namespace vesko
