import QtQuick
import Vesko.Window

// A threshold in words, and the slider that moves it.
Column {
    id: rows

    required property string text
    required property string sliderName
    required property real value
    required property real least
    required property real most

    signal moved(real value)

    width: parent.width
    topPadding: 8
    bottomPadding: 4

    Label {
        x: Theme.inset
        width: parent.width - 2 * Theme.inset
        text: rows.text
        color: Theme.muted
        wrapMode: Text.Wrap
    }
    ThresholdSlider {
        x: Theme.inset
        width: parent.width - 2 * Theme.inset
        name: rows.sliderName
        value: rows.value
        minimumValue: rows.least
        maximumValue: rows.most
        onMoved: value => rows.moved(value)
    }
}
