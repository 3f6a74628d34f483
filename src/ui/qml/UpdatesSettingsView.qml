import QtQuick
import Vesko.Window

// The page of the updates: whether they are looked for, and what was found.
SettingsPage {
    id: page

    required property UpdatesModel updates

    name: Strings.of("settings.tab.updates")

    SettingsSection {
        title: Strings.of("settings.updates.automatic.section")
        CheckRow {
            text: Strings.of("settings.updates.automatic")
            explanation: Strings.of("settings.updates.automatic.description")
            on: page.updates.automatic
            onToggled: on => page.updates.setAutomatic(on)
        }
    }
    SettingsSection {
        title: Strings.of("settings.updates.manual.section")
        Item {
            width: parent.width
            height: check.height + 16
            PushButton {
                id: check
                x: Theme.inset
                y: 8
                text: Strings.of("menu.checkForUpdates")
                enabled: page.updates.canCheck
                onPressed: page.updates.check()
            }
        }
    }
    SettingsSection {
        id: news
        visible: page.updates.newerVersion !== ""
        Column {
            x: Theme.inset
            width: parent.width - 2 * Theme.inset
            topPadding: 8
            bottomPadding: 8
            spacing: 10
            Row {
                width: parent.width
                spacing: 10
                Rectangle {
                    anchors.verticalCenter: line.verticalCenter
                    width: 8
                    height: 8
                    radius: 4
                    color: Theme.purple
                }
                Label {
                    id: line
                    width: parent.width - 18
                    text: page.updates.newerVersion === "" ? ""
                        : Strings.of("settings.updates.available %@", page.updates.newerVersion)
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                }
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: page.updates.newerNotes
                color: Theme.muted
                wrapMode: Text.Wrap
                maximumLineCount: 16
                elide: Text.ElideRight
            }
            PushButton {
                visible: page.updates.hasPage
                text: Strings.of("settings.updates.openPage")
                icon: "arrow.up.forward.square"
                onPressed: page.updates.openPage()
            }
        }
    }
}
