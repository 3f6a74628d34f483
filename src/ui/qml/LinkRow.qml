import QtQuick
import Vesko.Window

// A line that leads somewhere: out of the program as a link, or to more within it.
Control {
    id: line

    required property string text
    property string icon: ""
    property string trailingIcon: ""
    property bool isLink: false

    signal chosen()

    width: parent.width
    implicitHeight: Math.max(Theme.controlHeight + 8, label.implicitHeight + 16)
    activeFocusOnTab: enabled
    Keys.onSpacePressed: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()

    Accessible.role: isLink ? Accessible.Link : Accessible.Button
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: chosen()

    FocusRing {
        target: line
        gap: -4
    }
    Icon {
        id: leading
        visible: name !== ""
        x: Theme.inset
        anchors.verticalCenter: parent.verticalCenter
        name: line.icon
        color: line.isLink ? Theme.purple : Theme.muted
    }
    Label {
        id: label
        anchors { left: parent.left; leftMargin: leading.visible ? Theme.inset + 30 : Theme.inset }
        anchors { right: trailing.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
        text: line.text
        color: line.isLink ? Theme.purple : Theme.text
        wrapMode: Text.Wrap
        font.underline: line.isLink && hover.hovered
        Accessible.ignored: true
    }
    Icon {
        id: trailing
        anchors { right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: 16
        height: 16
        name: line.trailingIcon
        color: Theme.muted
    }
    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: line.chosen()
    }
}
