#pragma once
#include "ui/CleanupScreen.h"
#include "ui/HomeScreen.h"
#include "ui/SettingsModel.h"
#include "ui/Strings.h"
#include "ui/Theme.h"
#include "ui/WindowModel.h"
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QVariantMap>

namespace vesko {

/// The window put together: the QML module over the models, which must outlive it. Main thread.
class MainWindow {
public:
    MainWindow(WindowModel& shell, CleanupScreen& cleanup, HomeScreen& home, SettingsModel& settings);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    /// The theme of this window; may be set before show().
    Theme& theme() { return *theme_; }
    /// Builds the window and shows it, with these properties of its own where it is to begin otherwise than
    /// usual; false when its files could not be loaded.
    bool show(QVariantMap properties = {});
    /// Null before show().
    QQuickWindow* window() const { return window_; }
    /// To be called after the language has changed: every text reads anew.
    void languageChanged();

private:
    WindowModel& shell_;
    CleanupScreen& cleanup_;
    HomeScreen& home_;
    SettingsModel& settings_;
    QQmlApplicationEngine engine_;
    Theme* theme_;
    Strings* strings_;
    QQuickWindow* window_ = nullptr;
};

} // namespace vesko
