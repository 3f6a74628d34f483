import QtQuick
import Vesko.Window

// A row of the list: a band's header, a group or an item.
Item {
    id: self

    required property int index
    required property int kind
    required property string title
    required property string detail
    required property string size
    required property int check
    required property bool checkable
    required property bool expanded
    required property string icon
    required property int tint
    required property int safety
    required property bool analyzing
    required property bool discovered
    required property string path
    required property bool first
    required property bool last

    required property Item list // the CleanupList around it
    readonly property bool locked: list.screen.deleting // the selection stands while it is being deleted
    readonly property bool current: ListView.isCurrentItem
    readonly property bool focused: current && list.keyboardInside
    readonly property color tintColor: Theme.segmentColor(tint, Theme.dark)

    width: list.rowWidth
    x: list.margin
    height: kind === CleanupListModel.Band ? Theme.bandHeight + list.bandGap
          : kind === CleanupListModel.Group ? Theme.groupHeight : Theme.itemHeight
    Accessible.ignored: true

    Loader {
        anchors { fill: parent; topMargin: self.kind === CleanupListModel.Band ? self.list.bandGap : 0 }
        sourceComponent: self.kind === CleanupListModel.Band ? band
                       : self.kind === CleanupListModel.Group ? group : item
    }
    Component {
        id: band
        BandHeader {
            title: self.title
            subtotal: self.size
            selection: self.check
            checkable: self.checkable && !self.locked
            focused: self.focused
            reachableByTab: self.current
            onToggled: self.list.toggle(self.index)
        }
    }
    Component {
        id: group
        GroupRow {
            row: self
            onToggled: self.list.toggle(self.index)
            onExpandRequested: self.list.expand(self.index, !self.expanded)
            onMenuRequested: at => self.list.openMenu(self.index, mapToItem(null, at.x, at.y))
        }
    }
    Component {
        id: item
        ItemRow {
            row: self
            onToggled: self.list.toggle(self.index)
            onRevealRequested: self.list.screen.reveal(self.index)
            onMenuRequested: at => self.list.openMenu(self.index, mapToItem(null, at.x, at.y))
            onHovered: (inside, over) => self.list.tip.hover(inside, over, self.path)
        }
    }
}
