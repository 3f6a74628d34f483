#include "ui/Theme.h"
#include "ui/WindowModel.h"
#include "ui/WindowModule.h"
#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char** argv) {
    using namespace vesko;
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("vesko"));

    WindowModel shell({.accessTest = [] { return true; }, .openAccessSettings = {}});
    QQmlApplicationEngine engine;
    useWindowModule(engine);
    engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)}});
    engine.load(QUrl(QStringLiteral("qrc:/qml/Vesko/Window/Main.qml")));
    if (engine.rootObjects().isEmpty()) return 1;
    return QGuiApplication::exec();
}
