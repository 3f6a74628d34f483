import QtQuick
import Vesko.Window

// The Cleanup screen: toolbar, scan banner, content, action bar.
FocusScope {
    id: page

    required property CleanupScreen screen

    signal recoverPressed()

    function search() {
        toolbar.search()
    }
    function focusList() {
        if (content.item) content.item.forceActiveFocus(Qt.OtherFocusReason)
    }

    CleanupToolbar {
        id: toolbar
        width: parent.width
        height: implicitHeight
        screen: page.screen
    }
    ScanBanner {
        id: banner
        anchors.top: toolbar.bottom
        width: parent.width
        height: implicitHeight
        screen: page.screen
    }
    StatusBanner { // with the list it scrolls; where there is none it stands above the empty state
        id: status
        anchors { top: banner.bottom; left: parent.left; right: parent.right; margins: Theme.page; topMargin: 4 }
        visible: page.screen.content !== CleanupScreen.List && hasSomething
        height: visible ? implicitHeight : 0
        screen: page.screen
    }
    Loader {
        id: content
        anchors { top: status.bottom; left: parent.left; right: parent.right; bottom: bar.top }
        focus: true
        sourceComponent: page.screen.content === CleanupScreen.List ? list
                       : page.screen.content === CleanupScreen.Skeleton ? skeleton
                       : page.screen.content === CleanupScreen.NoResults ? noResults : awaiting
    }
    Component {
        id: list
        CleanupList { screen: page.screen }
    }
    Component {
        id: skeleton
        SkeletonList { }
    }
    Component {
        id: awaiting
        EmptyState {
            icon: "magnifyingglass"
            title: Strings.of("empty.awaitingScan.title")
            body: Strings.of("empty.awaitingScan.body")
            action: Strings.of("cleanup.scan")
            onActed: page.screen.startScan()
        }
    }
    Component {
        id: noResults
        EmptyState {
            icon: "sparkles"
            title: Strings.of("empty.noResults.title")
            body: Strings.of("empty.noResults.body")
        }
    }
    ActionBar {
        id: bar
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: implicitHeight
        screen: page.screen
        onRecoverPressed: page.recoverPressed()
    }
}
