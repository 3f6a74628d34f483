import QtQuick
import Vesko.Window

// The mark of what the review added.
Icon {
    width: 16
    height: 16
    name: "sparkles"
    color: Theme.purple
    Accessible.role: Accessible.Graphic
    Accessible.name: Strings.of("a11y.aiDiscovered")
}
