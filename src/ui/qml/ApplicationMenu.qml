import QtQuick
import Qt.labs.platform as Platform
import Vesko.Window

// The application menu, where the system has a bar for it. The system puts the entries into its order by their roles:
// the check for updates comes behind the information about the program.
Platform.MenuBar {
    id: bar

    required property SettingsModel settings

    signal quitChosen()

    Platform.Menu {
        title: Strings.of("app.name")

        Platform.MenuItem {
            role: Platform.MenuItem.AboutRole
            text: Strings.of("menu.about")
            onTriggered: bar.settings.openAbout()
        }
        Platform.MenuItem {
            role: Platform.MenuItem.ApplicationSpecificRole
            text: Strings.of("menu.checkForUpdates")
            enabled: bar.settings.updates.canCheck
            onTriggered: bar.settings.checkForUpdates()
        }
        Platform.MenuItem {
            role: Platform.MenuItem.PreferencesRole
            text: Strings.of("menu.settings")
            onTriggered: bar.settings.open()
        }
        Platform.MenuItem {
            role: Platform.MenuItem.QuitRole
            text: Strings.of("menu.quit")
            onTriggered: bar.quitChosen()
        }
    }
}
