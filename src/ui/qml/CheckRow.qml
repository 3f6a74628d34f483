import QtQuick
import Vesko.Window

// A box with its words and what they mean beneath; the whole line turns it. It shows what it is given and asks for a
// change.
Control {
    id: line

    required property string text
    required property bool on
    property string explanation: ""

    signal toggled(bool on)

    function toggle() {
        toggled(!on)
    }

    width: parent.width
    implicitHeight: Math.max(Theme.controlHeight + 8, words.height + 16)
    activeFocusOnTab: enabled
    Keys.onSpacePressed: toggle()
    Keys.onReturnPressed: toggle()
    Keys.onEnterPressed: toggle()

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.description: explanation
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.focusable: true
    Accessible.onToggleAction: toggle()
    Accessible.onPressAction: toggle()

    FocusRing {
        target: line
        gap: -4
    }
    Icon {
        id: box
        x: Theme.inset
        y: words.y + (label.height - height) / 2
        width: 20
        height: 20
        opacity: line.enabled ? 1 : 0.4
        name: line.on ? "checkmark.square.fill" : "square"
        color: line.on ? Theme.purple : Theme.muted
    }
    Column {
        id: words
        anchors { left: box.right; leftMargin: 12; right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        spacing: 4
        Label {
            id: label
            width: parent.width
            text: line.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: line.explanation
            color: Theme.muted
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: line.toggle()
    }
}
