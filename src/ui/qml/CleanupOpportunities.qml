import QtQuick
import Vesko.Window

// What of the used space can go, by category; each leads to its place on the Cleanup screen.
Rectangle {
    id: opportunities

    required property HomeScreen screen

    signal selectCleanupCategory(string id)

    implicitHeight: content.height + Theme.inset + 4
    radius: Theme.cardCorner
    color: Theme.surface

    Column {
        id: content
        y: Theme.inset
        width: parent.width
        SectionTitle {
            x: Theme.inset
            width: parent.width - 2 * Theme.inset
            title: Strings.of("home.storage.cleanupOpportunities")
            subtitle: opportunities.screen.opportunitiesSubtitle
        }
        Item {
            width: 1
            height: 8
        }
        Repeater {
            model: opportunities.screen.opportunities
            CleanupOpportunityRow {
                required property int index
                width: content.width
                first: index === 0
                onTap: opportunities.selectCleanupCategory(rowID)
            }
        }
    }
}
