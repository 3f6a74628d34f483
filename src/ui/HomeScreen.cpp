#include "ui/HomeScreen.h"
#include "base/Environment.h"
#include "concurrency/Spawn.h"
#include "orchestration/CleanupViewModel.h"
#include "storage/HomeViewModel.h"
#include "ui/AppSidebarDestination.h"
#include "ui/SegmentList.h"
#include "ui/WindowModel.h"
#include <algorithm>

namespace vesko {

HomeScreen::HomeScreen(std::shared_ptr<HomeViewModel> home, std::shared_ptr<CleanupViewModel> cleanup,
                       WindowModel& shell, QObject* parent)
    : QObject(parent), home_(std::move(home)), cleanup_(std::move(cleanup)), shell_(shell),
      groupsRevision_(cleanup_->groupsRevision()) {
    homeSubscription_ = home_->changes.subscribe([this] { noteChange(); });
    cleanupSubscription_ = cleanup_->changes.subscribe([this] { noteChange(); });
    refresh();
}

HomeScreen::~HomeScreen() = default;

void HomeScreen::noteChange() {
    if (isRefreshDue_) return;
    isRefreshDue_ = true;
    QMetaObject::invokeMethod(this, &HomeScreen::refresh, Qt::QueuedConnection);
}

void HomeScreen::refresh() {
    isRefreshDue_ = false;
    if (groupsRevision_ != cleanup_->groupsRevision()) {
        groupsRevision_ = cleanup_->groupsRevision();
        home_->refreshCleanupInsights(cleanup_);
    }
    HomeScreenState state = describe(*home_, *cleanup_);
    if (state == state_) return;
    const bool sameSegments = state.segments == state_.segments && state.legend == state_.legend;
    state_ = std::move(state);
    takeLists();
    if (!sameSegments) Q_EMIT segmentsChanged();
    Q_EMIT changed();
}

void HomeScreen::takeLists() {
    segments_ = segmentList(state_.segments);
    legend_ = segmentList(state_.legend);
    buckets_.take(state_.buckets);
    opportunities_.take(state_.opportunities);
    if (state_.inspector) {
        inspector_ = *state_.inspector;
        summaries_.take(inspector_.summaries);
    }
    shell_.setFreeSpace(QString::fromStdString(state_.freeSpaceLine));
}

void HomeScreen::languageChanged() {
    // What is kept of a closed inspector would stay in the other language, and is not shown.
    if (!state_.inspector) inspector_ = {};
    refresh();
}

QStringList HomeScreen::inspectorPaths() const {
    QStringList paths;
    for (const std::string& path : inspector_.paths) paths.append(QString::fromStdString(path));
    return paths;
}

void HomeScreen::start() {
    if (isStarted_) return;
    if (isDevelopmentHost()) {
        home_->refreshVolume();
        return;
    }
    isStarted_ = true;
    // The watcher first: how long kept figures count as fresh depends on it.
    home_->startWatching();
    home_->refresh(cleanup_);
}

void HomeScreen::bringUpToDate() {
    if (isStarted_) {
        home_->refresh(cleanup_);
    } else {
        home_->refreshVolume();
    }
}

void HomeScreen::reviewCleanup() { shell_.setSelection(rawValue(AppSidebarDestination::cleanup)); }

void HomeScreen::scanNow() {
    if (cleanup_->phase->isBusy()) return;
    spawn(cleanup_->tasks(), [model = cleanup_] { return model->startScan(ScanMode::validation); });
}

void HomeScreen::selectBucket(const QString& id) {
    if (home_->bucket(id.toStdString())) home_->selectedBucketID = std::optional(id.toStdString());
}

void HomeScreen::clearSelection() { home_->selectedBucketID = std::nullopt; }

void HomeScreen::openCategory(const QString& id) {
    // A search that leaves the category out would leave nothing to go to.
    cleanup_->searchText = std::string();
    cleanup_->requestScrollToCategory(id.toStdString());
    reviewCleanup();
}

void HomeScreen::reviewInCleanup() {
    const std::optional<std::string> selected = *home_->selectedBucketID;
    const std::optional<StorageCategoryBucket> bucket = selected ? home_->bucket(*selected) : std::nullopt;
    clearSelection();
    std::optional<std::string> first;
    if (bucket && bucket->cleanupCategoryIDs) {
        const auto& ids = *bucket->cleanupCategoryIDs;
        const auto hasGroups = [this](const std::string& id) {
            return cleanup_->firstGroupIDOfCategory(id).has_value();
        };
        const auto found = std::ranges::find_if(ids, hasGroups);
        if (found != ids.end()) first = *found;
    }
    if (first) {
        openCategory(QString::fromStdString(*first));
    } else {
        reviewCleanup();
    }
}

} // namespace vesko
