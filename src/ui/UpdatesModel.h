#pragma once
#include "background/Updater.h"
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <memory>

namespace vesko {

/// The updater as QML sees it. Main thread.
class UpdatesModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool automatic READ automatic NOTIFY changed)
    Q_PROPERTY(bool canCheck READ canCheck NOTIFY changed)
    Q_PROPERTY(QString newerVersion READ newerVersion NOTIFY changed)
    Q_PROPERTY(QString newerNotes READ newerNotes NOTIFY changed)
    Q_PROPERTY(bool hasPage READ hasPage NOTIFY changed)

public:
    explicit UpdatesModel(std::shared_ptr<Updater> updater, QObject* parent = nullptr);

    bool automatic() const { return updater_->automaticallyChecksForUpdates(); }
    bool canCheck() const { return updater_->canCheckForUpdates(); }
    /// Empty while none is known.
    QString newerVersion() const;
    QString newerNotes() const;
    /// Whether the newer version has a page that can be opened.
    bool hasPage() const;

    Q_INVOKABLE void setAutomatic(bool automatic);
    Q_INVOKABLE void check();
    Q_INVOKABLE void openPage();

Q_SIGNALS:
    void changed();

private:
    std::shared_ptr<Updater> updater_;
    ChangeSource::Subscription subscription_;
};

} // namespace vesko
