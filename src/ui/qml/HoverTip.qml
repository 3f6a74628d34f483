import QtQuick
import Vesko.Window

// The tooltip of the list: the full path of what the pointer rests on.
Rectangle {
    id: tip

    property Item over: null
    property string text: ""

    function hover(inside, item, words) {
        if (inside) {
            over = item
            text = words
            wait.restart()
        } else if (over === item) {
            wait.stop()
            over = null
            visible = false
        }
    }

    visible: false
    z: 10
    width: Math.min(label.implicitWidth, parent.width - 40) + 20
    height: label.height + 12
    radius: Theme.buttonCorner
    color: Theme.surface
    border { width: 1; color: Theme.border }
    Accessible.role: Accessible.ToolTip
    Accessible.name: text
    Accessible.ignored: !visible

    Label {
        id: label
        x: 10
        y: 6
        width: tip.width - 20
        text: tip.text
        font.pixelSize: Theme.caption
        wrapMode: Text.WrapAnywhere
        Accessible.ignored: true
    }
    Timer {
        id: wait
        interval: 600
        onTriggered: {
            if (!tip.over || tip.text === "") return
            const at = tip.over.mapToItem(tip.parent, 96, tip.over.height)
            tip.x = Math.max(8, Math.min(at.x, tip.parent.width - tip.width - 8))
            tip.y = at.y + tip.height > tip.parent.height ? at.y - tip.over.height - tip.height : at.y
            tip.visible = true
        }
    }
}
