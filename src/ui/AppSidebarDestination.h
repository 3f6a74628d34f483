#pragma once
#include <QString>
#include <array>
#include <optional>

namespace vesko {

/// The screens that the sidebar leads to.
enum class AppSidebarDestination { home, cleanup };

/// All of them, in the order of the sidebar.
inline constexpr std::array allDestinations{AppSidebarDestination::home, AppSidebarDestination::cleanup};

/// "home" or "cleanup".
QString rawValue(AppSidebarDestination destination);
std::optional<AppSidebarDestination> destinationFromRawValue(const QString& value);
/// The catalog key of its label.
QString labelKey(AppSidebarDestination destination);
/// The name of its symbol.
QString iconName(AppSidebarDestination destination);

} // namespace vesko
