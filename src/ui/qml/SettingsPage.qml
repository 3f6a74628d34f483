import QtQuick
import Vesko.Window

// A page of the settings: its blocks one beneath the other, scrolled where they do not fit.
FocusScope {
    id: page

    required property string name
    default property alias blocks: content.data
    readonly property Item focused: Window.activeFocusItem

    function keepInView(item) {
        let above = item
        while (above && above !== content) above = above.parent
        if (!above) return
        const top = item.mapToItem(content, 0, 0).y + content.y
        const gap = 12
        if (top - gap < scroll.contentY) scroll.contentY = Math.max(0, top - gap)
        else if (top + item.height + gap > scroll.contentY + scroll.height)
            scroll.contentY = Math.min(scroll.contentHeight - scroll.height, top + item.height + gap - scroll.height)
    }
    function scrollBy(distance) {
        scroll.contentY = Math.max(0, Math.min(Math.max(0, scroll.contentHeight - scroll.height), scroll.contentY + distance))
    }

    onFocusedChanged: if (focused) keepInView(focused)
    Keys.onDownPressed: scrollBy(40)
    Keys.onUpPressed: scrollBy(-40)

    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: content.height + 2 * Theme.page
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        Accessible.role: Accessible.Pane
        Accessible.name: page.name

        Column {
            id: content
            x: Theme.page
            y: Theme.page
            width: scroll.width - 2 * Theme.page
            spacing: Theme.page
        }
    }
    ThinScrollBar {
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: 2 }
        flickable: scroll
    }
}
