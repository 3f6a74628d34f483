#include "ui/UpdatesModel.h"
#include <utility>

namespace vesko {

UpdatesModel::UpdatesModel(std::shared_ptr<Updater> updater, QObject* parent)
    : QObject(parent), updater_(std::move(updater)),
      subscription_(updater_->changes.subscribe([this] { Q_EMIT changed(); })) {}

QString UpdatesModel::newerVersion() const {
    const auto& newer = updater_->newerVersion();
    return newer ? QString::fromStdString(newer->version) : QString();
}

QString UpdatesModel::newerNotes() const {
    const auto& newer = updater_->newerVersion();
    return newer ? QString::fromStdString(newer->notes).trimmed() : QString();
}

bool UpdatesModel::hasPage() const {
    const auto& newer = updater_->newerVersion();
    return newer && !newer->page.empty();
}

void UpdatesModel::setAutomatic(bool automatic) {
    updater_->setAutomaticallyChecksForUpdates(automatic);
    Q_EMIT changed();
}

void UpdatesModel::check() {
    if (canCheck()) updater_->checkForUpdates();
    Q_EMIT changed();
}

void UpdatesModel::openPage() { updater_->openPage(); }

} // namespace vesko
