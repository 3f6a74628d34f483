import QtQuick
import Vesko.Window

// The menu of a row: show in the file manager, copy the path, show or hide the items.
PopupMenu {
    id: menu

    required property CleanupScreen screen
    property int row: -1

    function open(index, at) {
        const list = screen.list
        const wanted = []
        if (screen.canReveal(index)) wanted.push("menu.revealInFileManager", "menu.copyPath")
        if (list.kind(index) === CleanupListModel.Group)
            wanted.push(list.isExpanded(index) ? "menu.collapse" : "menu.expand")
        if (wanted.length === 0) return
        row = index
        entries = wanted.map(key => ({ key: key, enabled: true }))
        popUp(at)
    }

    onChosen: key => {
        if (key === "menu.revealInFileManager") screen.reveal(row)
        else if (key === "menu.copyPath") screen.copyPath(row)
        else screen.list.setExpanded(row, key === "menu.expand")
    }
}
