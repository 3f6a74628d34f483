#pragma once
#include "background/NotificationDelivering.h"
#include "background/NotificationPreferences.h"
#include "concurrency/TaskContext.h"
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <memory>

namespace vesko {

/// What the settings of the notifications stand on.
struct AlertPreferencesParts {
    TaskContext tasks;
    std::shared_ptr<NotificationDelivering> notificationService;
    std::function<NotificationPreferences()> load;
    std::function<void(const NotificationPreferences&)> save;
};

/// The settings of the notifications as QML sees them. Each change is saved at once. The thresholds are in
/// gigabytes of a thousand million bytes; a stored one that its slider cannot show is shown at the slider's
/// end, and stays stored until the person moves that slider. Main thread.
class AlertPreferencesModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool lowSpaceEnabled READ lowSpaceEnabled NOTIFY changed)
    Q_PROPERTY(double lowSpaceGB READ lowSpaceGB NOTIFY changed)
    Q_PROPERTY(double leastLowSpaceGB READ leastLowSpaceGB CONSTANT)
    Q_PROPERTY(double mostLowSpaceGB READ mostLowSpaceGB CONSTANT)
    Q_PROPERTY(bool opportunityEnabled READ opportunityEnabled NOTIFY changed)
    Q_PROPERTY(double opportunityDeltaGB READ opportunityDeltaGB NOTIFY changed)
    Q_PROPERTY(double leastOpportunityGB READ leastOpportunityGB CONSTANT)
    Q_PROPERTY(double mostOpportunityGB READ mostOpportunityGB CONSTANT)
    Q_PROPERTY(bool scanCompletedEnabled READ scanCompletedEnabled NOTIFY changed)

public:
    explicit AlertPreferencesModel(AlertPreferencesParts parts, QObject* parent = nullptr);

    /// Takes the stored preferences over; to be called when the window opens.
    void load();

    bool lowSpaceEnabled() const { return preferences_.lowSpaceEnabled; }
    double lowSpaceGB() const { return lowSpaceGB_; }
    static double leastLowSpaceGB() { return 5; }
    static double mostLowSpaceGB() { return 50; }
    bool opportunityEnabled() const { return preferences_.largeOpportunityEnabled; }
    double opportunityDeltaGB() const { return opportunityDeltaGB_; }
    static double leastOpportunityGB() { return 1; }
    static double mostOpportunityGB() { return 20; }
    bool scanCompletedEnabled() const { return preferences_.scanCompletedEnabled; }

    // The person turns a switch. Turned on, the platform is asked whether notifications may be shown.
    Q_INVOKABLE void setLowSpaceEnabled(bool enabled);
    Q_INVOKABLE void setOpportunityEnabled(bool enabled);
    Q_INVOKABLE void setScanCompletedEnabled(bool enabled);
    // The person moves a slider: to the nearest whole gigabyte within its range.
    Q_INVOKABLE void moveLowSpace(double gigabytes);
    Q_INVOKABLE void moveOpportunity(double gigabytes);

Q_SIGNALS:
    void changed();

private:
    void turn(bool NotificationPreferences::* flag, bool enabled);
    void save();

    AlertPreferencesParts parts_;
    NotificationPreferences preferences_;
    double lowSpaceGB_ = 0;
    double opportunityDeltaGB_ = 0;
};

} // namespace vesko
