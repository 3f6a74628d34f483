#include "ui/WindowModule.h"
#include <QQmlEngine>

// Written by the build; named here so that a static library keeps it.
void qml_register_types_Vesko_Window();

namespace vesko {

void useWindowModule(QQmlEngine& engine) {
    qml_register_types_Vesko_Window();
    engine.addImportPath(QStringLiteral("qrc:/qml"));
}

} // namespace vesko
