import QtQuick
import Vesko.Window

// One destination of the sidebar; the selected one is a filled pill.
FocusScope {
    id: entry

    required property string label
    required property string icon
    required property bool selected

    signal chosen()

    implicitHeight: Theme.controlHeight + 4
    activeFocusOnTab: true
    Keys.onSpacePressed: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()

    Accessible.role: Accessible.PageTab
    Accessible.name: label
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: chosen()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: entry.selected ? Theme.prominent : hover.hovered ? Theme.hover : "transparent"
    }
    FocusRing {
        target: entry
        radius: height / 2
    }
    Icon {
        id: mark
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        name: entry.icon
        color: entry.selected ? Theme.onProminent : Theme.muted
    }
    Label {
        anchors { left: mark.right; leftMargin: 10; right: parent.right; rightMargin: 12 }
        anchors.verticalCenter: parent.verticalCenter
        text: entry.label
        color: entry.selected ? Theme.onProminent : Theme.text
        font.weight: entry.selected ? Font.DemiBold : Font.Normal
        Accessible.ignored: true
    }

    HoverHandler { id: hover }
    TapHandler { onTapped: entry.chosen() }
}
