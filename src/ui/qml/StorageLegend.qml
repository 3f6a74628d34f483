import QtQuick
import Vesko.Window

// What the colours of a bar stand for: a mark, a name and an amount each. In so many columns of one width, or
// side by side as the room allows.
Flow {
    id: legend

    required property var segments // as those of the bar
    property int columns: 0
    property real widest: 0

    signal selectSegment(string id)

    function measure() {
        let most = 0
        for (let i = 0; i < chips.count; ++i) most = Math.max(most, chips.itemAt(i)?.implicitWidth ?? 0)
        widest = most
    }

    spacing: 8
    rightPadding: columns > 0 ? Math.max(0, width - columns * (widest + spacing)) : 0

    Repeater {
        id: chips
        model: legend.segments.length
        onItemAdded: legend.measure()
        onItemRemoved: legend.measure()
        LegendChip {
            required property int index
            readonly property var segment: legend.segments[index] ?? ({})
            width: legend.columns > 0 ? Math.min(legend.widest, legend.width) : implicitWidth
            title: segment.title ?? ""
            amount: segment.amount ?? ""
            tint: Theme.segmentColor(segment.color ?? 0, Theme.dark)
            interactive: segment.interactive ?? false
            onImplicitWidthChanged: legend.measure()
            onPressed: legend.selectSegment(segment.id)
        }
    }
}
