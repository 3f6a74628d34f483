#include "ui/SettingsTab.h"

namespace vesko {

QString rawValue(SettingsTab tab) {
    switch (tab) {
    case SettingsTab::general: return QStringLiteral("general");
    case SettingsTab::updates: return QStringLiteral("updates");
    case SettingsTab::about: break;
    }
    return QStringLiteral("about");
}

QString labelKey(SettingsTab tab) { return QStringLiteral("settings.tab.") + rawValue(tab); }

QString iconName(SettingsTab tab) {
    switch (tab) {
    case SettingsTab::general: return QStringLiteral("gearshape");
    case SettingsTab::updates: return QStringLiteral("arrow.triangle.2.circlepath");
    case SettingsTab::about: break;
    }
    return QStringLiteral("info.circle");
}

} // namespace vesko
