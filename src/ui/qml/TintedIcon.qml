import QtQuick
import Vesko.Window

// A symbol on a rounded square of its own colour.
Rectangle {
    id: tile

    required property string icon
    required property color tint

    implicitWidth: 32
    implicitHeight: 32
    radius: 8
    color: Qt.alpha(tint, 0.12)

    Icon {
        anchors.centerIn: parent
        width: 20
        height: 20
        name: tile.icon
        color: tile.tint
    }
}
