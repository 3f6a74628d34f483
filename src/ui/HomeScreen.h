#pragma once
#include "base/Observation.h"
#include "core/DiskVolume.h"
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace vesko {

class CleanupViewModel;
class WindowModel;

/// The Home screen as QML sees it: the volume's figures and the two shortcuts. Main thread.
class HomeScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString availableLine READ availableLine NOTIFY changed)
    Q_PROPERTY(QString volumeLine READ volumeLine NOTIFY changed)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY changed)
    Q_PROPERTY(QString reviewSubtitle READ reviewSubtitle NOTIFY changed)
    Q_PROPERTY(QString scanSubtitle READ scanSubtitle NOTIFY changed)
    Q_PROPERTY(bool canScan READ canScan NOTIFY changed)

public:
    HomeScreen(std::shared_ptr<CleanupViewModel> cleanup, std::shared_ptr<const DiskVolumeReading> volumes,
               WindowModel& shell, QObject* parent = nullptr);
    ~HomeScreen() override;

    QString availableLine() const; ///< empty before the first reading
    QString volumeLine() const;
    double usedFraction() const;
    QString reviewSubtitle() const;
    QString scanSubtitle() const;
    bool canScan() const;

    /// Reads the volume's figures anew, on a worker.
    Q_INVOKABLE void readVolume();
    Q_INVOKABLE void reviewCleanup();
    Q_INVOKABLE void scanNow();

    /// Takes figures over; also the line at the foot of the sidebar.
    void showVolume(const DiskVolumeInfo& volume);
    void languageChanged();

Q_SIGNALS:
    void changed();

private:
    void noteChange();

    std::shared_ptr<CleanupViewModel> cleanup_;
    std::shared_ptr<const DiskVolumeReading> volumes_;
    WindowModel& shell_;
    std::optional<DiskVolumeInfo> volume_;
    bool isChangeDue_ = false;
    bool isReading_ = false;
    ChangeSource::Subscription subscription_;
};

} // namespace vesko
