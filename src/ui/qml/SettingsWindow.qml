import QtQuick
import Vesko.Window

// The settings: notifications, updates, and information about the program. Escape closes it.
Window {
    id: window

    required property SettingsModel settings

    width: Math.max(540, Theme.body * 38)
    height: Math.max(600, Theme.body * 42)
    minimumWidth: Math.max(460, Theme.body * 30)
    minimumHeight: 420
    flags: Qt.Dialog
    visible: settings.isOpen
    title: Strings.of("settings.title")
    color: Theme.background

    // The window goes with the model's word; not inside of its own handler.
    onClosing: Qt.callLater(settings.close)

    SettingsView {
        id: view
        anchors.fill: parent
        focus: true
        settings: window.settings
    }
    Shortcut {
        sequences: ["Escape", "Ctrl+W"]
        onActivated: if (!view.dismiss()) window.close()
    }
    Connections {
        target: window.settings
        function onRaiseRequested() {
            window.show()
            window.raise()
            window.requestActivate()
        }
    }
}
