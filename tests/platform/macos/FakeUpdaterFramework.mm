#include "platform/macos/FakeUpdaterFramework.h"

#include "platform/macos/FakeBundle.h"
#include "platform/macos/FakeObjects.h"
#include <algorithm>
#include <utility>

namespace vesko::testing {
namespace {

FakeUpdaterFramework current;
std::vector<std::pair<std::string, NSObject*>> observers;

void tell(const std::string& key) {
    const auto told = observers;
    for (const auto& [observed, observer] : told)
        // One that was told before may have taken this one away.
        if (observed == key && std::ranges::count(observers, std::pair(observed, observer)) > 0)
            [observer observeValueForKeyPath:textOf(key) ofObject:nil change:nil context:nullptr];
}

void lay(const std::string& controller) {
    fakeBundle()
        .classes[fakeBundle().frameworks.value() + "/Sparkle.framework"]["SPUStandardUpdaterController"] =
        controller;
}

} // namespace

FakeUpdaterFramework& fakeUpdaterFramework() { return current; }
void resetFakeUpdaterFramework() {
    current = FakeUpdaterFramework();
    observers.clear();
}

void FakeUpdaterFramework::layIntoBundle() { lay("FakeUpdaterController"); }
void FakeUpdaterFramework::layStrangerIntoBundle() { lay("FakeStrangeController"); }

void FakeUpdaterFramework::endCheck() {
    canCheck = true;
    tell("canCheckForUpdates");
}

void FakeUpdaterFramework::switchTo(bool automatically) {
    checksAutomatically = automatically;
    tell("automaticallyChecksForUpdates");
}

std::vector<std::string> FakeUpdaterFramework::observedKeys() const {
    std::vector<std::string> keys;
    for (const auto& [key, observer] : observers) keys.push_back(key);
    return keys;
}

} // namespace vesko::testing

using namespace vesko::testing;

@interface FakeUpdater : NSObject
@end
@implementation FakeUpdater
- (BOOL)canCheckForUpdates {
    return fakeUpdaterFramework().canCheck ? YES : NO;
}
- (BOOL)automaticallyChecksForUpdates {
    return fakeUpdaterFramework().checksAutomatically ? YES : NO;
}
- (void)setAutomaticallyChecksForUpdates:(BOOL)automatically {
    fakeUpdaterFramework().switchTo(automatically != NO);
}
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSUInteger)options
            context:(void*)context {
    observers.emplace_back(bytesOf(keyPath), observer);
}
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath {
    if (std::erase(observers, std::pair(bytesOf(keyPath), observer)) == 0)
        ++fakeUpdaterFramework().wrongRemovals;
}
@end

@interface FakeUpdaterController : NSObject
@end
@implementation FakeUpdaterController
- (id)initWithStartingUpdater:(BOOL)startingUpdater
              updaterDelegate:(id)updaterDelegate
           userDriverDelegate:(id)userDriverDelegate {
    FakeUpdaterFramework& framework = fakeUpdaterFramework();
    ++framework.controllers;
    if (framework.makesNoController) return nil;
    framework.startsUpdater = startingUpdater != NO;
    framework.hasDelegates = updaterDelegate != nil || userDriverDelegate != nil;
    valueOf<NSObject*>(self, "updater") = [FakeUpdater new];
    return self;
}
- (NSObject*)updater {
    return valueOf<NSObject*>(self, "updater");
}
- (void)checkForUpdates:(id)sender {
    ++fakeUpdaterFramework().checks;
    fakeUpdaterFramework().canCheck = false;
    tell("canCheckForUpdates");
}
@end

@interface FakeStrangeController : NSObject
@end
@implementation FakeStrangeController
@end
