#pragma once
#include <QString>
#include <array>

namespace vesko {

/// The tabs of the settings window.
enum class SettingsTab { general, updates, about };

/// All of them, in the order of the window.
inline constexpr std::array allSettingsTabs{SettingsTab::general, SettingsTab::updates, SettingsTab::about};

/// "general", "updates" or "about".
QString rawValue(SettingsTab tab);
/// The catalog key of its label.
QString labelKey(SettingsTab tab);
/// The name of its symbol.
QString iconName(SettingsTab tab);

} // namespace vesko
