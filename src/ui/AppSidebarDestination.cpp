#include "ui/AppSidebarDestination.h"

namespace vesko {

QString rawValue(AppSidebarDestination destination) {
    switch (destination) {
    case AppSidebarDestination::home: return QStringLiteral("home");
    case AppSidebarDestination::cleanup: break;
    }
    return QStringLiteral("cleanup");
}

std::optional<AppSidebarDestination> destinationFromRawValue(const QString& value) {
    for (const AppSidebarDestination destination : allDestinations) {
        if (rawValue(destination) == value) return destination;
    }
    return std::nullopt;
}

QString labelKey(AppSidebarDestination destination) {
    return QStringLiteral("sidebar.") + rawValue(destination);
}

QString iconName(AppSidebarDestination destination) {
    return destination == AppSidebarDestination::home ? QStringLiteral("house") : QStringLiteral("trash");
}

} // namespace vesko
