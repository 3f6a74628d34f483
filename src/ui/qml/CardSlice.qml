import QtQuick
import Vesko.Window

// A stretch of a card that may hold its rounded top, its rounded bottom, both or neither.
Item {
    id: slice

    property bool roundedTop: true
    property bool roundedBottom: true
    property color color: Theme.surface
    property int corner: Theme.cardCorner

    Rectangle {
        anchors.fill: parent
        radius: slice.roundedTop || slice.roundedBottom ? slice.corner : 0
        color: slice.color
    }
    Rectangle {
        visible: !slice.roundedTop && slice.roundedBottom
        width: parent.width
        height: Math.min(slice.corner, parent.height)
        color: slice.color
    }
    Rectangle {
        visible: slice.roundedTop && !slice.roundedBottom
        y: parent.height - height
        width: parent.width
        height: Math.min(slice.corner, parent.height)
        color: slice.color
    }
}
