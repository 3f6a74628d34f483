#pragma once
#include "ui/Control.h"
#include <QAccessibleActionInterface>
#include <QAccessibleObject>

namespace vesko {

/// What assistive tools are told of a Control, and how they act on it. One with the role of a slider has a
/// value: its file's `value`, `minimumValue`, `maximumValue` and `stepSize`, and `moveTo(value)` to ask for
/// another. Main thread.
class ControlAccessible : public QAccessibleObject,
                          public QAccessibleActionInterface,
                          public QAccessibleValueInterface {
public:
    explicit ControlAccessible(Control& control);

    /// To be called once: from then on the toolkit makes one of these for each Control.
    static void install();

    QWindow* window() const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* child) const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString& name) const override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    const QQuickItem& item() const;
    QObject* attached() const;
    QVariant told(const char* property) const;
};

} // namespace vesko
