import QtQuick
import Vesko.Window

// What the last deletion, scan and review have to say, stacked.
Column {
    id: status

    required property CleanupScreen screen
    readonly property bool hasSomething: screen.failed || screen.partial || screen.reviewMessage !== ""
                                         || screen.cleanupMessage !== ""

    spacing: 8

    BannerLine {
        visible: status.screen.failed
        width: parent.width
        icon: "exclamationmark.triangle.fill"
        tint: Theme.danger
        title: Strings.of("banner.deleteFailed")
        text: status.screen.failureText
    }
    BannerLine {
        visible: status.screen.partial
        width: parent.width
        icon: "exclamationmark.triangle"
        tint: Theme.warning
        text: Strings.of("banner.scanPartial")
    }
    BannerLine {
        visible: status.screen.reviewMessage !== ""
        width: parent.width
        icon: "sparkles"
        text: status.screen.reviewMessage
        dismissible: true
        onDismissed: status.screen.clearReviewMessage()
    }
    BannerLine {
        visible: status.screen.cleanupMessage !== ""
        width: parent.width
        tint: Theme.success
        text: status.screen.cleanupMessage
    }
}
