import QtQuick
import Vesko.Window

// A group: box, tinted icon, title with its verdict and the reason beneath, size, chevron. All of the row
// expands it, the box alone selects.
Item {
    id: group

    required property Item row // the ListRow around it, whose roles it shows
    readonly property string verdict: badge.word

    signal toggled()
    signal expandRequested()
    signal menuRequested(point at)

    Accessible.role: Accessible.Button
    Accessible.name: Strings.of("a11y.group %1$@ %2$@ %3$@", row.title, verdict, row.size)
    Accessible.description: Strings.of(row.expanded ? "a11y.expanded" : "a11y.collapsed") + ". " + row.detail
    Accessible.focusable: true
    Accessible.focused: row.focused
    Accessible.onPressAction: expandRequested()

    RowGround {
        anchors.fill: parent
        first: group.row.first
        last: group.row.last
        lit: hover.hovered
        focused: group.row.focused
    }
    TapHandler { onTapped: group.expandRequested() }
    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => group.menuRequested(point.position)
    }
    HoverHandler { id: hover }

    TriStateBox {
        id: box
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        state3: group.row.check
        name: Strings.of("a11y.selectGroup %@", group.row.title)
        enabled: group.row.checkable && !group.row.locked
        reachableByTab: group.row.current
        onToggled: group.toggled()
    }
    Rectangle {
        id: tile
        anchors { left: box.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        width: 32
        height: 32
        radius: 8
        color: Qt.alpha(group.row.tintColor, 0.12)
        Icon {
            anchors.centerIn: parent
            width: 20
            height: 20
            name: group.row.icon
            color: group.row.tintColor
        }
    }
    Item {
        id: texts
        anchors { left: tile.right; leftMargin: 12; right: size.left; rightMargin: 16 }
        anchors.verticalCenter: parent.verticalCenter
        height: title.height + reason.height + 2
        Label {
            id: title
            width: Math.min(implicitWidth, parent.width - badge.width - 8 - (mark.visible ? 22 : 0))
            text: group.row.title
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        SafetyBadge {
            id: badge
            anchors { left: title.right; leftMargin: 8; verticalCenter: title.verticalCenter }
            safety: group.row.safety
            analyzing: group.row.analyzing
            Accessible.ignored: true
        }
        DiscoveredMark {
            id: mark
            anchors { left: badge.right; leftMargin: 6; verticalCenter: title.verticalCenter }
            visible: group.row.discovered
        }
        Label {
            id: reason
            y: title.height + 2
            width: parent.width
            text: group.row.detail
            color: Theme.muted
            font.pixelSize: Theme.caption
            Accessible.ignored: true
        }
    }
    Label {
        id: size
        anchors { right: chevron.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        text: group.row.size
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
    Icon {
        id: chevron
        anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
        width: 16
        height: 16
        name: "chevron.right"
        color: Theme.muted
        rotation: group.row.expanded ? 90 : 0
        Behavior on rotation {
            enabled: !Theme.reducedMotion
            NumberAnimation { duration: Theme.motion; easing.type: Easing.OutCubic }
        }
    }
}
