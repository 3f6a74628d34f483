import QtQuick
import Vesko.Window

// One message of the status banner.
Rectangle {
    id: line

    required property string text
    property string title: ""
    property string icon: ""
    property color tint: Theme.text
    property bool dismissible: false

    signal dismissed()

    implicitHeight: content.height + 24
    radius: Theme.cardCorner
    color: Theme.surface
    border.width: 1
    border.color: Theme.border
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title === "" ? text : title
    Accessible.description: title === "" ? "" : text

    Icon {
        id: mark
        visible: line.icon !== ""
        x: 16
        y: 12 + Math.max(0, (Theme.body * 1.3 - height) / 2)
        width: visible ? 20 : 0
        height: 20
        name: line.icon
        color: line.tint
    }
    Column {
        id: content
        anchors { left: mark.right; leftMargin: mark.visible ? 12 : 0; right: close.left; rightMargin: 12 }
        y: 12
        spacing: 4
        Label {
            width: parent.width
            visible: line.title !== ""
            text: line.title
            color: line.tint
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: line.text
            color: line.title === "" ? line.tint : Theme.text
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 8
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    IconButton {
        id: close
        visible: line.dismissible
        anchors { right: parent.right; rightMargin: visible ? 8 : 0 }
        y: 8
        width: visible ? implicitWidth : 4
        icon: "xmark"
        name: Strings.of("a11y.dismiss")
        onPressed: line.dismissed()
    }
}
