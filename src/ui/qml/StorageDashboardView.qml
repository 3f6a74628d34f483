import QtQuick
import Vesko.Window

// What fills the volume: the bar of its buckets with the legend, a row a bucket, and what of it can go.
FocusScope {
    id: dashboard

    required property HomeScreen screen

    signal selectBucket(string id, bool byKeyboard)
    signal dismissTap()
    signal selectCleanupCategory(string id)

    implicitHeight: content.height

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: dashboard.dismissTap()
    }
    Column {
        id: content
        width: parent.width
        spacing: Theme.page

        Rectangle {
            width: parent.width
            height: storage.height + Theme.inset + 4
            radius: Theme.cardCorner
            color: Theme.surface

            Column {
                id: storage
                y: Theme.inset
                width: parent.width
                StorageOverview {
                    x: Theme.inset
                    width: parent.width - 2 * Theme.inset
                    screen: dashboard.screen
                    onSelectBucket: id => dashboard.selectBucket(id, false)
                }
                Item {
                    width: 1
                    height: 12
                }
                Repeater {
                    model: dashboard.screen.buckets
                    StorageBucketRow {
                        id: bucket
                        required property int index
                        width: storage.width
                        first: index === 0
                        onChosen: byKeyboard => {
                            if (byKeyboard) bucket.forceActiveFocus(Qt.TabFocusReason)
                            dashboard.selectBucket(rowID, byKeyboard)
                        }
                    }
                }
            }
        }
        CleanupOpportunities {
            width: parent.width
            visible: dashboard.screen.opportunities.count > 0
            screen: dashboard.screen
            onSelectCleanupCategory: id => dashboard.selectCleanupCategory(id)
        }
    }
}
