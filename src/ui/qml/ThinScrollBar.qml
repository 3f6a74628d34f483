import QtQuick
import Vesko.Window

// Where the list stands; can be dragged.
Item {
    id: bar

    required property Flickable flickable
    readonly property real ratio: flickable.visibleArea.heightRatio

    visible: ratio < 1 && ratio > 0
    width: 12

    Rectangle {
        id: thumb
        x: 3
        y: bar.flickable.visibleArea.yPosition / Math.max(0.0001, 1 - bar.ratio) * (bar.height - height)
        width: 6
        height: Math.max(32, bar.height * bar.ratio)
        radius: 3
        color: Theme.muted
        opacity: area.containsMouse || area.pressed ? 0.8 : 0.4
    }
    MouseArea {
        id: area
        property real grip: 0
        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        function go(y) {
            const part = Math.max(0, Math.min(1, (y - grip) / Math.max(1, height - thumb.height)))
            const range = bar.flickable.contentHeight - bar.flickable.height
            bar.flickable.contentY = bar.flickable.originY + part * range
        }
        onPressed: mouse => {
            grip = mouse.y >= thumb.y && mouse.y <= thumb.y + thumb.height ? mouse.y - thumb.y : thumb.height / 2
            go(mouse.y)
        }
        onPositionChanged: mouse => { if (pressed) go(mouse.y) }
    }
}
