import QtQuick
import Vesko.Window

// The head of the storage block: title, subtitle, bar and legend.
Column {
    id: overview

    required property HomeScreen screen

    signal selectBucket(string id)

    spacing: 12

    SectionTitle {
        width: parent.width
        title: Strings.of("home.storage.title")
        subtitle: overview.screen.storageSubtitle
    }
    StorageBar {
        width: parent.width
        segments: overview.screen.segments
        onSelectSegment: id => overview.selectBucket(id)
    }
    StorageLegend {
        width: parent.width
        columns: 2
        segments: overview.screen.legend
    }
}
