#pragma once
#include "base/Observation.h"
#include "ui/HomeListModel.h"
#include "ui/HomeScreenState.h"
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace vesko {

class WindowModel;

/// The Home screen as QML sees it: the state of both view models as texts, flags and lists, and what the
/// person asks for as operations. However many changes come in one turn of the loop, the screen takes them
/// over once, on the next. Main thread.
class HomeScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString availableLine READ availableLine NOTIFY changed)
    Q_PROPERTY(QString volumeLine READ volumeLine NOTIFY changed)
    Q_PROPERTY(bool hasDashboard READ hasDashboard NOTIFY changed)
    Q_PROPERTY(QString storageSubtitle READ storageSubtitle NOTIFY changed)
    Q_PROPERTY(QVariantList segments READ segments NOTIFY segmentsChanged)
    Q_PROPERTY(QVariantList legend READ legend NOTIFY segmentsChanged)
    Q_PROPERTY(vesko::HomeListModel* buckets READ buckets CONSTANT)
    Q_PROPERTY(vesko::HomeListModel* opportunities READ opportunities CONSTANT)
    Q_PROPERTY(QString opportunitiesSubtitle READ opportunitiesSubtitle NOTIFY changed)
    Q_PROPERTY(QString reviewSubtitle READ reviewSubtitle NOTIFY changed)
    Q_PROPERTY(QString scanSubtitle READ scanSubtitle NOTIFY changed)
    Q_PROPERTY(bool canScan READ canScan NOTIFY changed)
    Q_PROPERTY(bool inspectorOpen READ inspectorOpen NOTIFY changed)
    Q_PROPERTY(QString inspectorTitle READ inspectorTitle NOTIFY changed)
    Q_PROPERTY(QString inspectorIcon READ inspectorIcon NOTIFY changed)
    Q_PROPERTY(int inspectorTint READ inspectorTint NOTIFY changed)
    Q_PROPERTY(QString inspectorAmount READ inspectorAmount NOTIFY changed)
    Q_PROPERTY(bool inspectorBusy READ inspectorBusy NOTIFY changed)
    Q_PROPERTY(QString inspectorExplanation READ inspectorExplanation NOTIFY changed)
    Q_PROPERTY(QStringList inspectorPaths READ inspectorPaths NOTIFY changed)
    Q_PROPERTY(QString inspectorFoundAmount READ inspectorFoundAmount NOTIFY changed)
    Q_PROPERTY(vesko::HomeListModel* inspectorSummaries READ inspectorSummaries CONSTANT)

public:
    HomeScreen(std::shared_ptr<HomeViewModel> home, std::shared_ptr<CleanupViewModel> cleanup,
               WindowModel& shell, QObject* parent = nullptr);
    ~HomeScreen() override;

    QString availableLine() const { return QString::fromStdString(state_.availableLine); }
    QString volumeLine() const { return QString::fromStdString(state_.volumeLine); }
    bool hasDashboard() const { return state_.hasDashboard; }
    QString storageSubtitle() const { return QString::fromStdString(state_.storageSubtitle); }
    /// See segmentList(); the buckets in order, then the free space.
    QVariantList segments() const { return segments_; }
    QVariantList legend() const { return legend_; }
    HomeListModel* buckets() { return &buckets_; }
    /// The categories of what can go.
    HomeListModel* opportunities() { return &opportunities_; }
    QString opportunitiesSubtitle() const { return QString::fromStdString(state_.opportunitiesSubtitle); }
    QString reviewSubtitle() const { return QString::fromStdString(state_.reviewSubtitle); }
    QString scanSubtitle() const { return QString::fromStdString(state_.scanSubtitle); }
    bool canScan() const { return state_.canScan; }

    bool inspectorOpen() const { return state_.inspector.has_value(); }
    // While it closes, the inspector still says what it said.
    QString inspectorTitle() const { return QString::fromStdString(inspector_.bucket.title); }
    QString inspectorIcon() const { return QString::fromStdString(inspector_.bucket.icon); }
    int inspectorTint() const { return static_cast<int>(inspector_.bucket.tint); }
    QString inspectorAmount() const { return QString::fromStdString(inspector_.bucket.amount); }
    bool inspectorBusy() const { return inspector_.bucket.isBusy; }
    QString inspectorExplanation() const { return QString::fromStdString(inspector_.explanation); }
    QStringList inspectorPaths() const;
    QString inspectorFoundAmount() const { return QString::fromStdString(inspector_.foundAmount); }
    HomeListModel* inspectorSummaries() { return &summaries_; }

    /// Begins to watch and to measure, once: at the program's start or when the files can be read. A
    /// development host reads the volume alone.
    void start();
    /// Reads the volume anew and brings the figures up to date: the screen has appeared, or the window has
    /// become active. Before start() the volume alone is read.
    Q_INVOKABLE void bringUpToDate();
    Q_INVOKABLE void reviewCleanup();
    Q_INVOKABLE void scanNow();
    /// Opens the inspector for a bucket of the dashboard.
    Q_INVOKABLE void selectBucket(const QString& id);
    /// Closes the inspector.
    Q_INVOKABLE void clearSelection();
    /// Shows a category's first group on the Cleanup screen.
    Q_INVOKABLE void openCategory(const QString& id);
    /// Closes the inspector and shows the first category of its bucket that has something on the Cleanup
    /// screen.
    Q_INVOKABLE void reviewInCleanup();

    /// Takes the view models' state over now instead of on the next turn.
    void refresh();
    void languageChanged();

Q_SIGNALS:
    void changed();
    void segmentsChanged();

private:
    void noteChange();
    void takeLists();

    std::shared_ptr<HomeViewModel> home_;
    std::shared_ptr<CleanupViewModel> cleanup_;
    WindowModel& shell_;
    HomeScreenState state_;
    HomeInspectorState inspector_;
    QVariantList segments_;
    QVariantList legend_;
    HomeListModel buckets_;
    HomeListModel opportunities_;
    HomeListModel summaries_;
    std::uint64_t groupsRevision_ = 0;
    bool isRefreshDue_ = false;
    bool isStarted_ = false;
    ChangeSource::Subscription homeSubscription_;
    ChangeSource::Subscription cleanupSubscription_;
};

} // namespace vesko
