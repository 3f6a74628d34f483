import QtQuick
import Vesko.Window

// The sidebar beside the chosen screen, with a border that can be dragged.
FocusScope {
    id: split

    required property WindowModel shell
    property int sidebarWidth: 220

    Sidebar {
        id: sidebar
        width: split.sidebarWidth
        height: parent.height
        shell: split.shell
    }

    Item {
        id: detail
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }
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
}
