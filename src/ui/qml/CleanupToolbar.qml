import QtQuick
import Vesko.Window

Item {
    id: toolbar

    required property CleanupScreen screen

    function search() {
        field.take()
    }

    implicitHeight: Theme.controlHeight + 28

    SearchField {
        id: field
        anchors { left: parent.left; leftMargin: Theme.page; verticalCenter: parent.verticalCenter }
        width: Math.min(360, parent.width - scan.width - 3 * Theme.page)
        text: toolbar.screen.searchText
        onEdited: text => toolbar.screen.searchText = text
    }
    PushButton {
        id: scan
        anchors { right: parent.right; rightMargin: Theme.page; verticalCenter: parent.verticalCenter }
        text: Strings.of("cleanup.scan")
        icon: "arrow.clockwise"
        enabled: toolbar.screen.canScan
        onPressed: toolbar.screen.startScan()
    }
}
