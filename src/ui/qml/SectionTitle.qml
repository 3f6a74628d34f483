import QtQuick
import Vesko.Window

// The title of a block with its line beneath.
Column {
    id: heading

    required property string title
    required property string subtitle

    spacing: 2

    Label {
        width: parent.width
        height: Math.ceil(Theme.section * 1.4)
        text: heading.title
        font { pixelSize: Theme.section; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
    }
    Label {
        width: parent.width
        height: Math.ceil(Theme.body * 1.4)
        text: heading.subtitle
        color: Theme.muted
    }
}
