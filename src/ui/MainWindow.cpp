#include "ui/MainWindow.h"
#include "ui/WindowModule.h"

namespace vesko {

namespace {

template <class Singleton> Singleton* singleton(QQmlEngine& engine, const char* name) {
    return engine.singletonInstance<Singleton*>(qmlTypeId("Vesko.Window", 1, 0, name));
}

} // namespace

MainWindow::MainWindow(WindowModel& shell, CleanupScreen& cleanup, HomeScreen& home)
    : shell_(shell), cleanup_(cleanup), home_(home) {
    useWindowModule(engine_);
    theme_ = singleton<Theme>(engine_, "Theme");
    strings_ = singleton<Strings>(engine_, "Strings");
}

bool MainWindow::show() {
    engine_.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell_)},
                                  {QStringLiteral("cleanup"), QVariant::fromValue(&cleanup_)},
                                  {QStringLiteral("home"), QVariant::fromValue(&home_)}});
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
