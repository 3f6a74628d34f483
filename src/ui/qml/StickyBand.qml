import QtQuick
import Vesko.Window

// The header of the band whose groups are being looked at, held at the top until the next one pushes it away.
Rectangle {
    id: sticky

    required property Item list // the CleanupList around it
    readonly property CleanupListModel model: list.screen.list
    property int stamp: 0 // grows when what a row holds may have changed
    readonly property int topRow: (stamp, list.view.indexAt(list.margin + 1, list.view.contentY + 1))
    readonly property int bandRow: (stamp, model.bandRow(topRow))
    readonly property int nextRow: (stamp, model.nextBandRow(topRow))
    readonly property var band: (stamp, model.row(bandRow))
    readonly property real push: {
        const next = nextRow < 0 ? null : list.view.itemAtIndex(nextRow)
        return next ? Math.min(0, next.y + list.bandGap - list.view.contentY - height) : 0
    }

    x: list.margin
    y: push
    width: list.rowWidth
    height: Theme.bandHeight
    visible: bandRow >= 0 && (topRow !== bandRow || aboveHeader())
    color: Theme.background
    Accessible.ignored: true

    function aboveHeader() {
        const header = list.view.itemAtIndex(bandRow)
        return header !== null && header.y + list.bandGap < list.view.contentY
    }

    Connections {
        target: sticky.model
        function onDataChanged() { ++sticky.stamp }
        function onRowsInserted() { ++sticky.stamp }
        function onRowsRemoved() { ++sticky.stamp }
        function onRowsMoved() { ++sticky.stamp }
    }
    BandHeader {
        anchors.fill: parent
        title: sticky.band.title ?? ""
        subtotal: sticky.band.size ?? ""
        selection: sticky.band.check ?? 0
        checkable: (sticky.band.checkable ?? false) && !sticky.list.screen.deleting
        onToggled: sticky.list.toggle(sticky.bandRow)
    }
    MouseArea { // keeps clicks from the rows beneath
        anchors.fill: parent
        z: -1
    }
}
