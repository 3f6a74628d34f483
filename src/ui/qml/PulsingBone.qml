import QtQuick
import Vesko.Window

// A bone by itself, between content that stands still.
Bone {
    id: bone

    SequentialAnimation on opacity {
        running: bone.visible && !Theme.reducedMotion
        loops: Animation.Infinite
        NumberAnimation { from: 1; to: 0.45; duration: 900; easing.type: Easing.InOutQuad }
        NumberAnimation { from: 0.45; to: 1; duration: 900; easing.type: Easing.InOutQuad }
    }
}
