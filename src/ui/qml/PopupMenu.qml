import QtQuick
import Vesko.Window

// A menu. Covers the window while it is open, so that a click beside it closes it.
FocusScope {
    id: menu

    property var entries: [] // of each: "key" (of the catalog, and what it is known by), "enabled"

    signal chosen(string key)
    signal closed()

    // Opens the menu with a corner at this place of the window: above it where there is no room beneath.
    function popUp(at) {
        visible = true
        const here = mapFromItem(null, at.x, at.y)
        sheet.x = Math.max(8, Math.min(here.x, width - sheet.width - 8))
        sheet.y = here.y + sheet.height + 8 <= height ? here.y : Math.max(8, Math.min(here.y, height - 8) - sheet.height)
        forceActiveFocus(Qt.PopupFocusReason)
        choice.currentIndex = -1
        step(1)
    }
    function close() {
        visible = false
        closed()
    }
    function act(entry) {
        if (!entry || !entry.enabled) return
        close()
        chosen(entry.key)
    }
    // To the next entry that can be chosen, around the ends.
    function step(by) {
        const count = entries.length
        let next = choice.currentIndex < 0 && by < 0 ? count : choice.currentIndex
        for (let tries = 0; tries < count; ++tries) {
            next = (next + by + count) % count
            if (entries[next].enabled) break
        }
        choice.currentIndex = next
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
            width: Math.max(240, Theme.body * 17)
            height: contentHeight
            interactive: false
            focus: true
            keyNavigationEnabled: false
            highlightMoveDuration: 0
            model: menu.entries
            Keys.onUpPressed: menu.step(-1)
            Keys.onDownPressed: menu.step(1)
            Keys.onTabPressed: menu.step(1)
            Keys.onBacktabPressed: menu.step(-1)
            Keys.onReturnPressed: menu.act(menu.entries[currentIndex])
            Keys.onEnterPressed: menu.act(menu.entries[currentIndex])
            Keys.onSpacePressed: menu.act(menu.entries[currentIndex])
            delegate: Control {
                id: entry
                required property var modelData
                required property int index
                width: choice.width
                height: Theme.controlHeight
                enabled: modelData.enabled
                Accessible.role: Accessible.MenuItem
                Accessible.name: label.text
                Accessible.focusable: true
                Accessible.onPressAction: menu.act(modelData)
                Rectangle {
                    anchors.fill: parent
                    radius: Theme.buttonCorner
                    color: entry.enabled && choice.currentIndex === entry.index ? Theme.hover : "transparent"
                }
                Label {
                    id: label
                    anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
                    text: Strings.of(entry.modelData.key)
                    color: entry.enabled ? Theme.text : Theme.muted
                    Accessible.ignored: true
                }
                HoverHandler { onHoveredChanged: if (hovered) choice.currentIndex = entry.index }
                TapHandler { onTapped: menu.act(entry.modelData) }
            }
        }
    }
}
