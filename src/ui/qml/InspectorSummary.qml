import QtQuick
import Vesko.Window

// A category that was found in a bucket, with what deleting it does.
Item {
    id: summary

    required property string title
    required property string detail
    required property string icon
    required property string amount
    required property int tint
    required property int safety

    implicitHeight: texts.height + 12
    Accessible.role: Accessible.StaticText
    Accessible.name: Strings.of("a11y.group %1$@ %2$@ %3$@", title, badge.word, amount)
    Accessible.description: detail

    TintedIcon {
        id: tile
        y: 6
        icon: summary.icon
        tint: Theme.segmentColor(summary.tint, Theme.dark)
    }
    Column {
        id: texts
        y: 6
        anchors { left: tile.right; leftMargin: 12; right: parent.right }
        spacing: 4
        Item {
            width: parent.width
            height: heading.height
            Label {
                id: heading
                anchors { left: parent.left; right: size.left; rightMargin: 12 }
                text: summary.title
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                id: size
                anchors { right: parent.right; top: heading.top }
                text: summary.amount
                Accessible.ignored: true
            }
        }
        SafetyBadge {
            id: badge
            safety: summary.safety
            analyzing: false
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: summary.detail
            color: Theme.muted
            font.pixelSize: Theme.caption
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
