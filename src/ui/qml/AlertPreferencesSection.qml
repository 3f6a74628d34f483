import QtQuick
import Vesko.Window

// Which notifications are shown, and from which thresholds.
Column {
    id: section

    required property AlertPreferencesModel alerts

    width: parent.width
    spacing: Theme.page

    SettingsSection {
        title: Strings.of("alert.preferences.lowSpace.section")
        SwitchRow {
            text: Strings.of("alert.preferences.lowSpace.toggle")
            on: section.alerts.lowSpaceEnabled
            onToggled: on => section.alerts.setLowSpaceEnabled(on)
        }
        ThresholdRows {
            visible: section.alerts.lowSpaceEnabled
            text: Strings.of("alert.preferences.lowSpace.threshold %lld", Math.floor(value))
            sliderName: Strings.of("alert.preferences.lowSpace.slider")
            value: section.alerts.lowSpaceGB
            least: section.alerts.leastLowSpaceGB
            most: section.alerts.mostLowSpaceGB
            onMoved: value => section.alerts.moveLowSpace(value)
        }
    }
    SettingsSection {
        title: Strings.of("alert.preferences.opportunity.section")
        SwitchRow {
            text: Strings.of("alert.preferences.opportunity.toggle")
            on: section.alerts.opportunityEnabled
            onToggled: on => section.alerts.setOpportunityEnabled(on)
        }
        ThresholdRows {
            visible: section.alerts.opportunityEnabled
            text: Strings.of("alert.preferences.opportunity.threshold %lld", Math.floor(value))
            sliderName: Strings.of("alert.preferences.opportunity.slider")
            value: section.alerts.opportunityDeltaGB
            least: section.alerts.leastOpportunityGB
            most: section.alerts.mostOpportunityGB
            onMoved: value => section.alerts.moveOpportunity(value)
        }
    }
    SettingsSection {
        title: Strings.of("alert.preferences.scanCompleted.section")
        SwitchRow {
            text: Strings.of("alert.preferences.scanCompleted.toggle")
            on: section.alerts.scanCompletedEnabled
            onToggled: on => section.alerts.setScanCompletedEnabled(on)
        }
    }
}
