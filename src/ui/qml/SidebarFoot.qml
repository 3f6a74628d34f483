import QtQuick
import Vesko.Window

// The foot of the sidebar: the button of the program's menu, which a dot marks while a newer version is known, and
// the free space of the volume.
Column {
    id: foot

    required property WindowModel shell
    required property SettingsModel settings
    readonly property bool hasNews: settings.updates.newerVersion !== ""

    signal menuAsked(point at)

    function takeMenu() {
        button.forceActiveFocus(Qt.PopupFocusReason)
    }
    function openMenu() {
        menuAsked(button.mapToItem(null, 0, -4))
    }

    spacing: 10

    Control {
        id: button

        width: parent.width
        height: Theme.controlHeight + 4
        activeFocusOnTab: true
        Keys.onSpacePressed: foot.openMenu()
        Keys.onReturnPressed: foot.openMenu()
        Keys.onEnterPressed: foot.openMenu()
        Accessible.role: Accessible.Button
        Accessible.name: Strings.of("sidebar.menu")
        Accessible.description: foot.hasNews ? Strings.of("a11y.updateAvailable") : ""
        Accessible.focusable: true
        Accessible.onPressAction: foot.openMenu()

        Rectangle {
            anchors.fill: parent
            radius: height / 2
            color: hover.hovered ? Theme.hover : "transparent"
        }
        FocusRing {
            target: button
            radius: height / 2
        }
        Icon {
            id: mark
            x: 14
            anchors.verticalCenter: parent.verticalCenter
            width: 18
            height: 18
            name: "gearshape"
            color: Theme.muted
        }
        Label {
            anchors { left: mark.right; leftMargin: 10; right: dot.left; rightMargin: 8 }
            anchors.verticalCenter: parent.verticalCenter
            text: Strings.of("sidebar.menu")
            Accessible.ignored: true
        }
        Rectangle {
            id: dot
            anchors { right: parent.right; rightMargin: 14; verticalCenter: parent.verticalCenter }
            visible: foot.hasNews
            width: 8
            height: 8
            radius: 4
            color: Theme.purple
        }
        HoverHandler { id: hover }
        TapHandler { onTapped: foot.openMenu() }
    }
    Row {
        x: 8
        width: parent.width - 16
        visible: foot.shell.freeSpace !== ""
        spacing: 8
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            name: "internaldrive"
            color: Theme.muted
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 24
            text: foot.shell.freeSpace
            color: Theme.muted
            font.pixelSize: Theme.caption
        }
    }
    Item {
        width: 1
        height: 1
    }
}
