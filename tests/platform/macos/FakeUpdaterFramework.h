#pragma once
#include <string>
#include <vector>

namespace vesko::testing {

/// The updater framework in the program's bundle. It keeps the switch, and tells its observers of changes.
struct FakeUpdaterFramework {
    bool canCheck = true;
    bool checksAutomatically = true;
    bool makesNoController = false;

    int controllers = 0;
    bool startsUpdater = false;
    bool hasDelegates = false;
    int checks = 0;
    int wrongRemovals = 0; ///< of observers that were none: each of them would end the process

    /// Puts the framework into the bundle.
    void layIntoBundle();
    /// The same with a controller that knows none of the calls.
    void layStrangerIntoBundle();
    /// The check that is running ends.
    void endCheck();
    /// The person switches in a window of the framework.
    void switchTo(bool automatically);
    /// What is observed, once for each observer.
    std::vector<std::string> observedKeys() const;
};

FakeUpdaterFramework& fakeUpdaterFramework();
/// A fresh one for each test.
void resetFakeUpdaterFramework();

} // namespace vesko::testing
