import QtQuick
import Vesko.Window

// The sidebar beside the chosen screen, with a border that can be dragged.
FocusScope {
    id: split

    required property WindowModel shell
    required property CleanupScreen cleanup
    required property HomeScreen home
    readonly property bool showsCleanup: shell.selection === "cleanup"
    property int sidebarWidth: 220

    function search() {
        if (showsCleanup) cleanupPage.item.search()
    }

    Sidebar {
        id: sidebar
        width: split.sidebarWidth
        height: parent.height
        shell: split.shell
    }
    FocusScope {
        id: detail
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        focus: true

        HomePage {
            anchors.fill: parent
            visible: !split.showsCleanup
            focus: visible
            screen: split.home
        }
        // Built after the first frame, so that the change to it costs nothing.
        Loader {
            id: cleanupPage
            anchors.fill: parent
            active: split.showsCleanup || split.shell.hasFrame
            visible: split.showsCleanup
            focus: visible
            sourceComponent: CleanupPage {
                screen: split.cleanup
                onRecoverPressed: sheet.present()
            }
        }
    }
    MouseArea {
        x: sidebar.width - 3
        width: 6
        height: parent.height
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            const wanted = mapToItem(split, mouse.x, 0).x
            split.sidebarWidth = Math.max(200, Math.min(260, wanted))
        }
    }
    ConfirmationSheet {
        id: sheet
        anchors.fill: parent
        screen: split.cleanup
        onConfirmed: split.cleanup.deleteSelected()
        onClosed: if (cleanupPage.item) cleanupPage.item.focusList()
    }
    Shortcut {
        enabled: !sheet.isPresented
        sequences: [StandardKey.Find]
        onActivated: split.search()
    }
    Shortcut {
        enabled: !sheet.isPresented && split.cleanup.canScan
        sequence: "Ctrl+R"
        onActivated: split.cleanup.startScan()
    }
    Shortcut {
        enabled: !sheet.isPresented
        sequence: "Ctrl+1"
        onActivated: split.shell.selectDestination(0)
    }
    Shortcut {
        enabled: !sheet.isPresented
        sequence: "Ctrl+2"
        onActivated: split.shell.selectDestination(1)
    }
    Shortcut {
        enabled: !sheet.isPresented && split.showsCleanup && split.cleanup.searchText !== ""
        sequence: "Escape"
        onActivated: split.cleanup.searchText = ""
    }
    // Assistive tools read the name of an alert when it changes.
    Item {
        width: 1
        height: 1
        Accessible.role: Accessible.AlertMessage
        Accessible.name: split.cleanup.announcement
    }
}
