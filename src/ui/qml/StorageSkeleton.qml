import QtQuick
import Vesko.Window

// Stands for the storage block before anything is known of it, with the geometry of what comes.
Rectangle {
    id: skeleton

    readonly property int buckets: 5

    implicitHeight: content.height + Theme.inset + 4
    radius: Theme.cardCorner
    color: Theme.surface
    Accessible.role: Accessible.Grouping
    Accessible.name: Strings.of("skeleton.loading")

    Column {
        id: content
        y: Theme.inset
        width: parent.width

        SequentialAnimation on opacity {
            running: skeleton.visible && !Theme.reducedMotion
            loops: Animation.Infinite
            NumberAnimation { from: 1; to: 0.55; duration: 900; easing.type: Easing.InOutQuad }
            NumberAnimation { from: 0.55; to: 1; duration: 900; easing.type: Easing.InOutQuad }
        }

        Item {
            id: overview
            x: Theme.inset
            width: parent.width - 2 * Theme.inset
            height: legend.y + legend.height
            Bone { y: 3; width: 140; height: Theme.section }
            Bone { y: Math.ceil(Theme.section * 1.4) + 6; width: Math.min(260, parent.width); height: Theme.caption }
            Bone {
                id: bar
                y: Math.ceil(Theme.section * 1.4) + 2 + Math.ceil(Theme.body * 1.4) + 12
                width: parent.width
                height: 14
                radius: 7
            }
            Row {
                id: legend
                y: bar.y + bar.height + 12
                height: Theme.chipHeight
                spacing: 24
                Repeater {
                    model: 2
                    Bone { y: (legend.height - height) / 2; width: 110; height: 12 }
                }
            }
        }
        Item {
            width: 1
            height: 12
        }
        Repeater {
            model: skeleton.buckets
            Item {
                id: line
                required property int index
                width: content.width
                height: Theme.bucketHeight
                Rectangle {
                    visible: line.index > 0
                    x: Theme.inset
                    width: parent.width - 2 * Theme.inset
                    height: 1
                    color: Theme.border
                }
                Bone { x: Theme.inset; anchors.verticalCenter: parent.verticalCenter; width: 32; height: 32; radius: 8 }
                Bone { x: Theme.inset + 44; anchors.verticalCenter: parent.verticalCenter; width: 110 + 36 * (line.index % 3); height: 14 }
                Bone { x: parent.width - 108; anchors.verticalCenter: parent.verticalCenter; width: 64; height: 14 }
            }
        }
    }
}
