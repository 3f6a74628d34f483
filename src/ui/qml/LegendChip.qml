import QtQuick
import Vesko.Window

// One entry of a legend. One that does what its segment does has the frame of a chip.
FocusScope {
    id: chip

    required property string title
    required property string amount
    required property color tint
    required property bool interactive

    signal pressed()

    function press() {
        if (interactive) pressed()
    }

    implicitWidth: content.implicitWidth + (interactive ? 20 : 4)
    implicitHeight: Theme.chipHeight
    activeFocusOnTab: interactive
    Keys.onSpacePressed: press()
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()
    Accessible.role: interactive ? Accessible.Button : Accessible.StaticText
    Accessible.name: Strings.of("a11y.segment %1$@ %2$@", title, amount)
    Accessible.focusable: interactive
    Accessible.onPressAction: press()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: hover.hovered && chip.interactive ? Theme.hover : "transparent"
        border.width: chip.interactive ? 1 : 0
        border.color: Theme.border
    }
    FocusRing {
        target: chip
        radius: height / 2
    }
    Row {
        id: content
        x: chip.interactive ? 10 : 2
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: 8
            height: 8
            radius: 4
            color: chip.tint
        }
        Label {
            text: chip.title
            font.pixelSize: Theme.caption
            Accessible.ignored: true
        }
        Label {
            text: chip.amount
            color: Theme.muted
            font.pixelSize: Theme.caption
            Accessible.ignored: true
        }
    }
    HoverHandler {
        id: hover
        cursorShape: chip.interactive ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    TapHandler {
        enabled: chip.interactive
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: chip.press()
    }
}
