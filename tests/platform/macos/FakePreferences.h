#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <map>
#include <string>
#include <vector>

namespace vesko::testing {

/// The preferences of the program that runs, as Core Foundation keeps them: a change counts at once, and
/// lasts once it was synchronized. Anything but this program's own preferences ends the process.
class FakePreferences {
public:
    FakePreferences() = default;
    FakePreferences(const FakePreferences&) = delete;
    FakePreferences& operator=(const FakePreferences&) = delete;
    ~FakePreferences();

    std::vector<std::string> calls; ///< "set KEY", "remove KEY" and "synchronize", in order
    bool refusesToSynchronize = false;

    /// As if by another program; takes the reference over.
    void put(const std::string& key, CFTypeRef value);
    /// As if the process had been killed and started again: what was not synchronized is gone.
    void startAgain();

    /// What the calls of the library come to.
    CFPropertyListRef copy(const std::string& key) const;
    void set(const std::string& key, CFPropertyListRef value);
    bool synchronize();

private:
    using Values = std::map<std::string, CFPropertyListRef>;
    static void replace(Values& values, const Values& by);

    Values values_;
    Values kept_;
};

FakePreferences& fakePreferences();
/// Empty ones for each test.
void resetFakePreferences();

} // namespace vesko::testing
