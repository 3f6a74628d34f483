import QtQuick
import Vesko.Window

// The tabs of the settings. Left and Right go from one to the next.
FocusScope {
    id: bar

    required property SettingsModel settings

    function step(by) {
        const tabs = settings.tabs
        const at = tabs.findIndex(tab => tab.id === settings.tab)
        const next = Math.max(0, Math.min(tabs.length - 1, at + by))
        settings.tab = tabs[next].id
        row.children[next].forceActiveFocus(Qt.TabFocusReason)
    }

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Keys.onLeftPressed: step(-1)
    Keys.onRightPressed: step(1)
    Accessible.role: Accessible.PageTabList
    Accessible.name: Strings.of("settings.title")

    Row {
        id: row
        spacing: 8

        Repeater {
            model: bar.settings.tabs
            Control {
                id: tab
                required property var modelData
                readonly property bool selected: bar.settings.tab === modelData.id
                readonly property color ink: selected ? Theme.purple : Theme.muted

                function choose() {
                    bar.settings.tab = modelData.id
                }

                width: Math.max(96, label.implicitWidth + 24)
                height: Theme.controlHeight + Theme.body + 12
                focus: selected
                activeFocusOnTab: selected
                Keys.onSpacePressed: choose()
                Keys.onReturnPressed: choose()
                Keys.onEnterPressed: choose()
                Accessible.role: Accessible.PageTab
                Accessible.name: label.text
                Accessible.focusable: true
                Accessible.selectable: true
                Accessible.selected: selected
                Accessible.onPressAction: choose()

                Rectangle {
                    anchors.fill: parent
                    radius: Theme.buttonCorner
                    color: tab.selected || hover.hovered ? Theme.hover : "transparent"
                }
                FocusRing {
                    target: tab
                    gap: 0
                }
                Icon {
                    y: 8
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 22
                    height: 22
                    name: tab.modelData.icon
                    color: tab.ink
                }
                Label {
                    id: label
                    anchors { bottom: parent.bottom; bottomMargin: 6; horizontalCenter: parent.horizontalCenter }
                    text: Strings.of(tab.modelData.label)
                    color: tab.ink
                    font.weight: tab.selected ? Font.DemiBold : Font.Normal
                    Accessible.ignored: true
                }
                HoverHandler { id: hover }
                TapHandler { onTapped: tab.choose() }
            }
        }
    }
}
