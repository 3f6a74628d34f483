import QtQuick
import Vesko.Window

// A piece of a skeleton.
Rectangle {
    radius: 4
    color: Theme.hover
}
