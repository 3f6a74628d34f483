#pragma once
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vesko {

/// The root of a QML type for something that is pressed or turned: a focus scope of which assistive tools
/// also hear whether it is enabled, which the toolkit's version 6.4 leaves out. Role, name and states are
/// those that its QML file gives to `Accessible`; what is inside it is not told of. Main thread.
class Control : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit Control(QQuickItem* parent = nullptr);

private:
    void tellEnabled();
};

} // namespace vesko
