import QtQuick
import Vesko.Window

// The foot of the Cleanup screen: what is selected and the one action; while deleting, how far it has come.
Rectangle {
    id: bar

    required property CleanupScreen screen

    signal recoverPressed()

    function focusButton() {
        recover.forceActiveFocus(Qt.OtherFocusReason)
    }

    implicitHeight: Math.max(72, Theme.body * 5)
    color: Theme.surface

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.border
    }
    Column {
        visible: !bar.screen.deleting
        anchors { left: parent.left; leftMargin: Theme.page; right: recover.left; rightMargin: 16 }
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        Label {
            width: parent.width
            text: bar.screen.summaryLine
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            text: bar.screen.hintLine
            color: Theme.muted
            font.pixelSize: Theme.caption
        }
    }
    Column {
        visible: bar.screen.deleting
        anchors { left: parent.left; leftMargin: Theme.page; right: recover.left; rightMargin: 24 }
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4
        Label {
            width: parent.width
            text: bar.screen.deletingLine === "" ? Strings.of("action.deleting.title") : bar.screen.deletingLine
            font.weight: Font.DemiBold
        }
        ProgressLine {
            width: parent.width
            fraction: bar.screen.deletingFraction
            name: Strings.of("a11y.deleteProgress")
        }
        Label {
            width: parent.width
            text: bar.screen.deletingItem
            color: Theme.muted
            font.pixelSize: Theme.caption
            elide: Text.ElideMiddle
        }
    }
    PushButton {
        id: recover
        anchors { right: parent.right; rightMargin: Theme.page; verticalCenter: parent.verticalCenter }
        kind: PushButton.Prominent
        large: true
        text: bar.screen.deleting ? Strings.of("action.deleting.title") : bar.screen.recoverLabel
        enabled: bar.screen.canRecover
        onPressed: bar.recoverPressed()
    }
}
