import QtQuick
import Vesko.Window

// A thin bar that fills smoothly from step to step.
Rectangle {
    id: line

    required property double fraction
    required property string name

    implicitHeight: 4
    radius: height / 2
    color: Theme.border
    Accessible.role: Accessible.ProgressBar
    Accessible.name: name
    Accessible.description: Math.round(fraction * 100) + " %"

    Rectangle {
        width: Math.max(parent.height, parent.width * line.fraction)
        height: parent.height
        radius: parent.radius
        color: Theme.purple
        Behavior on width {
            enabled: !Theme.reducedMotion
            NumberAnimation {
                duration: Theme.motion
                easing.type: Easing.OutCubic
            }
        }
    }
}
