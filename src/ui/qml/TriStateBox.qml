import QtQuick
import Vesko.Window

// A box with three states. It shows what it is given and asks for a change, and never turns by itself.
Control {
    id: box

    required property int state3 // 0 off, 1 mixed, 2 on
    required property string name
    property bool reachableByTab: true

    signal toggled()

    function toggle() {
        if (enabled) toggled()
    }

    implicitWidth: 32
    implicitHeight: 32
    activeFocusOnTab: enabled && reachableByTab
    Keys.onSpacePressed: toggle()

    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.description: Strings.of(state3 === 2 ? "a11y.selected"
                                     : state3 === 1 ? "a11y.partiallySelected" : "a11y.notSelected")
    Accessible.checkable: true
    Accessible.checked: state3 === 2
    Accessible.checkStateMixed: state3 === 1
    Accessible.focusable: true
    Accessible.onToggleAction: toggle()
    Accessible.onPressAction: toggle()

    FocusRing {
        target: box
        gap: -4
    }
    Icon {
        anchors.centerIn: parent
        width: 20
        height: 20
        opacity: box.enabled ? 1 : 0.4
        name: box.state3 === 2 ? "checkmark.square.fill" : box.state3 === 1 ? "minus.square.fill" : "square"
        color: box.state3 === 0 ? Theme.muted : Theme.purple
    }
    HoverHandler {
        cursorShape: box.enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: box.toggle()
    }
}
