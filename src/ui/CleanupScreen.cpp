#include "ui/CleanupScreen.h"
#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "concurrency/Spawn.h"
#include "orchestration/CleanupViewModel.h"
#include "ui/SegmentList.h"
#include <QClipboard>
#include <QGuiApplication>

namespace vesko {

CleanupScreen::CleanupScreen(std::shared_ptr<CleanupViewModel> model, std::shared_ptr<FileRevealing> files,
                             QObject* parent)
    : QObject(parent), model_(std::move(model)), files_(std::move(files)), list_(model_),
      scanDateRevision_(model_->lastScanDate.revision()) {
    subscription_ = model_->changes.subscribe([this] { noteChange(); });
    storeSubscription_ = model_->enrichmentStore().changes().subscribe([this] { noteChange(); });
    refresh();
}

CleanupScreen::~CleanupScreen() = default;

void CleanupScreen::noteChange() {
    if (isRefreshDue_) return;
    isRefreshDue_ = true;
    QMetaObject::invokeMethod(this, &CleanupScreen::refresh, Qt::QueuedConnection);
}

void CleanupScreen::refresh() {
    isRefreshDue_ = false;
    CleanupScreenState state = describe(*model_);
    list_.refresh();
    if (state != state_) {
        std::swap(state, state_);
        if (state.segments != state_.segments) takeSegments();
        Q_EMIT changed();
        announceFrom(state);
    }
    answerScrollRequests();
}

void CleanupScreen::languageChanged() {
    list_.languageChanged();
    state_ = describe(*model_);
    takeSegments();
    Q_EMIT changed();
}

void CleanupScreen::takeSegments() {
    segments_ = segmentList(state_.segments);
    Q_EMIT segmentsChanged();
}

void CleanupScreen::announceFrom(const CleanupScreenState& old) {
    const bool scanEnded = old.isScanning && !state_.isScanning;
    const std::uint64_t scanDate = model_->lastScanDate.revision();
    if (!old.isScanning && state_.isScanning) {
        scanDateRevision_ = scanDate;
        announce(QString::fromStdString(localized("a11y.announce.scanStarted")));
    } else if (scanEnded && scanDate != scanDateRevision_) {
        announce(QString::fromStdString(
            localized("a11y.announce.scanFinished %@", formatBytes(*model_->foundTotalBytes))));
    } else if (scanEnded) {
        announce(QString::fromStdString(localized("a11y.announce.scanCancelled")));
    } else if (!old.isDeleting && state_.isDeleting) {
        announce(QString::fromStdString(localized("a11y.announce.deleteStarted")));
    } else if (old.isDeleting && !state_.isDeleting) {
        announce(
            QString::fromStdString(localized("a11y.announce.deleteFinished") + " " + state_.cleanupMessage));
    }
}

void CleanupScreen::announce(const QString& text) {
    announcement_ = text;
    Q_EMIT announced();
}

QString CleanupScreen::searchText() const { return QString::fromStdString(*model_->searchText); }

void CleanupScreen::setSearchText(const QString& text) { model_->searchText = text.toStdString(); }

void CleanupScreen::setListShown(bool shown) {
    if (shown == listShown_) return;
    listShown_ = shown;
    Q_EMIT listShownChanged();
    if (shown) noteChange();
}

void CleanupScreen::startScan() {
    spawn(model_->tasks(), [model = model_] { return model->startScan(ScanMode::full); });
}

void CleanupScreen::cancelScan() { model_->cancelScan(); }

void CleanupScreen::clearReviewMessage() { model_->clearReviewMessage(); }

void CleanupScreen::toggle(int row) {
    if (model_->phase->kind != CleanupPhase::Kind::cleaning) list_.toggle(row);
}

void CleanupScreen::deleteSelected() {
    spawn(model_->tasks(), [model = model_] { return model->deleteSelected(); });
}

void CleanupScreen::reveal(int row) {
    if (const auto url = list_.url(row)) files_->reveal(*url);
}

void CleanupScreen::copyPath(int row) const {
    const auto url = list_.url(row);
    if (url) QGuiApplication::clipboard()->setText(QString::fromStdString(escapedForDisplay(url->path())));
}

void CleanupScreen::scrollToSection(const QString& sectionID) {
    const auto group = model_->firstGroupIDOfSection(sectionID.toStdString());
    if (!group) return;
    const int row = list_.rowOfGroup(*group);
    if (row >= 0) Q_EMIT scrollRequested(row);
}

// A request stands until the list is on screen. It is answered once, also when there is nothing to show.
void CleanupScreen::answerScrollRequests() {
    if (!listShown_) return;
    std::optional<std::string> target;
    if (*model_->scrollToConsultantCategoryPending) {
        const std::optional<std::string> category = *model_->pendingConsultantCategoryID;
        if (category) target = model_->firstGroupIDOfCategory(*category);
        model_->scrollToConsultantCategoryPending = false;
        model_->pendingConsultantCategoryID = std::optional<std::string>();
    } else if (*model_->scrollToLargestGroupPending) {
        target = model_->largestGroupID();
        model_->scrollToLargestGroupPending = false;
    }
    if (!target) return;
    QMetaObject::invokeMethod(
        this,
        [this, group = *target] {
            const int row = list_.rowOfGroup(group);
            if (row >= 0) Q_EMIT scrollRequested(row);
        },
        Qt::QueuedConnection);
}

} // namespace vesko
