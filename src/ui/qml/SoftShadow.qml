import QtQuick
import Vesko.Window

// The one soft shadow, beneath a sheet.
Item {
    id: shadow

    required property Item target

    x: target.x
    y: target.y
    width: target.width
    height: target.height

    Repeater {
        model: 8
        Rectangle {
            required property int index
            anchors { fill: parent; margins: -3 * (index + 1); topMargin: -2 * index; bottomMargin: -4 * (index + 1) }
            radius: Theme.cardCorner + 3 * (index + 1)
            color: "#000000"
            opacity: 0.035
        }
    }
}
