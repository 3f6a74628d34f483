import QtQuick
import Vesko.Window

// What stands where there is no list: an icon, a title, a sentence, and at most one button.
Item {
    id: empty

    required property string icon
    required property string title
    required property string body
    property string action: ""

    signal acted()

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.page, 420)
        spacing: 12
        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 48
            height: 48
            name: empty.icon
            color: Theme.purple
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: empty.title
            font { pixelSize: Theme.title; weight: Font.Bold }
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            lineHeight: 1.15
            text: empty.body
            color: Theme.muted
        }
        Item {
            visible: empty.action !== ""
            width: 1
            height: 4
        }
        PushButton {
            visible: empty.action !== ""
            anchors.horizontalCenter: parent.horizontalCenter
            kind: PushButton.Prominent
            large: true
            text: empty.action
            icon: "arrow.clockwise"
            onPressed: empty.acted()
        }
    }
}
