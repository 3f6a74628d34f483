import QtQuick
import Vesko.Window

// The line of facts, the bar of the bands and its legend.
Item {
    id: hero

    required property CleanupScreen screen

    implicitHeight: content.height + 24

    Column {
        id: content
        y: 8
        width: parent.width
        spacing: 12

        Item {
            width: parent.width
            height: Math.max(facts.height, chip.height)
            Label {
                id: facts
                anchors { left: parent.left; right: chip.left; rightMargin: chip.visible ? 12 : 0 }
                anchors.verticalCenter: parent.verticalCenter
                text: hero.screen.heroFacts
                font { pixelSize: Theme.section; weight: Font.DemiBold }
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
            }
            Chip {
                id: chip
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                visible: hero.screen.chip !== CleanupScreen.NoChip
                text: hero.screen.chipText
            }
        }
        StorageBar {
            visible: hero.screen.segments.length > 0
            width: parent.width
            segments: hero.screen.segments
            onSelectSegment: id => hero.screen.scrollToSection(id)
        }
        StorageLegend {
            visible: hero.screen.segments.length > 0
            width: parent.width
            segments: hero.screen.segments
            onSelectSegment: id => hero.screen.scrollToSection(id)
        }
    }
}
