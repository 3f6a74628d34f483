import QtQuick
import Vesko.Window

// A button with a word: plain, prominent (the one main action of a screen) or destructive.
Control {
    id: button

    enum Kind { Plain, Prominent, Destructive, Text }

    required property string text
    property string icon: ""
    property int kind: PushButton.Plain
    property bool large: false
    property string accessibleName: text
    readonly property bool filled: kind === PushButton.Prominent || kind === PushButton.Destructive
    readonly property color ground: kind === PushButton.Destructive ? Theme.destructive
                                  : kind === PushButton.Prominent ? Theme.prominent : Theme.surface
    readonly property color ink: !enabled ? Theme.muted
                               : kind === PushButton.Destructive ? Theme.onDestructive
                               : kind === PushButton.Prominent ? Theme.onProminent
                               : kind === PushButton.Text ? Theme.purple : Theme.text

    signal pressed()

    function press() {
        if (enabled) pressed()
    }

    readonly property int sides: large ? 40 : kind === PushButton.Text ? 16 : 28
    readonly property int iconRoom: icon === "" ? 0 : 26

    implicitWidth: Math.ceil(label.implicitWidth) + iconRoom + sides
    implicitHeight: Theme.controlHeight + (large ? 8 : 0)
    activeFocusOnTab: enabled

    Keys.onSpacePressed: press()
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()

    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.focusable: true
    Accessible.onPressAction: press()

    Rectangle {
        anchors.fill: parent
        radius: Theme.buttonCorner
        color: button.kind === PushButton.Text ? (hover.hovered && button.enabled ? Theme.hover : "transparent")
             : !button.enabled ? Theme.hover
             : button.filled ? (tap.pressed ? Qt.darker(button.ground, 1.12) : button.ground)
             : tap.pressed || hover.hovered ? Theme.hover : Theme.surface
        border.width: button.kind === PushButton.Plain ? 1 : 0
        border.color: Theme.border
    }
    FocusRing { target: button }

    Row {
        id: content
        anchors.centerIn: parent
        spacing: Theme.grid
        Icon {
            visible: button.icon !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: 18
            height: 18
            name: button.icon
            color: button.ink
        }
        Label {
            id: label
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(Math.ceil(implicitWidth), Math.max(0, button.width - 16 - button.iconRoom))
            text: button.text
            color: button.ink
            font.weight: button.filled ? Font.DemiBold : Font.Medium
            Accessible.ignored: true
        }
    }

    HoverHandler {
        id: hover
        cursorShape: button.enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: button.press()
    }
}
