import QtQuick
import Vesko.Window

// How full the disk is, and two ways on.
FocusScope {
    id: page

    required property HomeScreen screen
    readonly property int columns: width >= 640 ? 2 : 1

    Flickable {
        id: scroll
        anchors.fill: parent
        contentHeight: content.height + 2 * Theme.page
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        Accessible.role: Accessible.Pane
        Accessible.name: Strings.of("home.title")

        Column {
            id: content
            x: Theme.page
            y: Theme.page
            width: Math.min(scroll.width - 2 * Theme.page, 960)
            spacing: Theme.page

            Rectangle {
                width: parent.width
                height: header.height + 2 * Theme.page
                radius: Theme.cardCorner
                color: Theme.surface
                Column {
                    id: header
                    x: Theme.page
                    y: Theme.page
                    width: parent.width - 2 * Theme.page
                    spacing: 4
                    Label {
                        width: parent.width
                        height: Math.max(implicitHeight, Theme.figure * 1.2)
                        text: page.screen.availableLine
                        font { pixelSize: Theme.figure; weight: Font.Bold }
                        Accessible.role: Accessible.Heading
                    }
                    Label {
                        width: parent.width
                        height: Math.max(implicitHeight, Theme.body * 1.2)
                        text: page.screen.volumeLine
                        color: Theme.muted
                    }
                    Item {
                        width: 1
                        height: 12
                    }
                    Rectangle {
                        width: parent.width
                        height: 14
                        radius: 7
                        color: Qt.alpha(Theme.green, 0.22)
                        Accessible.role: Accessible.ProgressBar
                        Accessible.name: Strings.of("home.used")
                        Accessible.description: Math.round(page.screen.usedFraction * 100) + " %"
                        Rectangle {
                            width: Math.max(parent.height, parent.width * page.screen.usedFraction)
                            height: parent.height
                            radius: 7
                            visible: page.screen.usedFraction > 0
                            color: Theme.purple
                        }
                    }
                }
            }
            Column {
                width: parent.width
                spacing: Theme.inset
                Label {
                    width: parent.width
                    text: Strings.of("home.quickActionsTitle")
                    font { pixelSize: Theme.section; weight: Font.DemiBold }
                    Accessible.role: Accessible.Heading
                }
                Grid {
                    id: cards
                    readonly property int cell: (width - (page.columns - 1) * 16) / page.columns
                    width: parent.width
                    columns: page.columns
                    spacing: 16
                    ShortcutCard {
                        width: cards.cell
                        icon: "trash"
                        title: Strings.of("home.shortcut.reviewCleanup")
                        subtitle: page.screen.reviewSubtitle
                        focus: true
                        onActed: page.screen.reviewCleanup()
                    }
                    ShortcutCard {
                        width: cards.cell
                        icon: "arrow.clockwise"
                        title: Strings.of("home.shortcut.scanNow")
                        subtitle: page.screen.scanSubtitle
                        isDisabled: !page.screen.canScan
                        onActed: page.screen.scanNow()
                    }
                }
            }
        }
    }
}
