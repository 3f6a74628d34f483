#include "ui/ControlAccessible.h"
#include <QQuickWindow>

namespace vesko {

namespace {

QAccessibleInterface* make(const QString& className, QObject* object) {
    if (className != QLatin1String(Control::staticMetaObject.className())) return nullptr;
    return new ControlAccessible(*qobject_cast<Control*>(object));
}

bool isToBeSeen(const QQuickItem& item) {
    if (!item.isVisible() || !item.window() || !item.window()->isVisible()) return false;
    return item.opacity() > 0 && item.width() > 0 && item.height() > 0;
}

} // namespace

ControlAccessible::ControlAccessible(Control& control) : QAccessibleObject(&control) {}

void ControlAccessible::install() {
    static const bool once = [] {
        QAccessible::installFactory(make);
        return true;
    }();
    static_cast<void>(once);
}

const QQuickItem& ControlAccessible::item() const { return *static_cast<QQuickItem*>(object()); }

// The object behind `Accessible` in QML; null where the file gives none. Its properties are public there
// alone, so they are read by name.
QObject* ControlAccessible::attached() const {
    const QObjectList& children = object()->children();
    for (QObject* child : children) {
        if (child->inherits("QQuickAccessibleAttached")) return child;
    }
    return nullptr;
}

QVariant ControlAccessible::told(const char* property) const {
    const QObject* from = attached();
    return from ? from->property(property) : QVariant();
}

QWindow* ControlAccessible::window() const { return item().window(); }

QRect ControlAccessible::rect() const {
    const QRectF inScene = item().mapRectToScene(QRectF(0, 0, item().width(), item().height()));
    return {window() ? window()->mapToGlobal(inScene.topLeft().toPoint()) : inScene.topLeft().toPoint(),
            inScene.size().toSize()};
}

QAccessible::Role ControlAccessible::role() const {
    return static_cast<QAccessible::Role>(told("role").toInt());
}

QAccessible::State ControlAccessible::state() const {
    QAccessible::State state;
    state.disabled = !item().isEnabled();
    state.invisible = !isToBeSeen(item());
    state.offscreen =
        state.invisible || !QRect(window()->mapToGlobal(QPoint()), window()->size()).intersects(rect());
    state.focusable = item().isEnabled() && (told("focusable").toBool() || item().activeFocusOnTab());
    state.focused = item().hasActiveFocus();
    state.selectable = told("selectable").toBool();
    state.selected = told("selected").toBool();
    state.checkable = told("checkable").toBool();
    state.checked = told("checked").toBool();
    state.checkStateMixed = told("checkStateMixed").toBool();
    return state;
}

QString ControlAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Name) return told("name").toString();
    if (kind == QAccessible::Description) return told("description").toString();
    return {};
}

QAccessibleInterface* ControlAccessible::parent() const {
    if (!item().window()) return nullptr;
    for (QQuickItem* above = item().parentItem(); above && above != item().window()->contentItem();
         above = above->parentItem()) {
        if (QAccessibleInterface* found = QAccessible::queryAccessibleInterface(above)) return found;
    }
    return QAccessible::queryAccessibleInterface(item().window());
}

QAccessibleInterface* ControlAccessible::child(int /*index*/) const { return nullptr; }

int ControlAccessible::indexOfChild(const QAccessibleInterface* /*child*/) const { return -1; }

void* ControlAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface && role() == QAccessible::Slider)
        return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleObject::interface_cast(type);
}

QVariant ControlAccessible::currentValue() const { return object()->property("value"); }

void ControlAccessible::setCurrentValue(const QVariant& value) {
    if (!item().isEnabled()) return;
    QMetaObject::invokeMethod(object(), "moveTo", Q_ARG(QVariant, value));
}

QVariant ControlAccessible::maximumValue() const { return object()->property("maximumValue"); }

QVariant ControlAccessible::minimumValue() const { return object()->property("minimumValue"); }

QVariant ControlAccessible::minimumStepSize() const { return object()->property("stepSize"); }

QStringList ControlAccessible::actionNames() const {
    if (role() == QAccessible::Slider) return {increaseAction(), decreaseAction(), setFocusAction()};
    QStringList names{pressAction()};
    if (told("checkable").toBool()) names.prepend(toggleAction());
    if (state().focusable) names.append(setFocusAction());
    return names;
}

void ControlAccessible::doAction(const QString& name) {
    QObject* to = attached();
    if (!to || !item().isEnabled()) return;
    if (name == setFocusAction()) {
        static_cast<QQuickItem*>(object())->forceActiveFocus();
    } else if (name == toggleAction()) {
        QMetaObject::invokeMethod(to, "toggleAction");
    } else if (name == pressAction()) {
        QMetaObject::invokeMethod(to, "pressAction");
    } else if (name == increaseAction()) {
        QMetaObject::invokeMethod(to, "increaseAction");
    } else if (name == decreaseAction()) {
        QMetaObject::invokeMethod(to, "decreaseAction");
    }
}

QStringList ControlAccessible::keyBindingsForAction(const QString& /*name*/) const { return {}; }

} // namespace vesko
