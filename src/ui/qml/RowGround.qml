import QtQuick
import Vesko.Window

// What lies beneath a group's or an item's row: its piece of the card, lit under the pointer, and the ring of
// the keyboard's row.
Item {
    id: ground

    required property bool first
    required property bool last
    required property bool lit
    required property bool focused
    property int lineInset: 16

    CardSlice {
        anchors.fill: parent
        roundedTop: ground.first
        roundedBottom: ground.last
        color: ground.lit ? Theme.hover : Theme.surface
    }
    Rectangle {
        visible: !ground.first
        x: ground.lineInset
        width: parent.width - ground.lineInset
        height: 1
        color: Theme.border
    }
    Rectangle {
        anchors { fill: parent; margins: 2 }
        visible: ground.focused
        radius: Theme.cardCorner - 2
        color: "transparent"
        border { width: 2; color: Theme.purple }
    }
}
