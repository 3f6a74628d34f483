import QtQuick
import Vesko.Window

// Segments to scale, each at least as wide as can be seen, with gaps between and rounded ends. It speaks what
// it shows.
Item {
    id: bar

    required property var segments // of each: id, title, bytes, amount, color, interactive
    property int barHeight: 14
    property int minSegmentWidth: 6
    property int gap: 2
    readonly property var widths: share(width - gap * Math.max(0, segments.length - 1))

    signal selectSegment(string id)

    // Segments below the least width get it; the others share what is left to scale.
    function share(room) {
        const bytes = segments.map(segment => Math.max(0, segment.bytes))
        const small = bytes.map(() => false)
        for (let again = true; again;) {
            again = false
            let left = room
            let total = 0
            bytes.forEach((amount, i) => { if (small[i]) left -= minSegmentWidth; else total += amount })
            for (let i = 0; i < bytes.length; ++i) {
                if (small[i] || (total > 0 && left * bytes[i] / total >= minSegmentWidth)) continue
                small[i] = true
                again = true
            }
            if (!again)
                return bytes.map((amount, i) => small[i] ? minSegmentWidth : left * amount / total)
        }
    }

    implicitHeight: barHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: Strings.of("a11y.storageBar")

    Row {
        spacing: bar.gap
        Repeater {
            model: bar.segments.length
            Item {
                id: piece
                required property int index
                readonly property var segment: bar.segments[index] ?? ({})
                readonly property bool isFirst: index === 0
                readonly property bool isLast: index === bar.segments.length - 1

                width: bar.widths[index] ?? 0
                height: bar.barHeight
                Accessible.role: segment.interactive ? Accessible.Button : Accessible.StaticText
                Accessible.name: Strings.of("a11y.segment %1$@ %2$@", segment.title, segment.amount)
                Accessible.onPressAction: press()

                function press() {
                    if (segment.interactive) bar.selectSegment(segment.id)
                }

                Rectangle {
                    anchors.fill: parent
                    radius: piece.isFirst || piece.isLast ? Math.min(height, width) / 2 : 0
                    color: Theme.segmentColor(piece.segment.color ?? 0, Theme.dark)
                    opacity: hover.hovered && piece.segment.interactive ? 0.8 : 1
                    // Squares the side that faces a neighbour.
                    Rectangle {
                        visible: parent.radius > 0 && !(piece.isFirst && piece.isLast)
                        x: piece.isFirst ? parent.width - width : 0
                        width: parent.width / 2
                        height: parent.height
                        color: parent.color
                    }
                }
                HoverHandler {
                    id: hover
                    cursorShape: piece.segment.interactive ? Qt.PointingHandCursor : Qt.ArrowCursor
                }
                TapHandler {
                    enabled: piece.segment.interactive ?? false
                    gesturePolicy: TapHandler.ReleaseWithinBounds
                    onTapped: piece.press()
                }
            }
        }
    }
}
