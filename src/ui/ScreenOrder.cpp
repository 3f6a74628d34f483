#include "ui/ScreenOrder.h"
#include <QAccessible>
#include <QQuickWindow>
#include <algorithm>

namespace vesko {

void ScreenOrder::setTarget(QQuickItem* target) {
    if (target == target_) return;
    target_ = target;
    Q_EMIT targetChanged();
}

void ScreenOrder::apply() {
    if (!target_) return;
    const auto isAbove = [](const QQuickItem* a, const QQuickItem* b) { return a->y() < b->y(); };
    QList<QQuickItem*> children = target_->childItems();
    if (std::is_sorted(children.cbegin(), children.cend(), isAbove)) return;
    std::stable_sort(children.begin(), children.end(), isAbove);
    for (qsizetype i = 1; i < children.size(); ++i) children[i]->stackAfter(children[i - 1]);
    QAccessibleEvent event(target_, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&event);
}

void ScreenOrder::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        disconnect(frames_);
        if (data.window) {
            frames_ = connect(data.window, &QQuickWindow::afterAnimating, this, &ScreenOrder::apply);
        }
    }
    QQuickItem::itemChange(change, data);
}

} // namespace vesko
