import QtQuick
import Vesko.Window

// What concerns the program as a whole, where there is no menu bar for it.
PopupMenu {
    id: menu

    required property SettingsModel settings

    signal quitChosen()

    function open(at) {
        popUp(at)
    }

    entries: [
        { key: "menu.about", enabled: true },
        { key: "menu.checkForUpdates", enabled: settings.updates.canCheck },
        { key: "menu.settings", enabled: true },
        { key: "menu.quit", enabled: true }
    ]
    onChosen: key => {
        if (key === "menu.about") settings.openAbout()
        else if (key === "menu.checkForUpdates") settings.checkForUpdates()
        else if (key === "menu.settings") settings.open()
        else quitChosen()
    }
}
