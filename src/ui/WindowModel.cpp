#include "ui/WindowModel.h"
#include <algorithm>

namespace vesko {

WindowModel::WindowModel(WindowModelParts parts, QObject* parent)
    : QObject(parent), parts_(std::move(parts)), hasAccess_(parts_.accessTest()) {}

void WindowModel::setSelection(const QString& rawValue) {
    if (rawValue == selection_) return;
    if (!rawValue.isEmpty() && !destinationFromRawValue(rawValue)) return;
    selection_ = rawValue;
    Q_EMIT selectionChanged();
}

QVariantList WindowModel::destinations() const {
    QVariantList list;
    for (const AppSidebarDestination destination : allDestinations) {
        list.append(QVariantMap{{QStringLiteral("id"), rawValue(destination)},
                                {QStringLiteral("label"), labelKey(destination)},
                                {QStringLiteral("icon"), iconName(destination)}});
    }
    return list;
}

void WindowModel::setFreeSpace(const QString& line) {
    if (line == freeSpace_) return;
    freeSpace_ = line;
    Q_EMIT freeSpaceChanged();
}

void WindowModel::setSidebarWidth(int width) {
    const int fitting = std::clamp(width, narrowestSidebar, widestSidebar);
    if (fitting == sidebarWidth_) return;
    sidebarWidth_ = fitting;
    Q_EMIT sidebarWidthChanged();
}

void WindowModel::noteFrame() {
    if (hasFrame_) return;
    hasFrame_ = true;
    Q_EMIT framed();
}

void WindowModel::checkAccess() {
    const bool had = hasAccess_;
    hasAccess_ = parts_.accessTest();
    if (hasAccess_ == had) return;
    Q_EMIT accessChanged();
    if (hasAccess_) Q_EMIT accessGranted();
}

void WindowModel::openAccessSettings() const {
    if (parts_.openAccessSettings) parts_.openAccessSettings();
}

void WindowModel::selectDestination(int index) {
    if (index < 0 || index >= static_cast<int>(allDestinations.size())) return;
    setSelection(rawValue(allDestinations[static_cast<std::size_t>(index)]));
}

} // namespace vesko
