#include "background/FeedUpdater.h"

#include "background/VersionOrder.h"
#include <chrono>
#include <utility>

namespace vesko {
namespace {

constexpr std::chrono::hours oneDay(24);

} // namespace

FeedUpdater::FeedUpdater(FeedUpdaterParts parts) : parts_(std::move(parts)) {}

bool FeedUpdater::automaticallyChecksForUpdates() const {
    return parts_.defaults->boolean(automaticUpdateChecksKey).value_or(true);
}

void FeedUpdater::setAutomaticallyChecksForUpdates(bool automatically) {
    if (automatically == automaticallyChecksForUpdates()) return;
    parts_.defaults->setBoolean(automaticUpdateChecksKey, automatically);
    everyDay_ = {};
    if (started_) {
        started_ = false;
        start();
    }
    changes.notify();
}

void FeedUpdater::start() {
    if (std::exchange(started_, true) || !automaticallyChecksForUpdates()) return;
    everyDay_ = spawn(parts_.tasks, [this] { return checkEveryDay(); });
}

Task<void> FeedUpdater::checkEveryDay() {
    for (;;) {
        checkForUpdates();
        co_await sleepFor(oneDay);
    }
}

void FeedUpdater::checkForUpdates() {
    if (isChecking_) return;
    isChecking_ = true;
    running_ = spawn(parts_.tasks, [this] { return check(); });
    changes.notify();
}

Task<void> FeedUpdater::check() {
    // A source may not notice that it is cancelled, and answer when this object has gone.
    const std::weak_ptr<const bool> alive = alive_;
    const std::shared_ptr<VersionSource> source = parts_.source;
    std::optional<NewerVersion> newest = co_await source->newest();
    if (alive.expired()) co_return;
    isChecking_ = false;
    take(std::move(newest));
    changes.notify();
}

// What could not be read says nothing, also not about what is known already.
void FeedUpdater::take(std::optional<NewerVersion> newest) {
    if (!newest) return;
    newer_.reset();
    if (isNewerVersion(newest->version, parts_.runningVersion)) newer_ = std::move(newest);
}

void FeedUpdater::openPage() {
    if (newer_ && newer_->page.starts_with("https://")) parts_.openLink(newer_->page);
}

} // namespace vesko
