#pragma once
#include "background/NotificationDelivering.h"
#include "background/Updater.h"
#include "base/UserDefaults.h"
#include "concurrency/TaskContext.h"
#include "ui/MainWindow.h"
#include "ui/SettingsModel.h"
#include "ui/WindowMemory.h"
#include <memory>

namespace vesko {

/// What the settings act on.
struct DesktopServices {
    std::shared_ptr<NotificationDelivering> notifications;
    std::shared_ptr<Updater> updater;
};

/// The settings window and what the main window remembers, put together over the preferences. These, the
/// shell and the main window must outlive it. Main thread.
class DesktopSettings {
public:
    DesktopSettings(UserDefaults& defaults, WindowModel& shell, const DesktopServices& services,
                    const TaskContext& tasks);

    SettingsModel& settings() { return settings_; }
    /// Shows the main window as it was left; false when its files could not be loaded.
    bool show(MainWindow& window);

private:
    SettingsModel settings_;
    WindowMemory memory_;
};

} // namespace vesko
