#include "app/DesktopSettings.h"
#include "background/NotificationPreferencesStorage.h"
#include <QDesktopServices>
#include <QGuiApplication>
#include <QScreen>

namespace vesko {

namespace {

SettingsModelParts settingsParts(UserDefaults& defaults, const DesktopServices& services,
                                 const TaskContext& tasks) {
    SettingsModelParts parts;
    parts.alerts.tasks = tasks;
    parts.alerts.notificationService = services.notifications;
    parts.alerts.load = [&defaults] { return NotificationPreferencesStorage::loadPreferences(defaults); };
    parts.alerts.save = [&defaults](const NotificationPreferences& preferences) {
        NotificationPreferencesStorage::savePreferences(preferences, defaults);
    };
    parts.updater = services.updater;
    parts.about.version = QStringLiteral(VESKO_VERSION);
    parts.about.contactEmail = QStringLiteral(VESKO_CONTACT);
    parts.about.openLink = [](const QUrl& link) { QDesktopServices::openUrl(link); };
    return parts;
}

QList<QRect> screens() {
    QList<QRect> areas;
    const QList<QScreen*> all = QGuiApplication::screens();
    for (const QScreen* screen : all) areas.append(screen->availableGeometry());
    return areas;
}

} // namespace

DesktopSettings::DesktopSettings(UserDefaults& defaults, WindowModel& shell, const DesktopServices& services,
                                 const TaskContext& tasks)
    : settings_(settingsParts(defaults, services, tasks)), memory_(defaults, shell) {}

bool DesktopSettings::show(MainWindow& window) {
    if (!window.show(memory_.initialProperties(screens()))) return false;
    memory_.follow(*window.window());
    return true;
}

} // namespace vesko
