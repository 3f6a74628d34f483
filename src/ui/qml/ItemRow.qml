import QtQuick
import Vesko.Window

// An item of an expanded group: box, name with the folder it lies in, mark of the review, size, and under the
// pointer or the keyboard a button that shows it in the file manager.
Item {
    id: item

    required property Item row // the ListRow around it, whose roles it shows
    property bool isNested: true

    signal toggled()
    signal revealRequested()
    signal menuRequested(point at)
    signal hovered(bool inside, Item over)

    Accessible.role: Accessible.ListItem
    Accessible.name: row.title + ", " + row.size
    Accessible.description: row.path
    Accessible.focusable: true
    Accessible.focused: row.focused

    RowGround {
        anchors.fill: parent
        first: false
        last: item.row.last
        lit: hover.hovered
        focused: item.row.focused
        lineInset: box.x + 6
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => item.menuRequested(point.position)
    }
    HoverHandler {
        id: hover
        onHoveredChanged: item.hovered(hovered, item)
    }

    TriStateBox {
        id: box
        x: item.isNested ? 90 : 10
        anchors.verticalCenter: parent.verticalCenter
        state3: item.row.check
        name: Strings.of("a11y.selectItem %@", item.row.title)
        enabled: item.row.checkable && !item.row.locked
        reachableByTab: item.row.current
        onToggled: item.toggled()
    }
    Label {
        id: name
        readonly property real room: size.x - x - 16 - (mark.visible ? 22 : 0)
        anchors { left: box.right; leftMargin: 6; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, Math.max(room * 0.6, room - folder.implicitWidth - 10))
        text: item.row.title
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    Label {
        id: folder
        anchors { left: name.right; leftMargin: 10; baseline: name.baseline }
        width: Math.min(implicitWidth, Math.max(0, name.room - name.width - 10))
        visible: width > 24
        text: item.row.detail
        color: Theme.muted
        font.pixelSize: Theme.caption
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    DiscoveredMark {
        id: mark
        anchors { right: size.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        visible: item.row.discovered
    }
    Label {
        id: size
        anchors { right: reveal.left; rightMargin: 6; verticalCenter: parent.verticalCenter }
        text: item.row.size
        color: Theme.muted
        Accessible.ignored: true
    }
    IconButton {
        id: reveal
        anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        // Not quite 0: assistive tools reach it without a pointer.
        opacity: hover.hovered || item.row.focused || activeFocus ? 1 : 0.01
        activeFocusOnTab: item.row.current
        icon: "arrow.up.forward.square"
        name: Strings.of("a11y.revealInFinder")
        onPressed: item.revealRequested()
    }
}
