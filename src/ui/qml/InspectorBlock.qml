import QtQuick
import Vesko.Window

// A block of the inspector: its title, an amount at the right where there is one, and what it holds.
Column {
    id: block

    required property string title
    property string amount: ""

    spacing: 6

    Item {
        width: parent.width
        height: Math.ceil(Theme.body * 1.5)
        Label {
            anchors { left: parent.left; right: total.left; rightMargin: 12; verticalCenter: parent.verticalCenter }
            text: block.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
        Label {
            id: total
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            text: block.amount
            font.weight: Font.DemiBold
        }
    }
}
