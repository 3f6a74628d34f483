#pragma once
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vesko {

/// Keeps the children of `target` in the order in which they lie on the screen, from above. A list makes its
/// rows in whatever order they come into view, while assistive tools and the Tab key go by the order of the
/// children. It looks once before each frame, when everything has its place. Main thread.
class ScreenOrder : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem* target READ target WRITE setTarget NOTIFY targetChanged)

public:
    explicit ScreenOrder(QQuickItem* parent = nullptr) : QQuickItem(parent) {}

    QQuickItem* target() const { return target_; }
    void setTarget(QQuickItem* target);

    /// Puts the children in order now.
    void apply();

Q_SIGNALS:
    void targetChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    QPointer<QQuickItem> target_;
    QMetaObject::Connection frames_;
};

} // namespace vesko
