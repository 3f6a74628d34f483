#include "ui/WindowDriver.h"
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTest>
#include <gtest/gtest.h>

namespace vesko::testing {

namespace {

void walk(QAccessibleInterface* from, const std::function<bool(QAccessibleInterface*)>& visit, bool& done) {
    if (done || !from || !from->isValid()) return;
    if (from->state().invisible && from->role() != QAccessible::Window) return;
    if (visit(from)) {
        done = true;
        return;
    }
    for (int i = 0; i < from->childCount(); ++i) walk(from->child(i), visit, done);
}

QQuickItem* firstOfType(QQuickItem* from, const char* type) {
    if (QString::fromLatin1(from->metaObject()->className()).startsWith(QLatin1String(type))) return from;
    const QList<QQuickItem*> children = from->childItems();
    for (QQuickItem* child : children) {
        if (QQuickItem* found = firstOfType(child, type)) return found;
    }
    return nullptr;
}

bool isShown(const QQuickItem* item) {
    for (const QQuickItem* each = item; each; each = each->parentItem()) {
        if (!each->isVisible() || each->opacity() == 0) return false;
    }
    return true;
}

void collect(QQuickItem* from, const char* type, QList<QQuickItem*>& items) {
    if (QString::fromLatin1(from->metaObject()->className()).startsWith(QLatin1String(type)) && isShown(from))
        items.append(from);
    const QList<QQuickItem*> children = from->childItems();
    for (QQuickItem* child : children) collect(child, type, items);
}

void collectTexts(QQuickItem* from, QList<QQuickItem*>& texts) {
    if (from->inherits("QQuickText") && isShown(from)) texts.append(from);
    const QList<QQuickItem*> children = from->childItems();
    for (QQuickItem* child : children) collectTexts(child, texts);
}

QString fault(const QQuickItem* text, const QSizeF& window) {
    const QString words = text->property("text").toString();
    if (words.isEmpty()) return {};
    const bool wraps = text->property("wrapMode").toInt() != 0;
    const bool elides = text->property("elide").toInt() != 3; // Text.ElideNone
    const double width = text->property("contentWidth").toDouble();
    const double height = text->property("contentHeight").toDouble();
    if (!elides && width > text->width() + 1) return QStringLiteral("wider than its place: ") + words;
    if (text->width() < 1) return QStringLiteral("no room at all: ") + words;
    if (height > text->height() + 1 && !wraps) return QStringLiteral("higher than its place: ") + words;
    const QRectF place = text->mapRectToScene(QRectF(0, 0, text->width(), 1));
    if (place.left() < -1 || place.right() > window.width() + 1) {
        return QStringLiteral("outside of the window: ") + words;
    }
    const QQuickItem* holder = text->parentItem();
    if (holder && holder->width() > 0 && text->x() + text->width() > holder->width() + 2) {
        return QStringLiteral("outside of what holds it: ") + words;
    }
    return {};
}

} // namespace

void WindowDriver::show() {
    stage.window.theme().setReducedMotion(true);
    stage.show();
    window()->requestActivate();
    if (!QTest::qWaitForWindowActive(window(), 5000)) ADD_FAILURE() << "the window never became active";
}

QList<QAccessibleInterface*> WindowDriver::all(QAccessible::Role role) const {
    QList<QAccessibleInterface*> found;
    bool done = false;
    walk(
        QAccessible::queryAccessibleInterface(window()),
        [&](QAccessibleInterface* each) {
            if (each->role() == role) found.append(each);
            return false;
        },
        done);
    return found;
}

QAccessibleInterface* WindowDriver::find(QAccessible::Role role, const QString& name) const {
    QAccessibleInterface* found = nullptr;
    bool done = false;
    walk(
        QAccessible::queryAccessibleInterface(window()),
        [&](QAccessibleInterface* each) {
            if (each->role() != role || each->text(QAccessible::Name) != name) return false;
            found = each;
            return true;
        },
        done);
    return found;
}

void WindowDriver::press(QAccessible::Role role, const QString& name) {
    QAccessibleInterface* element = find(role, name);
    if (!element || !element->actionInterface()) {
        ADD_FAILURE() << "nothing to press: " << name.toStdString() << '\n'
                      << accessibleTree(window()).toStdString();
        return;
    }
    element->actionInterface()->doAction(role == QAccessible::CheckBox
                                             ? QAccessibleActionInterface::toggleAction()
                                             : QAccessibleActionInterface::pressAction());
    stage.settle();
}

bool WindowDriver::isDisabled(QAccessible::Role role, const QString& name) const {
    QAccessibleInterface* element = find(role, name);
    if (!element) {
        ADD_FAILURE() << "not there: " << name.toStdString();
        return false;
    }
    return element->state().disabled;
}

bool WindowDriver::isChecked(const QString& name) const {
    QAccessibleInterface* element = find(QAccessible::CheckBox, name);
    if (!element) {
        ADD_FAILURE() << "not there: " << name.toStdString();
        return false;
    }
    return element->state().checked;
}

void WindowDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window(), key, modifiers);
    stage.settle();
}

void WindowDriver::type(const QString& text) {
    for (const QChar letter : text) QTest::keyClick(window(), letter.toLatin1());
    stage.settle();
}

QString WindowDriver::focusedName() const {
    QQuickItem* focused = window()->activeFocusItem();
    QAccessibleInterface* element = focused ? QAccessible::queryAccessibleInterface(focused) : nullptr;
    return element ? element->text(QAccessible::Name) : QString();
}

void WindowDriver::tabTo(const QString& name, QAccessible::Role role) {
    for (int presses = 0; presses < 80; ++presses) {
        QQuickItem* focused = window()->activeFocusItem();
        QAccessibleInterface* element = focused ? QAccessible::queryAccessibleInterface(focused) : nullptr;
        if (element && element->role() == role && element->text(QAccessible::Name) == name) return;
        key(Qt::Key_Tab);
    }
    ADD_FAILURE() << "Tab never reaches " << name.toStdString();
}

void WindowDriver::waitFor(const std::function<bool()>& isSo) {
    QElapsedTimer waited;
    waited.start();
    while (!isSo() && waited.elapsed() < 10'000) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_TRUE(isSo()) << "waited in vain";
    stage.settle();
}

QQuickItem* WindowDriver::item(const char* type) const { return firstOfType(window()->contentItem(), type); }

QList<QQuickItem*> WindowDriver::items(const char* type) const {
    QList<QQuickItem*> found;
    collect(window()->contentItem(), type, found);
    return found;
}

void WindowDriver::click(QQuickItem* item) { click(item, {item->width() / 2, item->height() / 2}); }

void WindowDriver::click(QQuickItem* item, QPointF at) {
    QTest::mouseClick(window(), Qt::LeftButton, {}, item->mapToScene(at).toPoint());
    stage.settle();
}

QStringList WindowDriver::textFaults() const {
    QList<QQuickItem*> texts;
    collectTexts(window()->contentItem(), texts);
    QStringList faults;
    for (const QQuickItem* text : texts) {
        const QString wrong = fault(text, window()->size());
        if (!wrong.isEmpty()) faults.append(wrong);
    }
    return faults;
}

} // namespace vesko::testing
