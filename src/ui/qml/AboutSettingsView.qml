import QtQuick
import Vesko.Window

// The page about the program.
SettingsPage {
    id: page

    required property AboutModel about

    signal acknowledgementsAsked(Item opener)

    function askForAcknowledgements() {
        acknowledgementsAsked(acknowledgements)
    }

    name: Strings.of("settings.tab.about")

    Column {
        width: parent.width
        topPadding: 8
        spacing: 6

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 64
            height: 64
            radius: 18
            color: Theme.prominent
            Icon {
                anchors.centerIn: parent
                width: 44
                height: 44
                name: "mark"
                color: Theme.onProminent
            }
        }
        Item {
            width: 1
            height: 4
        }
        AboutLine {
            text: Strings.of("app.name")
            color: Theme.text
            font { pixelSize: Theme.title; weight: Font.Bold }
            Accessible.role: Accessible.Heading
        }
        AboutLine { text: Strings.of("settings.about.version %@", page.about.version) }
        AboutLine { text: Strings.of("settings.about.copyright") }
    }
    AboutLine { text: Strings.of("settings.about.disclaimer") }
    SettingsSection {
        LinkRow {
            visible: page.about.contactEmail !== ""
            text: Strings.of("settings.about.contact")
            icon: "envelope"
            isLink: true
            onChosen: page.about.writeToContact()
        }
        LinkRow {
            id: acknowledgements
            text: Strings.of("settings.about.acknowledgements")
            trailingIcon: "chevron.right"
            onChosen: page.askForAcknowledgements()
        }
    }
}
