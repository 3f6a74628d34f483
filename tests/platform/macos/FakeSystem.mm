#include "platform/macos/FakeSystem.h"

#include "platform/macos/FakeActivities.h"
#include "platform/macos/FakeBundle.h"
#include "platform/macos/FakeNotifications.h"
#include "platform/macos/FakeObjects.h"
#include "platform/macos/FakeUpdaterFramework.h"

namespace vesko::testing {
namespace {

void resetAll() {
    resetFakeActivities();
    resetFakeNotifications();
    resetFakeUpdaterFramework();
    resetFakeBundle();
}

} // namespace

FakeSystem::FakeSystem() { resetAll(); }
FakeSystem::~FakeSystem() {
    resetAll();
    disposeOfObjects();
}

} // namespace vesko::testing
