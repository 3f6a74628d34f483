import QtQuick
import Vesko.Window

// The verdict of a group: a word with a mark, never the colour alone. While it is being made it says that.
Rectangle {
    id: badge

    required property int safety // 0 safe, 1 review, 2 risk
    required property bool analyzing
    readonly property string word: Strings.of(analyzing ? "safety.analyzing"
                                            : safety === 0 ? "safety.seguro"
                                            : safety === 1 ? "safety.revisar" : "safety.risco")
    readonly property color ink: analyzing ? Theme.muted : safety === 0 ? Theme.safe
                               : safety === 1 ? Theme.review : Theme.risk

    implicitWidth: content.implicitWidth + 16
    implicitHeight: Math.max(20, Theme.caption + 8)
    radius: height / 2
    color: analyzing ? Theme.hover : safety === 0 ? Theme.safeGround
         : safety === 1 ? Theme.reviewGround : Theme.riskGround
    Accessible.role: Accessible.StaticText
    Accessible.name: word

    Row {
        id: content
        anchors.centerIn: parent
        spacing: 4
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            width: Theme.caption + 1
            height: width
            name: badge.analyzing ? "sparkles" : badge.safety === 0 ? "checkmark"
                : badge.safety === 1 ? "eye" : "exclamationmark.triangle"
            color: badge.ink
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.word
            color: badge.ink
            font { pixelSize: Theme.caption; weight: Font.DemiBold }
            Accessible.ignored: true
        }
    }
}
