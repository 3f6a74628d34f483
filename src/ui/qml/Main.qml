import QtQuick
import Vesko.Window

// The main window.
Window {
    id: main

    required property WindowModel shell
    required property CleanupScreen cleanup
    required property HomeScreen home
    required property SettingsModel settings

    width: 1100
    height: 760
    minimumWidth: 900
    minimumHeight: 600
    visible: true
    title: Strings.of("app.name")
    color: Theme.background

    onActiveChanged: if (active && shell.hasFrame) home.bringUpToDate()
    onFrameSwapped: if (!shell.hasFrame) shell.noteFrame()
    onClosing: settings.close()

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: main.shell.hasFullDiskAccess ? screens : access
    }
    Component {
        id: access
        AccessScreen { shell: main.shell }
    }
    Component {
        id: screens
        SplitView {
            focus: true
            shell: main.shell
            cleanup: main.cleanup
            home: main.home
            settings: main.settings
            onQuitChosen: main.close()
        }
    }
    // A window of its own, made when it is asked for.
    Loader {
        active: main.settings.isOpen
        sourceComponent: SettingsWindow {
            transientParent: main
            settings: main.settings
        }
    }
    Loader {
        id: menuBar
        Component.onCompleted: {
            if (["osx", "macos"].includes(Qt.platform.os)) setSource("ApplicationMenu.qml", { settings: main.settings })
        }
    }
    Connections {
        target: menuBar.item
        function onQuitChosen() {
            main.close()
        }
    }
    Shortcut {
        sequence: "Ctrl+,"
        context: Qt.ApplicationShortcut
        onActivated: main.settings.open()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        context: Qt.ApplicationShortcut
        onActivated: main.close()
    }
    Connections {
        target: main.shell
        function onRaiseRequested() {
            main.show()
            main.raise()
            main.requestActivate()
        }
    }
}
