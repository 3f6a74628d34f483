#pragma once
#include "base/Observation.h"
#include "core/ScanRecords.h"
#include "ui/CleanupListModel.h"
#include "ui/CleanupScreenState.h"
#include "ui/FileRevealing.h"
#include "ui/ShownLine.h"
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace vesko {

class CleanupViewModel;

/// The Cleanup screen as QML sees it: the view model's state as texts and flags, and what the person asks for
/// as operations. However many changes come in one turn of the loop, the screen takes them over once, on the
/// next. Main thread.
class CleanupScreen : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(vesko::CleanupListModel* list READ list CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY changed)
    Q_PROPERTY(Content content READ content NOTIFY changed)
    Q_PROPERTY(bool scanning READ scanning NOTIFY changed)
    Q_PROPERTY(bool deleting READ deleting NOTIFY changed)
    Q_PROPERTY(bool canScan READ canScan NOTIFY changed)
    Q_PROPERTY(Banner banner READ banner NOTIFY changed)
    Q_PROPERTY(QString scanLine READ scanLine NOTIFY changed)
    Q_PROPERTY(double scanFraction READ scanFraction NOTIFY changed)
    Q_PROPERTY(QString heroFacts READ heroFacts NOTIFY changed)
    Q_PROPERTY(Chip chip READ chip NOTIFY changed)
    Q_PROPERTY(QString chipText READ chipText NOTIFY changed)
    Q_PROPERTY(QVariantList segments READ segments NOTIFY segmentsChanged)
    Q_PROPERTY(bool failed READ failed NOTIFY changed)
    Q_PROPERTY(QString failureText READ failureText NOTIFY changed)
    Q_PROPERTY(bool partial READ partial NOTIFY changed)
    Q_PROPERTY(QString reviewMessage READ reviewMessage NOTIFY changed)
    Q_PROPERTY(QString cleanupMessage READ cleanupMessage NOTIFY changed)
    Q_PROPERTY(QString summaryLine READ summaryLine NOTIFY changed)
    Q_PROPERTY(QString hintLine READ hintLine NOTIFY changed)
    Q_PROPERTY(QString recoverLabel READ recoverLabel NOTIFY changed)
    Q_PROPERTY(bool canRecover READ canRecover NOTIFY changed)
    Q_PROPERTY(QString deletingLine READ deletingLine NOTIFY changed)
    Q_PROPERTY(QString deletingItem READ deletingItem NOTIFY changed)
    Q_PROPERTY(double deletingFraction READ deletingFraction NOTIFY changed)
    Q_PROPERTY(QString confirmSummary READ confirmSummary NOTIFY changed)
    Q_PROPERTY(QString confirmPrompt READ confirmPrompt NOTIFY changed)
    Q_PROPERTY(QString confirmWord READ confirmWord NOTIFY changed)
    Q_PROPERTY(QString announcement READ announcement NOTIFY announced)
    Q_PROPERTY(bool listShown READ listShown WRITE setListShown NOTIFY listShownChanged)

public:
    enum Content { AwaitingScan, Skeleton, NoResults, List };
    Q_ENUM(Content)
    enum Banner { NoBanner, Preparing, Progress };
    Q_ENUM(Banner)
    enum Chip { NoChip, Reviewing, Refining };
    Q_ENUM(Chip)

    CleanupScreen(std::shared_ptr<CleanupViewModel> model, std::shared_ptr<FileRevealing> files,
                  QObject* parent = nullptr);
    ~CleanupScreen() override;

    CleanupListModel* list() { return &list_; }
    QString searchText() const;
    void setSearchText(const QString& text);
    Content content() const { return static_cast<Content>(state_.content); }
    bool scanning() const { return state_.isScanning; }
    bool deleting() const { return state_.isDeleting; }
    bool canScan() const { return state_.canScan(); }
    Banner banner() const { return static_cast<Banner>(state_.banner); }
    QString scanLine() const { return QString::fromStdString(state_.scanLine); }
    double scanFraction() const { return state_.scanFraction; }
    QString heroFacts() const { return QString::fromStdString(state_.heroFacts); }
    Chip chip() const { return static_cast<Chip>(state_.chip); }
    QString chipText() const { return QString::fromStdString(state_.chipText); }
    /// See segmentList().
    QVariantList segments() const { return segments_; }
    bool failed() const { return state_.hasFailed; }
    QString failureText() const { return QString::fromStdString(state_.failureText); }
    bool partial() const { return state_.wasPartial; }
    QString reviewMessage() const { return QString::fromStdString(state_.reviewMessage); }
    QString cleanupMessage() const { return QString::fromStdString(state_.cleanupMessage); }
    QString summaryLine() const { return QString::fromStdString(state_.summaryLine); }
    QString hintLine() const { return QString::fromStdString(state_.hintLine); }
    QString recoverLabel() const { return QString::fromStdString(state_.recoverLabel); }
    bool canRecover() const { return state_.canRecover; }
    QString deletingLine() const { return QString::fromStdString(state_.deletingLine); }
    QString deletingItem() const { return shownLine(state_.deletingItem); }
    double deletingFraction() const { return state_.deletingFraction; }
    QString confirmSummary() const { return QString::fromStdString(state_.confirmSummary); }
    QString confirmPrompt() const { return QString::fromStdString(state_.confirmPrompt); }
    QString confirmWord() const { return QString::fromStdString(state_.confirmWord); }
    /// What assistive tools say of the last change of phase.
    QString announcement() const { return announcement_; }
    bool listShown() const { return listShown_; }
    /// Told by the list's view; a scroll that was asked for before happens then.
    void setListShown(bool shown);

    Q_INVOKABLE void startScan();
    Q_INVOKABLE void cancelScan();
    Q_INVOKABLE void clearReviewMessage();
    /// Turns the box of a row; does nothing while a deletion runs.
    Q_INVOKABLE void toggle(int row);
    /// Whether this is the confirm word, exactly: case and blanks count.
    Q_INVOKABLE bool isConfirmWord(const QString& typed) const { return typed == confirmWord(); }
    Q_INVOKABLE void deleteSelected();
    Q_INVOKABLE void reveal(int row);
    Q_INVOKABLE bool canReveal(int row) const { return list_.url(row).has_value(); }
    Q_INVOKABLE void copyPath(int row) const;
    /// Asks the list to show a band's first group.
    Q_INVOKABLE void scrollToSection(const QString& sectionID);

    /// Takes the view model's state over now instead of on the next turn.
    void refresh();
    void languageChanged();

Q_SIGNALS:
    void changed();
    void segmentsChanged();
    void announced();
    void listShownChanged();
    void scrollRequested(int row); ///< to be centred

private:
    void noteChange();
    void announceFrom(const CleanupScreenState& old);
    void announce(const QString& text);
    void answerScrollRequests();
    void takeSegments();

    std::shared_ptr<CleanupViewModel> model_;
    std::shared_ptr<FileRevealing> files_;
    CleanupListModel list_;
    CleanupScreenState state_;
    QVariantList segments_;
    QString announcement_;
    std::uint64_t scanDateRevision_ = 0;
    bool isRefreshDue_ = false;
    bool listShown_ = false;
    ChangeSource::Subscription subscription_;
    ChangeSource::Subscription storeSubscription_;
};

} // namespace vesko
