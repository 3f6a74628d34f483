import QtQuick
import Vesko.Window

// The main window.
Window {
    id: main

    required property WindowModel shell
    required property CleanupScreen cleanup
    required property HomeScreen home

    width: 1100
    height: 760
    minimumWidth: 900
    minimumHeight: 600
    visible: true
    title: Strings.of("app.name")
    color: Theme.background

    onActiveChanged: if (active && shell.hasFrame) home.bringUpToDate()
    onFrameSwapped: if (!shell.hasFrame) shell.noteFrame()

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
        }
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
