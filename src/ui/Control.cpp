#include "ui/Control.h"
#include <QAccessible>

namespace vesko {

Control::Control(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
    connect(this, &QQuickItem::enabledChanged, this, &Control::tellEnabled);
}

void Control::tellEnabled() {
    QAccessible::State changed;
    changed.disabled = true;
    changed.focusable = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

} // namespace vesko
