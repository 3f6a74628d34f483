import QtQuick
import Vesko.Window

// A row of a Home card that leads somewhere: lit under the pointer, a line above all but the first, the ring of
// the keyboard.
Item {
    id: ground

    required property Item target
    required property bool first
    property bool lit: false
    property bool chosen: false
    readonly property int side: 8

    Rectangle {
        visible: !ground.first
        x: Theme.inset
        width: parent.width - 2 * Theme.inset
        height: 1
        color: Theme.border
    }
    Rectangle {
        anchors { fill: parent; leftMargin: ground.side; rightMargin: ground.side; topMargin: 2; bottomMargin: 1 }
        radius: Theme.buttonCorner + 2
        color: ground.chosen ? Theme.chosen : ground.lit ? Theme.hover : "transparent"
        border { width: ground.target.activeFocus ? 2 : 0; color: Theme.purple }
    }
}
