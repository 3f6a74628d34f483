import QtQuick
import Vesko.Window

// A small note that a pass of the model is at work.
Rectangle {
    id: chip

    required property string text

    implicitWidth: visible ? content.implicitWidth + 20 : 0
    implicitHeight: visible ? Math.max(26, Theme.caption + 14) : 0
    radius: height / 2
    color: Theme.hover
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: content
        anchors.centerIn: parent
        spacing: 6
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: 14
            height: 14
            name: "sparkles"
            color: Theme.purple
        }
        Label {
            text: chip.text
            color: Theme.purple
            font { pixelSize: Theme.caption; weight: Font.DemiBold }
            Accessible.ignored: true
        }
    }
}
