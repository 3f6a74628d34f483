import QtQuick
import Vesko.Window

// The page of the notifications.
SettingsPage {
    id: page

    required property AlertPreferencesModel alerts

    name: Strings.of("settings.tab.general")

    AlertPreferencesSection { alerts: page.alerts }
}
