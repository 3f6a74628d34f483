import QtQuick
import Vesko.Window

// The search over the list. Escape empties it.
FocusScope {
    id: field

    required property string text

    signal edited(string text)

    function take() {
        input.forceActiveFocus(Qt.ShortcutFocusReason)
        input.selectAll()
    }
    function clear() {
        edited("")
    }

    implicitHeight: Theme.controlHeight

    // The model decides; what it holds is shown unless the person is just typing it.
    onTextChanged: if (input.text !== text) input.text = text

    Rectangle {
        anchors.fill: parent
        radius: Theme.buttonCorner
        color: Theme.surface
        border.width: input.activeFocus ? 2 : 1
        border.color: input.activeFocus ? Theme.purple : Theme.border
    }
    Icon {
        id: lens
        anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
        width: 16
        height: 16
        name: "magnifyingglass"
        color: Theme.muted
    }
    TextInput {
        id: input
        anchors { left: lens.right; leftMargin: 8; right: clearButton.left; rightMargin: 4 }
        anchors.verticalCenter: parent.verticalCenter
        focus: true
        activeFocusOnTab: true
        clip: true
        selectByMouse: true
        color: Theme.text
        selectionColor: Theme.prominent
        selectedTextColor: Theme.onProminent
        font.pixelSize: Theme.body
        onTextEdited: field.edited(text)
        Keys.onEscapePressed: event => {
            event.accepted = field.text !== ""
            if (event.accepted) field.clear()
        }
        Accessible.role: Accessible.EditableText
        Accessible.name: Strings.of("a11y.search")
        Accessible.searchEdit: true

        Label {
            anchors.fill: parent
            visible: input.text === "" && input.preeditText === ""
            text: Strings.of("cleanup.search.placeholder")
            color: Theme.muted
            Accessible.ignored: true
        }
    }
    IconButton {
        id: clearButton
        anchors { right: parent.right; rightMargin: 2; verticalCenter: parent.verticalCenter }
        visible: field.text !== ""
        icon: "xmark"
        name: Strings.of("a11y.clearSearch")
        onPressed: {
            field.clear()
            field.take()
        }
    }
    HoverHandler { cursorShape: Qt.IBeamCursor }
}
