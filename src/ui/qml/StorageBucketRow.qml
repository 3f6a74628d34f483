import QtQuick
import Vesko.Window

// A bucket: symbol in its colour, title, size, chevron. While it is measured a bone stands for the size.
Control {
    id: row

    required property string rowID
    required property string title
    required property string icon
    required property string amount
    required property int tint
    required property bool busy
    required property bool selected
    required property bool first

    signal chosen(bool byKeyboard)

    implicitHeight: Theme.bucketHeight
    activeFocusOnTab: true
    Keys.onSpacePressed: chosen(true)
    Keys.onReturnPressed: chosen(true)
    Keys.onEnterPressed: chosen(true)
    Accessible.role: Accessible.Button
    Accessible.name: busy ? Strings.of("a11y.measuring %@", title)
                          : Strings.of("a11y.segment %1$@ %2$@", title, amount)
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.onPressAction: chosen(true)

    HomeRowGround {
        anchors.fill: parent
        target: row
        first: row.first
        lit: hover.hovered
        chosen: row.selected
    }
    TintedIcon {
        id: tile
        x: Theme.inset
        anchors.verticalCenter: parent.verticalCenter
        icon: row.icon
        tint: Theme.segmentColor(row.tint, Theme.dark)
        opacity: row.busy ? 0.45 : 1
    }
    Label {
        anchors { left: tile.right; leftMargin: 12; right: size.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        text: row.title
        color: row.busy ? Theme.muted : Theme.text
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Label {
        id: size
        anchors { right: chevron.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        visible: !row.busy
        text: row.amount
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
    }
    PulsingBone {
        anchors { right: chevron.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        visible: row.busy
        width: 64
        height: 14
    }
    Icon {
        id: chevron
        anchors { right: parent.right; rightMargin: Theme.inset; verticalCenter: parent.verticalCenter }
        width: 16
        height: 16
        name: "chevron.right"
        color: Theme.muted
    }
    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: row.chosen(false)
    }
}
