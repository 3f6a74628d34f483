import QtQuick
import Vesko.Window

// A card of the Home screen that leads somewhere. A disabled one takes no clicks and keeps its chevron.
Control {
    id: card

    required property string systemImage
    required property string title
    required property string subtitle
    property bool isDisabled: false

    signal action()

    function act() {
        if (!isDisabled) action()
    }

    implicitHeight: Math.max(88, texts.height + 40)
    enabled: !isDisabled
    activeFocusOnTab: enabled
    Keys.onSpacePressed: act()
    Keys.onReturnPressed: act()
    Keys.onEnterPressed: act()
    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.description: subtitle
    Accessible.focusable: true
    Accessible.onPressAction: act()

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardCorner
        color: hover.hovered && !card.isDisabled ? Theme.hover : Theme.surface
    }
    FocusRing {
        target: card
        gap: 0
        radius: Theme.cardCorner
    }
    Rectangle {
        id: tile
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 40
        height: 40
        radius: 10
        color: Qt.alpha(Theme.purple, 0.12)
        Icon {
            anchors.centerIn: parent
            width: 22
            height: 22
            name: card.systemImage
            color: card.isDisabled ? Theme.muted : Theme.purple
        }
    }
    Column {
        id: texts
        anchors { left: tile.right; leftMargin: 14; right: chevron.left; rightMargin: 12 }
        anchors.verticalCenter: parent.verticalCenter
        spacing: 3
        Label {
            width: parent.width
            text: card.title
            color: card.isDisabled ? Theme.muted : Theme.text
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: card.subtitle
            color: Theme.muted
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    Icon {
        id: chevron
        anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
        width: 16
        height: 16
        name: "chevron.right"
        color: Theme.muted
    }
    HoverHandler {
        id: hover
        cursorShape: card.isDisabled ? Qt.ArrowCursor : Qt.PointingHandCursor
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: card.act()
    }
}
