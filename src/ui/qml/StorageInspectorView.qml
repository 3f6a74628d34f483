import QtQuick
import Vesko.Window

// The column at the right of the Home screen: what a bucket is, where it lies, what of it can go.
FocusScope {
    id: inspector

    required property HomeScreen screen
    required property bool isOpen
    property bool slides: true
    property real shown: isOpen ? width : 0 // how much of it has come in

    signal reviewInCleanup()
    signal closed()

    function take() {
        close.forceActiveFocus(Qt.TabFocusReason)
    }

    visible: shown > 0
    enabled: isOpen
    clip: true
    Accessible.role: Accessible.Pane
    Accessible.name: screen.inspectorTitle
    Behavior on shown {
        enabled: inspector.slides && !Theme.reducedMotion
        NumberAnimation { duration: Theme.motion; easing.type: Easing.OutCubic }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Rectangle {
        width: 1
        height: parent.height
        color: Theme.border
    }
    Item {
        id: head
        x: Theme.page
        y: Theme.page
        width: parent.width - 2 * Theme.page
        height: Math.max(40, texts.height)
        TintedIcon {
            id: tile
            anchors.verticalCenter: parent.verticalCenter
            icon: inspector.screen.inspectorIcon
            tint: Theme.segmentColor(inspector.screen.inspectorTint, Theme.dark)
        }
        Column {
            id: texts
            anchors { left: tile.right; leftMargin: 12; right: close.left; rightMargin: 8; verticalCenter: parent.verticalCenter }
            spacing: 2
            Label {
                width: parent.width
                text: inspector.screen.inspectorTitle
                font { pixelSize: Theme.section; weight: Font.Bold }
                wrapMode: Text.Wrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
            }
            Label {
                width: parent.width
                text: inspector.screen.inspectorBusy ? Strings.of("home.storage.measuring") : inspector.screen.inspectorAmount
                color: Theme.muted
            }
        }
        IconButton {
            id: close
            anchors { right: parent.right; rightMargin: -6; top: parent.top }
            icon: "xmark"
            name: Strings.of("a11y.closeInspector")
            focus: true
            onPressed: inspector.closed()
        }
    }
    Flickable {
        id: scroll
        anchors { top: head.bottom; topMargin: Theme.inset; bottom: foot.top; left: parent.left; right: parent.right }
        contentHeight: content.height + Theme.page
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: contentHeight > height
        Keys.onDownPressed: contentY = Math.min(Math.max(0, contentHeight - height), contentY + 40)
        Keys.onUpPressed: contentY = Math.max(0, contentY - 40)
        Accessible.role: Accessible.Pane
        Accessible.name: Strings.of("home.storage.inspector.whatIsThis")
        Accessible.focusable: activeFocusOnTab

        Column {
            id: content
            x: Theme.page
            width: parent.width - 2 * Theme.page
            spacing: Theme.page

            InspectorBlock {
                width: parent.width
                title: Strings.of("home.storage.inspector.whatIsThis")
                Label {
                    width: parent.width
                    text: inspector.screen.inspectorExplanation
                    wrapMode: Text.Wrap
                    lineHeight: 1.2
                }
            }
            InspectorBlock {
                width: parent.width
                visible: inspector.screen.inspectorPaths.length > 0
                title: Strings.of("home.storage.inspector.paths")
                Repeater {
                    model: inspector.screen.inspectorPaths
                    Label {
                        required property string modelData
                        width: content.width
                        text: modelData
                        color: Theme.muted
                        wrapMode: Text.WrapAnywhere
                        maximumLineCount: 4
                        elide: Text.ElideRight
                    }
                }
            }
            InspectorBlock {
                width: parent.width
                visible: inspector.screen.inspectorFoundAmount !== ""
                title: Strings.of("home.storage.inspector.foundForCleanup")
                amount: inspector.screen.inspectorFoundAmount
                Repeater {
                    model: inspector.screen.inspectorSummaries
                    InspectorSummary { width: content.width }
                }
            }
        }
    }
    FocusRing {
        target: scroll
        anchors.fill: scroll
        gap: -4
    }
    ThinScrollBar {
        anchors { right: parent.right; top: scroll.top; bottom: scroll.bottom; margins: 2 }
        flickable: scroll
    }
    Item {
        id: foot
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: review.height + 2 * Theme.inset
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        PushButton {
            id: review
            x: Theme.page
            y: Theme.inset
            width: parent.width - 2 * Theme.page
            kind: PushButton.Prominent
            text: Strings.of("home.storage.reviewInCleanup")
            onPressed: inspector.reviewInCleanup()
        }
    }
}
