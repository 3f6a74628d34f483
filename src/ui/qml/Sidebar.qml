import QtQuick
import Vesko.Window

// The app's name and mark, the destinations, and at the foot the free space of the volume and the menu.
Rectangle {
    id: sidebar

    required property WindowModel shell
    required property SettingsModel settings

    signal menuAsked(point at)

    function takeMenu() {
        foot.takeMenu()
    }

    color: Theme.surface

    Row {
        id: brand
        x: 20
        y: 20
        width: parent.width - 40
        spacing: 10

        Rectangle {
            width: 32
            height: 32
            radius: 9
            color: Theme.prominent
            Icon {
                anchors.centerIn: parent
                width: 22
                height: 22
                name: "mark"
                color: Theme.onProminent
            }
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 42
            text: Strings.of("app.name")
            font { pixelSize: Theme.section; weight: Font.Bold }
            Accessible.role: Accessible.Heading
        }
    }

    Column {
        anchors { top: brand.bottom; topMargin: 24; left: parent.left; right: parent.right; margins: 12 }
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: Strings.of("app.name")

        Repeater {
            model: sidebar.shell.destinations
            SidebarEntry {
                required property var modelData
                width: parent.width
                label: Strings.of(modelData.label)
                icon: modelData.icon
                selected: sidebar.shell.selection === modelData.id
                          || (sidebar.shell.selection === "" && modelData.id === "home")
                onChosen: sidebar.shell.selection = modelData.id
            }
        }
    }

    SidebarFoot {
        id: foot
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 12 }
        shell: sidebar.shell
        settings: sidebar.settings
        onMenuAsked: at => sidebar.menuAsked(at)
    }
    Rectangle {
        anchors { top: parent.top; bottom: parent.bottom; right: parent.right }
        width: 1
        color: Theme.border
    }
}
