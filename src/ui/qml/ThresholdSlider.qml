import QtQuick
import Vesko.Window

// A slider in whole steps. It shows the value that it is given and asks for another; the model decides.
Control {
    id: slider

    required property string name
    required property real value
    required property real minimumValue
    required property real maximumValue
    property real stepSize: 1
    readonly property real part: (value - minimumValue) / (maximumValue - minimumValue)
    readonly property real room: width - handle.width

    signal moved(real value)

    function moveTo(wanted) {
        moved(Math.max(minimumValue, Math.min(maximumValue, wanted)))
    }
    // To the next whole step, also from between two.
    function step(by) {
        const at = value / stepSize
        moveTo((by > 0 ? Math.floor(at) + by : Math.ceil(at) + by) * stepSize)
    }
    function moveToPlace(x) {
        const part = Math.max(0, Math.min(1, (x - handle.width / 2) / Math.max(1, room)))
        moveTo(Math.round((minimumValue + part * (maximumValue - minimumValue)) / stepSize) * stepSize)
    }

    implicitHeight: Theme.controlHeight
    activeFocusOnTab: enabled
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Right || event.key === Qt.Key_Up) step(1)
        else if (event.key === Qt.Key_Left || event.key === Qt.Key_Down) step(-1)
        else if (event.key === Qt.Key_PageUp) step(5)
        else if (event.key === Qt.Key_PageDown) step(-5)
        else if (event.key === Qt.Key_Home) moveTo(minimumValue)
        else if (event.key === Qt.Key_End) moveTo(maximumValue)
        else event.accepted = false
    }

    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.focusable: true
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    FocusRing { target: slider }
    Rectangle {
        id: track
        x: handle.width / 2
        anchors.verticalCenter: parent.verticalCenter
        width: slider.room
        height: 6
        radius: 3
        color: Theme.border
        Rectangle {
            width: slider.part * parent.width
            height: parent.height
            radius: 3
            color: Theme.prominent
        }
    }
    Rectangle {
        id: handle
        x: slider.part * slider.room
        anchors.verticalCenter: parent.verticalCenter
        width: 22
        height: 22
        radius: 11
        color: Theme.surface
        border { width: 2; color: Theme.prominent }
    }
    MouseArea {
        anchors.fill: parent
        preventStealing: true
        cursorShape: Qt.PointingHandCursor
        onPressed: mouse => {
            slider.forceActiveFocus(Qt.MouseFocusReason)
            slider.moveToPlace(mouse.x)
        }
        onPositionChanged: mouse => { if (pressed) slider.moveToPlace(mouse.x) }
    }
}
