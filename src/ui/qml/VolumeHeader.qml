import QtQuick
import Vesko.Window

// The free space as the big figure, with the volume's size and name beneath. Keeps its place before the first
// reading.
Item {
    id: header

    required property string available
    required property string summary

    signal tapped()

    implicitHeight: figure.height + line.height + 4

    Label {
        id: figure
        width: parent.width
        height: Math.ceil(Theme.figure * 1.3)
        text: header.available
        font { pixelSize: Theme.figure; weight: Font.Bold }
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.section
        Accessible.role: Accessible.Heading
    }
    Label {
        id: line
        y: figure.height + 4
        width: parent.width
        height: Math.ceil(Theme.body * 1.4)
        text: header.summary
        color: Theme.muted
    }
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: header.tapped()
    }
}
