import QtQuick
import Vesko.Window

// The components that are part of this build, each with its licence notice in full. Lies over the settings and holds
// the keyboard; the arrows scroll.
FocusScope {
    id: sheet

    required property AboutModel about
    property bool isPresented: false
    property Item opener: null // the keyboard goes back to it

    function present(from) {
        opener = from
        notices.model = about.acknowledgementRows()
        isPresented = true
        done.forceActiveFocus(Qt.PopupFocusReason)
    }
    function close() {
        isPresented = false
        if (opener) opener.forceActiveFocus(Qt.PopupFocusReason)
    }
    function scrollBy(distance) {
        const most = notices.originY + Math.max(0, notices.contentHeight - notices.height)
        notices.contentY = Math.max(notices.originY, Math.min(most, notices.contentY + distance))
    }

    visible: opacity > 0
    opacity: isPresented ? 1 : 0
    enabled: isPresented
    z: 30
    Behavior on opacity {
        enabled: !Theme.reducedMotion
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutCubic }
    }
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Down) scrollBy(40)
        else if (event.key === Qt.Key_Up) scrollBy(-40)
        else if (event.key === Qt.Key_PageDown) scrollBy(notices.height * 0.9)
        else if (event.key === Qt.Key_PageUp) scrollBy(-notices.height * 0.9)
        else if (event.key === Qt.Key_Home) notices.positionViewAtBeginning()
        else if (event.key === Qt.Key_End) notices.positionViewAtEnd()
        else if (event.key !== Qt.Key_Tab && event.key !== Qt.Key_Backtab) event.accepted = false
    }

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
        anchors { fill: parent; margins: Theme.page }
        radius: Theme.cardCorner
        color: Theme.surface
        Accessible.role: Accessible.Dialog
        Accessible.name: Strings.of("settings.about.acknowledgements")

        Label {
            anchors { left: parent.left; leftMargin: Theme.page; right: done.left; rightMargin: 12; verticalCenter: done.verticalCenter }
            text: Strings.of("settings.about.acknowledgements")
            font { pixelSize: Theme.section; weight: Font.Bold }
            Accessible.role: Accessible.Heading
        }
        PushButton {
            id: done
            anchors { right: parent.right; top: parent.top; margins: 12 }
            focus: true
            text: Strings.of("settings.about.done")
            onPressed: sheet.close()
        }
        Rectangle {
            id: line
            anchors { top: done.bottom; topMargin: 12 }
            width: parent.width
            height: 1
            color: Theme.border
        }
        ListView {
            id: notices
            anchors { fill: parent; topMargin: line.y + 1; leftMargin: Theme.page; rightMargin: Theme.page; bottomMargin: 8 }
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: 400
            footer: Item { height: Theme.inset }
            Accessible.role: Accessible.List
            Accessible.name: Strings.of("settings.about.acknowledgements")
            delegate: Item {
                id: row
                required property var modelData
                width: ListView.view.width
                height: words.height + (modelData.isName ? 28 : 10)
                Label {
                    id: words
                    y: row.modelData.isName ? 20 : 2
                    width: parent.width
                    text: row.modelData.text
                    color: row.modelData.isName ? Theme.text : Theme.muted
                    font.weight: row.modelData.isName ? Font.Bold : Font.Normal
                    wrapMode: Text.Wrap
                    lineHeight: row.modelData.isName ? 1 : 1.15
                    Accessible.role: row.modelData.isName ? Accessible.Heading : Accessible.StaticText
                }
            }
        }
        ThinScrollBar {
            anchors { right: parent.right; top: notices.top; bottom: notices.bottom; rightMargin: 4 }
            flickable: notices
        }
    }
}
