import QtQuick
import Vesko.Window

// A category of what can go: symbol, title with its verdict, what deleting does, size, chevron.
Control {
    id: row

    required property string rowID
    required property string title
    required property string detail
    required property string icon
    required property string amount
    required property int tint
    required property int safety
    required property bool first

    signal tap()

    implicitHeight: Math.max(Theme.groupHeight, texts.height + 24)
    activeFocusOnTab: true
    Keys.onSpacePressed: tap()
    Keys.onReturnPressed: tap()
    Keys.onEnterPressed: tap()
    Accessible.role: Accessible.Button
    Accessible.name: Strings.of("a11y.group %1$@ %2$@ %3$@", title, badge.word, amount)
    Accessible.description: detail
    Accessible.focusable: true
    Accessible.onPressAction: tap()

    HomeRowGround {
        anchors.fill: parent
        target: row
        first: row.first
        lit: hover.hovered
    }
    TintedIcon {
        id: tile
        x: Theme.inset
        anchors.verticalCenter: parent.verticalCenter
        icon: row.icon
        tint: Theme.segmentColor(row.tint, Theme.dark)
    }
    Column {
        id: texts
        anchors { left: tile.right; leftMargin: 12; right: size.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        spacing: 2
        Flow { // the verdict goes beneath a title that leaves it no room
            width: parent.width
            spacing: 8
            Label {
                id: heading
                width: Math.min(Math.ceil(implicitWidth), parent.width)
                height: Math.max(implicitHeight, badge.height)
                text: row.title
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            SafetyBadge {
                id: badge
                safety: row.safety
                analyzing: false
                Accessible.ignored: true
            }
        }
        Label {
            width: parent.width
            text: row.detail
            color: Theme.muted
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            maximumLineCount: 4
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    Label {
        id: size
        anchors { right: chevron.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
        text: row.amount
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignRight
        Accessible.ignored: true
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
        onTapped: row.tap()
    }
}
