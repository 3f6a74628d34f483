#include "ui/WindowModule.h"
#include "ui/ControlAccessible.h"
#include <QQmlEngine>

// Written by the build; named here so that a static library keeps it.
void qml_register_types_Vesko_Window();

namespace vesko {

void useWindowModule(QQmlEngine& engine) {
    qml_register_types_Vesko_Window();
    ControlAccessible::install();
    engine.addImportPath(QStringLiteral("qrc:/qml"));
}

} // namespace vesko
