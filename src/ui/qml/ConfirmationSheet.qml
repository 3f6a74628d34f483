import QtQuick
import Vesko.Window

// Asks for the confirm word before anything is deleted. Lies over the whole window and holds the keyboard.
FocusScope {
    id: sheet

    required property CleanupScreen screen
    property bool isPresented: false
    readonly property bool isConfirmed: screen.isConfirmWord(field.text) && field.text === screen.confirmWord

    signal confirmed()
    signal closed()

    function present() {
        field.text = ""
        isPresented = true
        field.forceActiveFocus(Qt.PopupFocusReason)
    }
    function close() {
        field.text = ""
        isPresented = false
        closed()
    }
    // The prompt as rich text, the word in it with letters that are told apart easily.
    function inFixedFont(prompt, word) {
        const escaped = text => text.replace(/&/g, "&amp;").replace(/</g, "&lt;")
        const face = `<span style="font-family: '${Theme.fixedFont}'; font-weight: 600">${escaped(word)}</span>`
        return escaped(prompt).replace(escaped(word), () => face)
    }
    function confirm() {
        if (!isPresented || !isConfirmed) return
        close()
        confirmed()
    }

    visible: opacity > 0
    opacity: isPresented ? 1 : 0
    enabled: isPresented
    z: 30
    Behavior on opacity {
        enabled: !Theme.reducedMotion
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutCubic }
    }
    Keys.onEscapePressed: close()

    Rectangle {
        anchors.fill: parent
        color: "#000000"
        opacity: 0.45
    }
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.AllButtons
        onWheel: wheel => wheel.accepted = true
    }
    SoftShadow { target: card }
    Rectangle {
        id: card
        anchors.centerIn: parent
        width: Math.min(420, parent.width - 32)
        height: content.height + 48
        radius: Theme.cardCorner
        color: Theme.surface
        Accessible.role: Accessible.Dialog
        Accessible.name: Strings.of("delete.confirm.title")
        Accessible.description: Strings.of("delete.confirm.body")

        Column {
            id: content
            x: 24
            y: 24
            width: parent.width - 48
            spacing: 20

            Label {
                width: parent.width
                text: Strings.of("delete.confirm.title")
                font { pixelSize: Theme.title; weight: Font.Bold }
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
            }
            Label {
                width: parent.width
                text: Strings.of("delete.confirm.body")
                color: Theme.muted
                wrapMode: Text.Wrap
                lineHeight: 1.15
            }
            Label {
                width: parent.width
                text: sheet.screen.confirmSummary
                font { pixelSize: Theme.title; weight: Font.Bold }
                wrapMode: Text.Wrap
                fontSizeMode: Text.Fit
                minimumPixelSize: Theme.section
                height: Math.min(implicitHeight, Theme.title * 3)
            }
            Label {
                width: parent.width
                text: sheet.inFixedFont(sheet.screen.confirmPrompt, sheet.screen.confirmWord)
                textFormat: Text.RichText
                wrapMode: Text.Wrap
                Accessible.name: sheet.screen.confirmPrompt
            }
            Rectangle {
                width: parent.width
                height: Theme.controlHeight + 4
                radius: Theme.buttonCorner
                color: Theme.background
                border { width: field.activeFocus ? 2 : 1; color: field.activeFocus ? Theme.purple : Theme.border }
                TextInput {
                    id: field
                    anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
                    verticalAlignment: Text.AlignVCenter
                    focus: true
                    clip: true
                    selectByMouse: true
                    color: Theme.text
                    selectionColor: Theme.prominent
                    selectedTextColor: Theme.onProminent
                    font { family: Theme.fixedFont; pixelSize: Theme.body }
                    inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
                    onAccepted: sheet.confirm()
                    Keys.onTabPressed: cancel.forceActiveFocus(Qt.TabFocusReason)
                    Keys.onBacktabPressed: (deleteButton.enabled ? deleteButton : cancel).forceActiveFocus(Qt.BacktabFocusReason)
                    Accessible.role: Accessible.EditableText
                    Accessible.name: Strings.of("a11y.confirmField")
                }
            }
            Item {
                width: parent.width
                height: Theme.controlHeight
                PushButton {
                    id: cancel
                    anchors { right: deleteButton.left; rightMargin: 8 }
                    text: Strings.of("action.cancel")
                    onPressed: sheet.close()
                    Keys.onTabPressed: (deleteButton.enabled ? deleteButton : field).forceActiveFocus(Qt.TabFocusReason)
                    Keys.onBacktabPressed: field.forceActiveFocus(Qt.BacktabFocusReason)
                }
                PushButton {
                    id: deleteButton
                    anchors.right: parent.right
                    kind: PushButton.Destructive
                    text: Strings.of("delete.confirm.action")
                    enabled: sheet.isConfirmed
                    onPressed: sheet.confirm()
                    Keys.onTabPressed: field.forceActiveFocus(Qt.TabFocusReason)
                    Keys.onBacktabPressed: cancel.forceActiveFocus(Qt.BacktabFocusReason)
                }
            }
        }
    }
}
