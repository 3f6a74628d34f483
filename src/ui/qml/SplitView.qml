import QtQuick
import Vesko.Window

// The sidebar beside the chosen screen, with a border that can be dragged.
FocusScope {
    id: split

    required property WindowModel shell
    required property CleanupScreen cleanup
    required property HomeScreen home
    required property SettingsModel settings
    readonly property bool showsCleanup: shell.selection === "cleanup"
    readonly property bool inspecting: !showsCleanup && home.inspectorOpen
    property int inspectorWidth: 380
    // A narrow window leaves the screen beside it as much room as it can.
    readonly property int inspectorRoom: Math.max(320, Math.min(inspectorWidth, width - shell.sidebarWidth - 440))

    signal quitChosen()

    function search() {
        if (showsCleanup) cleanupPage.item.search()
    }

    // The keyboard goes back to where it came from.
    onInspectingChanged: {
        if (!inspecting && !showsCleanup && inspector.focus) homePage.forceActiveFocus(Qt.OtherFocusReason)
    }

    Sidebar {
        id: sidebar
        width: split.shell.sidebarWidth
        height: parent.height
        shell: split.shell
        settings: split.settings
        onMenuAsked: at => menu.open(at)
    }
    FocusScope {
        id: detail
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
        focus: true

        HomePage {
            id: homePage
            anchors { left: parent.left; right: inspector.left; top: parent.top; bottom: parent.bottom }
            visible: !split.showsCleanup
            focus: visible
            screen: split.home
            onInspectorEntered: inspector.take()
        }
        StorageInspectorView {
            id: inspector
            anchors { top: parent.top; bottom: parent.bottom }
            x: parent.width - shown
            width: split.inspectorRoom
            screen: split.home
            isOpen: split.inspecting
            slides: !split.showsCleanup
            onReviewInCleanup: split.home.reviewInCleanup()
            onClosed: split.home.clearSelection()
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
        onPositionChanged: mouse => split.shell.sidebarWidth = mapToItem(split, mouse.x, 0).x
    }
    MouseArea {
        visible: split.inspecting
        x: detail.x + inspector.x - 3
        width: 6
        height: parent.height
        cursorShape: Qt.SplitHCursor
        onPositionChanged: mouse => {
            const wanted = split.width - mapToItem(split, mouse.x, 0).x
            split.inspectorWidth = Math.max(320, Math.min(420, wanted))
        }
    }
    ProgramMenu {
        id: menu
        settings: split.settings
        onQuitChosen: split.quitChosen()
        onClosed: sidebar.takeMenu()
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
    Shortcut {
        enabled: !sheet.isPresented && split.inspecting
        sequence: "Escape"
        onActivated: split.home.clearSelection()
    }
    // Assistive tools read the name of an alert when it changes.
    Item {
        width: 1
        height: 1
        Accessible.role: Accessible.AlertMessage
        Accessible.name: split.cleanup.announcement
    }
}
