#include "ui/MainWindow.h"
#include "ui/WindowModule.h"

namespace vesko {

namespace {

template <class Singleton> Singleton* singleton(QQmlEngine& engine, const char* name) {
    return engine.singletonInstance<Singleton*>(qmlTypeId("Vesko.Window", 1, 0, name));
}

} // namespace

MainWindow::MainWindow(WindowModel& shell, CleanupScreen& cleanup, HomeScreen& home, SettingsModel& settings)
    : shell_(shell), cleanup_(cleanup), home_(home), settings_(settings) {
    useWindowModule(engine_);
    theme_ = singleton<Theme>(engine_, "Theme");
    strings_ = singleton<Strings>(engine_, "Strings");
}

bool MainWindow::show(QVariantMap properties) {
    properties.insert(QStringLiteral("shell"), QVariant::fromValue(&shell_));
    properties.insert(QStringLiteral("cleanup"), QVariant::fromValue(&cleanup_));
    properties.insert(QStringLiteral("home"), QVariant::fromValue(&home_));
    properties.insert(QStringLiteral("settings"), QVariant::fromValue(&settings_));
    engine_.setInitialProperties(properties);
    engine_.load(QUrl(QStringLiteral("qrc:/qml/Vesko/Window/Main.qml")));
    if (engine_.rootObjects().isEmpty()) return false;
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    return window_ != nullptr;
}

void MainWindow::languageChanged() {
    strings_->languageChanged();
    cleanup_.languageChanged();
    home_.languageChanged();
}

} // namespace vesko
