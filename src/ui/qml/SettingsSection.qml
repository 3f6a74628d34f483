import QtQuick
import Vesko.Window

// A block of a settings page: its title, and a card with what belongs to it.
Column {
    id: section

    property string title: ""
    default property alias rows: content.data

    width: parent.width
    spacing: 8

    Label {
        width: parent.width
        visible: text !== ""
        text: section.title
        color: Theme.muted
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        width: parent.width
        height: content.height
        radius: Theme.cardCorner
        color: Theme.surface
        border { width: 1; color: Theme.border }

        Column {
            id: content
            width: parent.width
            topPadding: 8
            bottomPadding: 8
        }
    }
}
