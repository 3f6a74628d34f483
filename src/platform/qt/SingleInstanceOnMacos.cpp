#include "platform/qt/SingleInstance.h"

namespace vesko {

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

bool SingleInstance::claim() { return true; }

bool SingleInstance::claimOn(QDBusConnection) { return true; }

} // namespace vesko
