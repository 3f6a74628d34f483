import QtQuick
import Vesko.Window

// Text in the interface's font. Elided unless it wraps.
Text {
    color: Theme.text
    font.pixelSize: Theme.body
    elide: wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
