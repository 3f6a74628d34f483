import QtQuick
import Vesko.Window

// Group rows to come, with the geometry of what they stand for.
Flickable {
    id: skeleton

    contentHeight: rows.height + Theme.page
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    Accessible.role: Accessible.Grouping
    Accessible.name: Strings.of("skeleton.loading")

    Column {
        id: rows
        x: Theme.page
        width: skeleton.width - 2 * Theme.page

        SequentialAnimation on opacity {
            running: skeleton.visible && !Theme.reducedMotion
            loops: Animation.Infinite
            NumberAnimation { from: 1; to: 0.55; duration: 900; easing.type: Easing.InOutQuad }
            NumberAnimation { from: 0.55; to: 1; duration: 900; easing.type: Easing.InOutQuad }
        }

        Item {
            width: parent.width
            height: 92 + Theme.section
            Bone { y: 10; width: parent.width * 0.5; height: Theme.section }
            Bone { y: 24 + Theme.section; width: parent.width; height: 14; radius: 7 }
            Row {
                y: 50 + Theme.section
                spacing: 8
                Repeater {
                    model: 3
                    Bone { width: 112; height: 26; radius: 13 }
                }
            }
        }
        Item {
            width: parent.width
            height: Theme.bandHeight + 12
            Bone { x: 16; anchors.bottom: parent.bottom; anchors.bottomMargin: 12; width: 20; height: 20 }
            Bone { x: 52; anchors.bottom: parent.bottom; anchors.bottomMargin: 14; width: 160; height: 16 }
        }
        Repeater {
            model: 7
            Item {
                id: line
                required property int index
                width: rows.width
                height: Theme.groupHeight
                RowGround {
                    anchors.fill: parent
                    first: line.index === 0
                    last: line.index === 6
                    lit: false
                    focused: false
                }
                Bone { x: 16; anchors.verticalCenter: parent.verticalCenter; width: 20; height: 20 }
                Bone { x: 52; anchors.verticalCenter: parent.verticalCenter; width: 32; height: 32; radius: 8 }
                Bone { x: 96; y: parent.height / 2 - 16; width: 140 + 40 * (line.index % 3); height: 14 }
                Bone { x: 96; y: parent.height / 2 + 6; width: 260 + 60 * (line.index % 2); height: 10 }
                Bone { x: parent.width - 110; anchors.verticalCenter: parent.verticalCenter; width: 66; height: 14 }
            }
        }
    }
}
