import QtQuick
import Vesko.Window

// The 2 px line around what has the keyboard's attention.
Rectangle {
    required property Item target
    property int gap: 2

    anchors.fill: parent
    anchors.margins: -gap
    visible: target.activeFocus
    color: "transparent"
    border.width: 2
    border.color: Theme.purple
    radius: Theme.buttonCorner + gap
}
