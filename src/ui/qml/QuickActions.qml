import QtQuick
import Vesko.Window

// The two ways on from the Home screen.
Column {
    id: actions

    required property HomeScreen screen
    required property int columns

    spacing: Theme.inset

    Label {
        width: parent.width
        text: Strings.of("home.quickActionsTitle")
        font { pixelSize: Theme.section; weight: Font.DemiBold }
        Accessible.role: Accessible.Heading
    }
    Grid {
        id: cards
        readonly property int cell: (width - (columns - 1) * spacing) / columns
        width: parent.width
        columns: actions.columns
        spacing: Theme.inset

        HomeShortcutCard {
            width: cards.cell
            systemImage: "trash"
            title: Strings.of("home.shortcut.reviewCleanup")
            subtitle: actions.screen.reviewSubtitle
            onAction: actions.screen.reviewCleanup()
        }
        HomeShortcutCard {
            width: cards.cell
            systemImage: "arrow.clockwise"
            title: Strings.of("home.shortcut.scanNow")
            subtitle: actions.screen.scanSubtitle
            isDisabled: !actions.screen.canScan
            onAction: actions.screen.scanNow()
        }
    }
}
