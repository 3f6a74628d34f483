#pragma once

class QQmlEngine;

namespace vesko {

/// Makes the QML module "Vesko.Window" known to an engine. To be called before anything of it is loaded.
void useWindowModule(QQmlEngine& engine);

} // namespace vesko
