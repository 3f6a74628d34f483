#include "ui/SettingsModel.h"
#include <utility>

namespace vesko {

SettingsModel::SettingsModel(SettingsModelParts parts, QObject* parent)
    : QObject(parent), alerts_(std::move(parts.alerts)), updates_(std::move(parts.updater)),
      about_(std::move(parts.about)) {}

void SettingsModel::setTab(const QString& rawValue) {
    for (const SettingsTab each : allSettingsTabs) {
        if (vesko::rawValue(each) == rawValue) show(each);
    }
}

void SettingsModel::show(SettingsTab tab) {
    if (tab == tab_) return;
    tab_ = tab;
    Q_EMIT tabChanged();
}

QVariantList SettingsModel::tabs() const {
    QVariantList list;
    for (const SettingsTab each : allSettingsTabs) {
        list.append(QVariantMap{{QStringLiteral("id"), rawValue(each)},
                                {QStringLiteral("label"), labelKey(each)},
                                {QStringLiteral("icon"), iconName(each)}});
    }
    return list;
}

void SettingsModel::open() { openAt(tab_); }

void SettingsModel::openAbout() { openAt(SettingsTab::about); }

void SettingsModel::checkForUpdates() {
    if (!updates_.canCheck()) return;
    openAt(SettingsTab::updates);
    updates_.check();
}

void SettingsModel::openAt(SettingsTab tab) {
    show(tab);
    if (isOpen_) {
        Q_EMIT raiseRequested();
        return;
    }
    alerts_.load();
    isOpen_ = true;
    Q_EMIT isOpenChanged();
}

void SettingsModel::close() {
    if (!isOpen_) return;
    isOpen_ = false;
    Q_EMIT isOpenChanged();
}

} // namespace vesko
