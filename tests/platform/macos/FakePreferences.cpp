#include "platform/macos/FakePreferences.h"

#include "platform/macos/FakeCoreFoundation.h"
#include <cstdlib>
#include <memory>

namespace vesko::testing {
namespace {

std::unique_ptr<FakePreferences>& current() {
    static auto fake = std::make_unique<FakePreferences>();
    return fake;
}

void mustBeOwn(CFStringRef application) {
    if (application != kCFPreferencesCurrentApplication) std::abort();
}

} // namespace

FakePreferences& fakePreferences() { return *current(); }
void resetFakePreferences() { current() = std::make_unique<FakePreferences>(); }

FakePreferences::~FakePreferences() {
    replace(values_, {});
    replace(kept_, {});
}

void FakePreferences::replace(Values& values, const Values& by) {
    for (const auto& [key, value] : by) CFRetain(value);
    for (const auto& [key, value] : values) CFRelease(value);
    values = by;
}

void FakePreferences::put(const std::string& key, CFTypeRef value) {
    set(key, value);
    CFRelease(value);
}

void FakePreferences::startAgain() { replace(values_, kept_); }

CFPropertyListRef FakePreferences::copy(const std::string& key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : CFRetain(found->second);
}

void FakePreferences::set(const std::string& key, CFPropertyListRef value) {
    Values changed = values_;
    changed.erase(key);
    if (value) changed.emplace(key, value);
    replace(values_, changed);
}

bool FakePreferences::synchronize() {
    if (refusesToSynchronize) return false;
    replace(kept_, values_);
    return true;
}

} // namespace vesko::testing

using namespace vesko::testing;

extern "C" {

const CFStringRef kCFPreferencesCurrentApplication = makeText("this program");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
    mustBeOwn(application);
    return fakePreferences().copy(bytesOf(key));
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
    mustBeOwn(application);
    fakePreferences().calls.push_back((value ? "set " : "remove ") + bytesOf(key));
    fakePreferences().set(bytesOf(key), value);
}

Boolean CFPreferencesAppSynchronize(CFStringRef application) {
    mustBeOwn(application);
    fakePreferences().calls.emplace_back("synchronize");
    return fakePreferences().synchronize();
}
}
