import QtQuick
import Vesko.Window

// The tabs at the top and the page of the chosen one.
FocusScope {
    id: view

    required property SettingsModel settings

    // Closes what lies over the page; whether there was something.
    function dismiss() {
        const had = sheet.isPresented
        if (had) sheet.close()
        return had
    }

    Rectangle {
        id: bar
        width: parent.width
        height: tabs.height + 16
        color: Theme.surface
        enabled: !sheet.isPresented

        SettingsTabs {
            id: tabs
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 16)
            focus: true
            settings: view.settings
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.border
        }
    }
    Loader {
        anchors { left: parent.left; right: parent.right; top: bar.bottom; bottom: parent.bottom }
        enabled: !sheet.isPresented
        sourceComponent: view.settings.tab === "updates" ? updates : view.settings.tab === "about" ? about : general
    }
    Component {
        id: general
        GeneralSettingsView { alerts: view.settings.alerts }
    }
    Component {
        id: updates
        UpdatesSettingsView { updates: view.settings.updates }
    }
    Component {
        id: about
        AboutSettingsView {
            about: view.settings.about
            onAcknowledgementsAsked: opener => sheet.present(opener)
        }
    }
    AcknowledgementsView {
        id: sheet
        anchors.fill: parent
        about: view.settings.about
    }
    // The main window's menu leads to another page while something lies over this one.
    Connections {
        target: view.settings
        function onTabChanged() {
            if (view.dismiss()) tabs.forceActiveFocus(Qt.PopupFocusReason)
        }
    }
}
