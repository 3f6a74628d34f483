import QtQuick
import Vesko.Window

// The header of a band: title, subtotal, and select-all as a word and a box that do the same.
Item {
    id: header

    required property string title
    required property string subtotal
    required property int selection
    required property bool checkable
    property bool focused: false
    property bool reachableByTab: false

    signal toggled()

    Accessible.role: Accessible.Heading
    Accessible.name: title
    Accessible.description: subtotal

    TriStateBox {
        id: box
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        state3: header.selection
        name: Strings.of("a11y.selectSection %@", header.title)
        enabled: header.checkable
        reachableByTab: header.reachableByTab
        onToggled: header.toggled()
    }
    Label {
        id: word
        anchors { left: box.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, parent.width - x - amount.width - all.width - 48)
        text: header.title
        font { pixelSize: Theme.section; weight: Font.DemiBold }
        Accessible.ignored: true
    }
    Label {
        id: amount
        anchors { left: word.right; leftMargin: 10; baseline: word.baseline }
        text: header.subtotal
        color: Theme.muted
        Accessible.ignored: true
    }
    PushButton {
        id: all
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        kind: PushButton.Text
        text: Strings.of(header.selection === 2 ? "section.deselectAll" : "section.selectAll")
        accessibleName: text + ", " + header.title
        enabled: header.checkable
        activeFocusOnTab: header.reachableByTab
        onPressed: header.toggled()
    }
    Rectangle {
        anchors { fill: parent; margins: 3 }
        visible: header.focused
        radius: Theme.buttonCorner
        color: "transparent"
        border { width: 2; color: Theme.purple }
    }
}
