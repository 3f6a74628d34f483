import QtQuick
import Vesko.Window

// The list: hero and status banner, then bands, groups and items, in one scroll.
FocusScope {
    id: cleanupList

    required property CleanupScreen screen
    readonly property int margin: Theme.page
    readonly property int rowWidth: width - 2 * margin
    readonly property int bandGap: 12
    readonly property bool keyboardInside: view.activeFocus
    property alias view: view
    property alias tip: tip
    property bool menuOpen: menu.visible

    function toggle(row) {
        view.currentIndex = row
        screen.toggle(row)
    }
    function expand(row, expanded) {
        view.currentIndex = row
        screen.list.setExpanded(row, expanded)
    }
    function openMenu(row, at) {
        view.currentIndex = row
        menu.open(row, at)
    }
    function show(row) {
        const from = view.contentY
        view.positionViewAtIndex(row, ListView.Center)
        view.returnToBounds()
        const to = view.contentY
        view.currentIndex = row
        if (Theme.reducedMotion || from === to) return
        scroll.from = from
        scroll.to = to
        scroll.restart()
    }

    onVisibleChanged: screen.listShown = visible
    Component.onCompleted: screen.listShown = visible
    Component.onDestruction: screen.listShown = false

    StickyBand { // lies over the rows, and comes before them for assistive tools
        id: sticky
        z: 1
        list: cleanupList
    }
    ListView {
        id: view
        anchors.fill: parent
        focus: true
        activeFocusOnTab: true
        clip: true
        model: cleanupList.screen.list
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        highlightFollowsCurrentItem: false
        cacheBuffer: 0
        reuseItems: false
        currentIndex: -1
        Accessible.role: Accessible.List
        Accessible.name: Strings.of("sidebar.cleanup")

        header: Item {
            width: view.width
            height: content.height
            Column {
                id: content
                x: cleanupList.margin
                width: cleanupList.rowWidth
                CleanupHero {
                    width: parent.width
                    screen: cleanupList.screen
                }
                StatusBanner {
                    width: parent.width
                    bottomPadding: hasSomething ? 8 : 0
                    screen: cleanupList.screen
                }
            }
        }
        delegate: ListRow { list: cleanupList }
        footer: Item {
            width: 1
            height: Theme.page
        }

        Keys.onPressed: event => cleanupList.key(event)
    }

    function key(event) {
        const row = view.currentIndex
        const page = Math.max(1, Math.floor(view.height / Theme.groupHeight) - 1)
        event.accepted = true
        if (event.key === Qt.Key_Down) step(row + 1)
        else if (event.key === Qt.Key_Up) step(row < 0 ? 0 : row - 1)
        else if (event.key === Qt.Key_PageDown) step(row + page)
        else if (event.key === Qt.Key_PageUp) step(row - page)
        else if (event.key === Qt.Key_Home) step(0)
        else if (event.key === Qt.Key_End) step(view.count - 1)
        else if (event.key === Qt.Key_Right) screen.list.setExpanded(row, true)
        else if (event.key === Qt.Key_Left) collapse(row)
        else if (event.key === Qt.Key_Space) screen.toggle(row)
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) screen.list.setExpanded(row, !screen.list.isExpanded(row))
        else if (event.key === Qt.Key_Menu || (event.key === Qt.Key_F10 && event.modifiers & Qt.ShiftModifier)) keyMenu(row)
        else event.accepted = false
    }
    function step(row) {
        view.currentIndex = Math.max(0, Math.min(view.count - 1, row))
        view.positionViewAtIndex(view.currentIndex, ListView.Contain)
        // The row shows fully beneath the header that stays at the top.
        const item = view.currentItem
        if (item && sticky.visible && item.y < view.contentY + sticky.height)
            view.contentY = Math.max(view.originY, item.y - sticky.height)
        if (view.currentIndex === 0) view.positionViewAtBeginning()
    }
    // From an item to its group first, from a group to its items hidden.
    function collapse(row) {
        const header = screen.list.headerRow(row)
        if (header >= 0 && header !== row) step(header)
        else screen.list.setExpanded(row, false)
    }
    function keyMenu(row) {
        const item = view.itemAtIndex(row)
        if (item) menu.open(row, item.mapToItem(null, 96, item.height / 2))
    }

    ScreenOrder { target: view.contentItem }
    NumberAnimation {
        id: scroll
        target: view
        property: "contentY"
        duration: Theme.motion
        easing.type: Easing.OutCubic
    }
    ThinScrollBar {
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: 2 }
        flickable: view
    }
    HoverTip { id: tip }
    RowMenu {
        id: menu
        screen: cleanupList.screen
        onClosed: view.forceActiveFocus(Qt.PopupFocusReason)
    }
    Connections {
        target: cleanupList.screen
        function onScrollRequested(row) { cleanupList.show(row) }
    }
}
