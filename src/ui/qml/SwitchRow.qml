import QtQuick
import Vesko.Window

// A line with a switch at its end; the whole line turns it. It shows what it is given and asks for a change.
Control {
    id: line

    required property string text
    required property bool on

    signal toggled(bool on)

    function toggle() {
        toggled(!on)
    }

    width: parent.width
    implicitHeight: Math.max(Theme.controlHeight + 8, label.implicitHeight + 16)
    activeFocusOnTab: enabled
    Keys.onSpacePressed: toggle()
    Keys.onReturnPressed: toggle()
    Keys.onEnterPressed: toggle()

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.focusable: true
    Accessible.onToggleAction: toggle()
    Accessible.onPressAction: toggle()

    FocusRing {
        target: line
        gap: -4
    }
    Label {
        id: label
        anchors { left: parent.left; leftMargin: Theme.inset; right: track.left; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        text: line.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    Rectangle {
        id: track
        anchors { right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: 42
        height: 24
        radius: 12
        color: line.on ? Theme.prominent : Theme.hover
        border { width: line.on ? 0 : 1; color: Theme.muted }

        Rectangle {
            x: line.on ? 21 : 3
            y: 3
            width: 18
            height: 18
            radius: 9
            color: line.on ? Theme.onProminent : Theme.muted
            Behavior on x {
                enabled: !Theme.reducedMotion
                NumberAnimation { duration: Theme.motion; easing.type: Easing.OutCubic }
            }
        }
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: line.toggle()
    }
}
