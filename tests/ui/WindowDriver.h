#pragma once
#include "ui/States.h"
#include <QAccessible>
#include <QStringList>
#include <functional>

namespace vesko::testing {

/// Drives the real window as assistive tools and the keyboard do.
class WindowDriver {
public:
    explicit WindowDriver(bool hasAccess = true) : stage(hasAccess) {}

    /// Shows the window, with the keyboard in it.
    void show();
    /// The one that is driven: that of the settings while it stands, else the main one.
    QQuickWindow* window() const { return shownWindow(stage); }

    /// All visible elements of a role.
    QList<QAccessibleInterface*> all(QAccessible::Role role) const;
    /// The first visible element of a role with that name.
    QAccessibleInterface* find(QAccessible::Role role, const QString& name) const;
    /// Does what an assistive tool does to press or turn it; fails the test when there is none.
    void press(QAccessible::Role role, const QString& name);
    bool isDisabled(QAccessible::Role role, const QString& name) const;
    bool isChecked(const QString& name) const;

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);
    /// The name of what has the keyboard.
    QString focusedName() const;
    /// Presses Tab until the element has the keyboard; fails the test when it is never reached.
    void tabTo(const QString& name, QAccessible::Role role);
    /// Runs the loop until it is so; fails the test after ten seconds.
    void waitFor(const std::function<bool()>& isSo);

    /// The first item of a QML or C++ type.
    QQuickItem* item(const char* type) const;
    /// All items of a QML or C++ type that are to be seen, in the order of the tree.
    QList<QQuickItem*> items(const char* type) const;
    /// Clicks on the middle of an item, or on a place in it.
    void click(QQuickItem* item);
    void click(QQuickItem* item, QPointF at);
    /// What is wrong with the texts that are shown: cut without an ellipsis, or out of what holds them.
    QStringList textFaults() const;

    ScreenStage stage;
};

} // namespace vesko::testing
