// Shows named states of the window with made-up data, one after another, and keeps what it sees: a picture of
// each and the tree that assistive tools get. For the gallery, and for looking at every state by eye.
#include "ui/States.h"
#include <QAccessible>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QThread>
#include <cstdio>

namespace {

using namespace vesko;
using namespace vesko::testing;

void wait(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
}

bool keep(const QString& name, const QCommandLineParser& options) {
    ScreenStage stage(name != QStringLiteral("access"));
    stage.window.theme().setDark(options.value("theme") == QStringLiteral("dark"));
    stage.window.theme().setReducedMotion(true);
    stage.show();
    const QStringList size = options.value("size").split(QLatin1Char('x'));
    if (size.size() == 2) stage.window.window()->resize(size[0].toInt(), size[1].toInt());
    enterState(stage, name);
    wait(options.value("wait").toInt());
    const QString base = options.value("folder") + QLatin1Char('/') + name + QLatin1Char('-') +
                         options.value("language") + QLatin1Char('-') + options.value("theme");
    QQuickWindow* window = shownWindow(stage);
    if (!window->grabWindow().save(base + QStringLiteral(".png"))) return false;
    QFile tree(base + QStringLiteral(".txt"));
    if (!tree.open(QIODevice::WriteOnly)) return false;
    tree.write(accessibleTree(window).toUtf8());
    stage.life.end();
    return true;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("HOME", "/home/someone"); // so that paths read the same everywhere
    QGuiApplication application(argc, argv);
    QAccessible::setActive(true);
    QCommandLineParser options;
    options.addHelpOption();
    options.addOptions({{"language", "en or pt-BR", "language", "en"},
                        {"theme", "light or dark", "theme", "light"},
                        {"folder", "where pictures and trees go", "folder", "."},
                        {"size", "of the window, such as 900x600", "size", ""},
                        {"wait", "milliseconds before the picture", "wait", "150"}});
    options.addPositionalArgument("states", "names of states; without any, all");
    options.process(application);
    setCurrentLanguage(languageFromIdentifier(options.value("language").toStdString()));
    const QStringList names =
        options.positionalArguments().isEmpty() ? stateNames() : options.positionalArguments();
    for (const QString& name : names) {
        if (!stateNames().contains(name)) {
            std::fprintf(stderr, "no state \"%s\"; there are: %s\n", qPrintable(name),
                         qPrintable(stateNames().join(QStringLiteral(", "))));
            return 2;
        }
        if (!keep(name, options)) return 1;
    }
    return 0;
}
