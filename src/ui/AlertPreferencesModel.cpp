#include "ui/AlertPreferencesModel.h"
#include "concurrency/Spawn.h"
#include <algorithm>
#include <cmath>
#include <utility>

namespace vesko {

namespace {

constexpr double bytesPerGB = 1'000'000'000;

/// Where a slider of this range stands for a stored threshold.
double shown(std::int64_t bytes, double least, double most) {
    return std::clamp(static_cast<double>(bytes) / bytesPerGB, least, most);
}

/// Puts a slider to the nearest whole gigabyte within its range; whether it moved. The threshold follows.
bool move(double& slider, std::int64_t& bytes, double to, double least, double most) {
    if (!std::isfinite(to)) return false;
    const double wanted = std::clamp(std::round(to), least, most);
    if (wanted == slider) return false;
    slider = wanted;
    bytes = static_cast<std::int64_t>(wanted * bytesPerGB);
    return true;
}

} // namespace

AlertPreferencesModel::AlertPreferencesModel(AlertPreferencesParts parts, QObject* parent)
    : QObject(parent), parts_(std::move(parts)) {}

void AlertPreferencesModel::load() {
    preferences_ = parts_.load();
    lowSpaceGB_ = shown(preferences_.lowSpaceThresholdBytes, leastLowSpaceGB(), mostLowSpaceGB());
    opportunityDeltaGB_ =
        shown(preferences_.largeOpportunityDeltaBytes, leastOpportunityGB(), mostOpportunityGB());
    Q_EMIT changed();
}

void AlertPreferencesModel::setLowSpaceEnabled(bool enabled) {
    turn(&NotificationPreferences::lowSpaceEnabled, enabled);
}

void AlertPreferencesModel::setOpportunityEnabled(bool enabled) {
    turn(&NotificationPreferences::largeOpportunityEnabled, enabled);
}

void AlertPreferencesModel::setScanCompletedEnabled(bool enabled) {
    turn(&NotificationPreferences::scanCompletedEnabled, enabled);
}

void AlertPreferencesModel::turn(bool NotificationPreferences::* flag, bool enabled) {
    if (preferences_.*flag == enabled) return;
    preferences_.*flag = enabled;
    save();
    if (!enabled) return;
    // Without the permission nothing is shown; the settings stay as the person wants them.
    spawn(parts_.tasks, [service = parts_.notificationService] { return service->requestAuthorization(); });
}

void AlertPreferencesModel::moveLowSpace(double gigabytes) {
    if (move(lowSpaceGB_, preferences_.lowSpaceThresholdBytes, gigabytes, leastLowSpaceGB(),
             mostLowSpaceGB()))
        save();
}

void AlertPreferencesModel::moveOpportunity(double gigabytes) {
    if (move(opportunityDeltaGB_, preferences_.largeOpportunityDeltaBytes, gigabytes, leastOpportunityGB(),
             mostOpportunityGB()))
        save();
}

void AlertPreferencesModel::save() {
    parts_.save(preferences_);
    Q_EMIT changed();
}

} // namespace vesko
