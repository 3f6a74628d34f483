import QtQuick
import Vesko.Window

// The menu of a row: show in the file manager, copy the path, show or hide the items. Covers the window while
// it is open, so that a click beside it closes it.
FocusScope {
    id: menu

    required property CleanupScreen screen
    property int row: -1
    property var entries: []

    signal closed()

    function open(index, at) {
        const list = screen.list
        const wanted = []
        if (screen.canReveal(index)) wanted.push("menu.revealInFileManager", "menu.copyPath")
        if (list.kind(index) === CleanupListModel.Group)
            wanted.push(list.isExpanded(index) ? "menu.collapse" : "menu.expand")
        if (wanted.length === 0) return
        row = index
        entries = wanted
        visible = true
        const here = mapFromItem(null, at.x, at.y)
        sheet.x = Math.min(here.x, width - sheet.width - 8)
        sheet.y = Math.min(here.y, height - sheet.height - 8)
        forceActiveFocus(Qt.PopupFocusReason)
        choice.currentIndex = 0
    }
    function close() {
        visible = false
        closed()
    }
    function act(entry) {
        close()
        if (entry === "menu.revealInFileManager") screen.reveal(row)
        else if (entry === "menu.copyPath") screen.copyPath(row)
        else screen.list.setExpanded(row, entry === "menu.expand")
    }

    parent: Window.contentItem
    anchors.fill: parent
    z: 20
    visible: false
    Keys.onEscapePressed: close()

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        onPressed: menu.close()
    }
    Rectangle {
        id: sheet
        width: choice.width + 12
        height: choice.height + 12
        radius: Theme.cardCorner
        color: Theme.surface
        border { width: 1; color: Theme.border }
        Accessible.role: Accessible.PopupMenu

        ListView {
            id: choice
            x: 6
            y: 6
            width: 240
            height: contentHeight
            interactive: false
            focus: true
            keyNavigationWraps: true
            highlightMoveDuration: 0
            model: menu.entries
            Keys.onReturnPressed: menu.act(menu.entries[currentIndex])
            Keys.onEnterPressed: menu.act(menu.entries[currentIndex])
            Keys.onSpacePressed: menu.act(menu.entries[currentIndex])
            delegate: Rectangle {
                id: entry
                required property string modelData
                required property int index
                width: choice.width
                height: Theme.controlHeight
                radius: Theme.buttonCorner
                color: ListView.isCurrentItem ? Theme.hover : "transparent"
                Accessible.role: Accessible.MenuItem
                Accessible.name: label.text
                Accessible.onPressAction: menu.act(modelData)
                Label {
                    id: label
                    anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
                    text: Strings.of(entry.modelData)
                    Accessible.ignored: true
                }
                HoverHandler { onHoveredChanged: if (hovered) choice.currentIndex = entry.index }
                TapHandler { onTapped: menu.act(entry.modelData) }
            }
        }
    }
}
