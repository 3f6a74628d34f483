#include "platform/macos/FakeObjects.h"

#include "base/Paths.h"
#include <map>
#include <mutex>

// Of the runtime of GCC.
extern "C" {
typedef void (*PlainMethod)(id self, SEL selector);
id class_createInstance(Class type, size_t extraBytes);
id object_dispose(id object);
BOOL class_respondsToSelector(Class type, SEL selector);
SEL sel_registerName(const char* name);
PlainMethod objc_msg_lookup(id receiver, SEL selector);
}

namespace {

std::mutex mutex;
std::map<id, std::map<std::string, std::any>>& objects() {
    static std::map<id, std::map<std::string, std::any>> all;
    return all;
}

/// It stands first in each object.
Class classOf(id object) { return *(Class*)(void*)object; }

/// Runs what the compiler made of the C++ values of an object, where it has some.
void runOnValues(id object, const char* which) {
    SEL selector = sel_registerName(which);
    if (class_respondsToSelector(classOf(object), selector))
        objc_msg_lookup(object, selector)(object, selector);
}

/// What the compiler makes of @"...".
struct ConstantText {
    Class isa;
    const char* bytes;
    unsigned length;
};

} // namespace

namespace vesko::testing {

std::any& valueOf(id object, const char* name) {
    const std::lock_guard lock(mutex);
    return objects()[object][name];
}

std::string bytesOf(NSString* text) { return text == nil ? std::string() : std::string(text.UTF8String); }
NSString* textOf(const std::string& bytes) { return [NSString stringWithUTF8String:bytes.c_str()]; }

void disposeOfObjects() {
    std::map<id, std::map<std::string, std::any>> ended;
    {
        const std::lock_guard lock(mutex);
        ended.swap(objects());
    }
    for (const auto& [object, values] : ended) runOnValues(object, ".cxx_destruct");
    for (const auto& [object, values] : ended) object_dispose(object);
}

} // namespace vesko::testing

using vesko::testing::valueOf;

@implementation NSObject
+ (instancetype)alloc {
    id object = class_createInstance(self, 0);
    valueOf(object, "");
    runOnValues(object, ".cxx_construct");
    return object;
}
+ (instancetype)new {
    return [[self alloc] init];
}
+ (BOOL)instancesRespondToSelector:(SEL)selector {
    return class_respondsToSelector(self, selector);
}
- (instancetype)init {
    return self;
}
// Only what tells of its changes has more than these.
- (void)addObserver:(NSObject*)observer
         forKeyPath:(NSString*)keyPath
            options:(NSUInteger)options
            context:(void*)context {
}
- (void)removeObserver:(NSObject*)observer forKeyPath:(NSString*)keyPath {
}
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSString*, id>*)change
                       context:(void*)context {
}
@end

@implementation NSString
+ (instancetype)stringWithUTF8String:(const char*)s {
    if (!vesko::isUtf8(s)) return nil;
    NSString* made = [NSString new];
    valueOf<std::string>(made, "bytes") = s;
    return made;
}
- (NSString*)stringByAppendingPathComponent:(NSString*)component {
    return vesko::testing::textOf(std::string(self.UTF8String) + "/" + component.UTF8String);
}
- (const char*)UTF8String {
    return valueOf<std::string>(self, "bytes").c_str();
}
@end

@implementation NSConstantString
- (const char*)UTF8String {
    return ((const ConstantText*)(const void*)self)->bytes;
}
@end

@implementation NSError
- (NSString*)localizedDescription {
    return nil;
}
@end
