#include "platform/macos/FakeBundle.h"

#include "platform/macos/FakeObjects.h"

extern "C" Class objc_lookUpClass(const char* name);

namespace vesko::testing {
namespace {

FakeBundle current;

} // namespace

FakeBundle& fakeBundle() { return current; }
void resetFakeBundle() { current = FakeBundle(); }

} // namespace vesko::testing

using namespace vesko::testing;

@implementation NSBundle
+ (NSBundle*)mainBundle {
    return [NSBundle new];
}
+ (NSBundle*)bundleWithURL:(NSURL*)url {
    return nil;
}
+ (instancetype)bundleWithPath:(NSString*)path {
    fakeBundle().askedPaths.push_back(bytesOf(path));
    if (!fakeBundle().classes.contains(bytesOf(path))) return nil;
    NSBundle* made = [NSBundle new];
    valueOf<std::string>(made, "path") = bytesOf(path);
    return made;
}
- (Class)classNamed:(NSString*)name {
    const auto& classes = fakeBundle().classes[valueOf<std::string>(self, "path")];
    const auto found = classes.find(bytesOf(name));
    return found == classes.end() ? nil : objc_lookUpClass(found->second.c_str());
}
- (NSString*)bundleIdentifier {
    return fakeBundle().identifier ? textOf(*fakeBundle().identifier) : nil;
}
- (NSString*)privateFrameworksPath {
    return fakeBundle().frameworks ? textOf(*fakeBundle().frameworks) : nil;
}
@end
