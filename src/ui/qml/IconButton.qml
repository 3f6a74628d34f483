import QtQuick
import Vesko.Window

// A button that is a picture alone; its name is for the tooltip's place in assistive tools.
Control {
    id: button

    required property string icon
    required property string name
    property color tint: Theme.muted

    signal pressed()

    implicitWidth: 28
    implicitHeight: 28
    activeFocusOnTab: true
    Keys.onSpacePressed: pressed()
    Keys.onReturnPressed: pressed()
    Keys.onEnterPressed: pressed()

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onPressAction: button.pressed()

    Rectangle {
        anchors.fill: parent
        radius: Theme.buttonCorner
        color: hover.hovered ? Theme.border : "transparent"
    }
    FocusRing {
        target: button
        gap: 0
    }
    Icon {
        anchors.centerIn: parent
        width: 18
        height: 18
        name: button.icon
        color: hover.hovered ? Theme.text : button.tint
    }
    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: button.pressed()
    }
}
