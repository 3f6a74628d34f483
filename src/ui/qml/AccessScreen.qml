import QtQuick
import Vesko.Window

// Stands in the place of everything else while the person's files can't be read.
Rectangle {
    id: screen

    required property WindowModel shell
    readonly property bool linux: Qt.platform.os === "linux"

    color: Theme.background
    Accessible.role: Accessible.Pane
    Accessible.name: Strings.of("diskAccess.title")

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.page, 460)
        spacing: 16

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 48
            height: 48
            name: "lock.shield"
            color: Theme.purple
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: Strings.of("diskAccess.title")
            font { pixelSize: Theme.title; weight: Font.Bold }
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeight: 1.2
            text: Strings.of(screen.linux ? "diskAccess.linux.body" : "diskAccess.body")
            color: Theme.muted
        }
        Item {
            width: 1
            height: 4
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            kind: PushButton.Prominent
            text: Strings.of(screen.linux ? "diskAccess.linux.openFolder" : "diskAccess.openSettings")
            focus: true
            onPressed: screen.shell.openAccessSettings()
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Strings.of("diskAccess.alreadyGranted")
            onPressed: screen.shell.checkAccess()
        }
    }
}
