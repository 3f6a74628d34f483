#pragma once
#include "ui/AboutModel.h"
#include "ui/AlertPreferencesModel.h"
#include "ui/SettingsTab.h"
#include "ui/UpdatesModel.h"
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vesko {

/// What the settings window stands on.
struct SettingsModelParts {
    AlertPreferencesParts alerts;
    std::shared_ptr<Updater> updater;
    AboutFacts about;
};

/// The settings window as QML sees it: whether it stands, which tab it shows, and what is on them. Main
/// thread.
class SettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(QString tab READ tab WRITE setTab NOTIFY tabChanged)
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    Q_PROPERTY(vesko::AlertPreferencesModel* alerts READ alerts CONSTANT)
    Q_PROPERTY(vesko::UpdatesModel* updates READ updates CONSTANT)
    Q_PROPERTY(vesko::AboutModel* about READ about CONSTANT)

public:
    explicit SettingsModel(SettingsModelParts parts, QObject* parent = nullptr);

    bool isOpen() const { return isOpen_; }
    /// The raw value of the tab that is shown.
    QString tab() const { return rawValue(tab_); }
    /// An unknown word changes nothing.
    void setTab(const QString& rawValue);
    /// Of each: "id", "label" (a catalog key), "icon".
    QVariantList tabs() const;
    AlertPreferencesModel* alerts() { return &alerts_; }
    UpdatesModel* updates() { return &updates_; }
    AboutModel* about() { return &about_; }

    /// Opens the window, or brings it to the front, at the tab that it showed last.
    Q_INVOKABLE void open();
    Q_INVOKABLE void openAbout();
    /// Asks for a newer version, and shows where the answer will stand.
    Q_INVOKABLE void checkForUpdates();
    Q_INVOKABLE void close();

Q_SIGNALS:
    void isOpenChanged();
    void tabChanged();
    void raiseRequested(); ///< the window stands already and is to come to the front

private:
    void openAt(SettingsTab tab);
    void show(SettingsTab tab);

    AlertPreferencesModel alerts_;
    UpdatesModel updates_;
    AboutModel about_;
    bool isOpen_ = false;
    SettingsTab tab_ = SettingsTab::general;
};

} // namespace vesko
