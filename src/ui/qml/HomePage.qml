import QtQuick
import Vesko.Window

// How full the disk is, what fills it, what of it can go, and two ways on.
FocusScope {
    id: page

    required property HomeScreen screen
    readonly property int margin: width < 480 ? Theme.inset : Theme.page
    readonly property int quickActionColumns: width >= 640 ? 2 : 1
    readonly property Item focused: Window.activeFocusItem

    signal inspectorEntered() // the inspector was opened by the keyboard, which is to go there

    function isInContent(item) {
        let above = item
        while (above && above !== content) above = above.parent
        return above !== null
    }
    // What the keyboard reaches is scrolled to.
    function keepInView(item) {
        if (!isInContent(item)) return
        const top = item.mapToItem(content, 0, 0).y + content.y
        const gap = 12
        if (top - gap < scroll.contentY) scroll.contentY = Math.max(0, top - gap)
        else if (top + item.height + gap > scroll.contentY + scroll.height)
            scroll.contentY = Math.min(scroll.contentHeight - scroll.height, top + item.height + gap - scroll.height)
    }
    // From row to row and card to card; the page scrolls where there is none to go to.
    function step(down) {
        const next = isInContent(focused) ? focused.nextItemInFocusChain(down) : null
        if (next && isInContent(next)) next.forceActiveFocus(down ? Qt.TabFocusReason : Qt.BacktabFocusReason)
        else scrollBy(down ? 40 : -40)
    }
    function scrollBy(distance) {
        const most = Math.max(0, scroll.contentHeight - scroll.height)
        scroll.contentY = Math.max(0, Math.min(most, scroll.contentY + distance))
    }

    onFocusedChanged: if (visible && focused) keepInView(focused)
    onVisibleChanged: if (visible) screen.bringUpToDate()
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Down || event.key === Qt.Key_Up) step(event.key === Qt.Key_Down)
        else if (event.key === Qt.Key_PageDown) scrollBy(scroll.height * 0.9)
        else if (event.key === Qt.Key_PageUp) scrollBy(-scroll.height * 0.9)
        else if (event.key === Qt.Key_Home) scrollBy(-scroll.contentHeight)
        else if (event.key === Qt.Key_End) scrollBy(scroll.contentHeight)
        else event.accepted = false
    }

    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: content.height + 2 * page.margin
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        focus: true
        Accessible.role: Accessible.Pane
        Accessible.name: Strings.of("home.title")

        Column {
            id: content
            x: page.margin
            y: page.margin
            width: Math.min(scroll.width - 2 * page.margin, 960)
            spacing: Theme.page

            VolumeHeader {
                width: parent.width
                available: page.screen.availableLine
                summary: page.screen.volumeLine
                onTapped: page.screen.clearSelection()
            }
            StorageDashboardView {
                width: parent.width
                visible: page.screen.hasDashboard
                screen: page.screen
                onSelectBucket: (id, byKeyboard) => {
                    page.screen.selectBucket(id)
                    if (byKeyboard) page.inspectorEntered()
                }
                onDismissTap: page.screen.clearSelection()
                onSelectCleanupCategory: id => page.screen.openCategory(id)
            }
            StorageSkeleton {
                width: parent.width
                visible: !page.screen.hasDashboard
            }
            QuickActions {
                width: parent.width
                columns: page.quickActionColumns
                screen: page.screen
            }
        }
    }
    ThinScrollBar {
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: 2 }
        flickable: scroll
    }
}
