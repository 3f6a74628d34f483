import QtQuick
import Vesko.Window

// How far a running scan has come, with its figures and Cancel.
Item {
    id: banner

    required property CleanupScreen screen
    readonly property bool measured: screen.banner === CleanupScreen.Progress

    visible: screen.banner !== CleanupScreen.NoBanner
    implicitHeight: visible ? 56 + 2 * Math.max(0, Theme.body - 15) : 0

    ProgressLine {
        id: line
        visible: banner.measured
        anchors { left: parent.left; right: parent.right; leftMargin: Theme.page; rightMargin: Theme.page }
        fraction: banner.screen.scanFraction
        name: Strings.of("a11y.scanProgress")
    }
    Column {
        anchors { left: line.left; right: cancel.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        anchors.verticalCenterOffset: 2
        spacing: 2
        Label {
            width: parent.width
            text: banner.measured ? Strings.of("banner.indexing") : banner.screen.scanLine
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            visible: banner.measured
            text: banner.measured ? banner.screen.scanLine : ""
            color: Theme.muted
            font.pixelSize: Theme.caption
        }
    }
    PushButton {
        id: cancel
        visible: banner.measured
        anchors { right: line.right; verticalCenter: parent.verticalCenter; verticalCenterOffset: 2 }
        text: Strings.of("action.cancel")
        onPressed: banner.screen.cancelScan()
    }
}
