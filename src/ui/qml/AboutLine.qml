import QtQuick
import Vesko.Window

// A line of the page about the program.
Label {
    width: parent.width
    color: Theme.muted
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
    lineHeight: 1.15
}
