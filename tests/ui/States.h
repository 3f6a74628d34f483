#pragma once
#include "ui/ScreenStage.h"
#include <QStringList>

namespace vesko::testing {

/// The names of the states that can be shown.
QStringList stateNames();
/// Brings a stage into a state; the window stands already, or not yet for the state "access".
void enterState(ScreenStage& stage, const QString& name);
/// The window that a state is about: that of the settings where it stands, else the main one.
QQuickWindow* shownWindow(const ScreenStage& stage);
/// The tree that assistive tools see of a window: one line an element, indented, with role, states and name.
/// What nobody shows is left out.
QString accessibleTree(QQuickWindow* window);

} // namespace vesko::testing
