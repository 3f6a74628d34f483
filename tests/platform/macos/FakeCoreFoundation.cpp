#include "platform/macos/FakeCoreFoundation.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unicode/utf8.h>

namespace vesko::testing {
namespace {

enum Kind : CFTypeID { aText = 7, aList = 19, aNumber = 22, aLocation = 29 };

struct Object {
    Kind kind = aText;
    std::atomic<int> holders{1};
    std::string bytes;
    std::int64_t number = 0;
    std::vector<const Object*> members;
};

std::atomic<std::size_t> live{0};

/// A wrong object is a mistake that the real library would crash on.
const Object& objectOf(CFTypeRef reference, Kind kind) {
    const auto* object = static_cast<const Object*>(reference);
    if (!object || object->kind != kind) {
        std::fputs("an object of another kind was given to Core Foundation\n", stderr);
        std::abort();
    }
    return *object;
}

Object* make(Kind kind) {
    ++live;
    auto* object = new Object;
    object->kind = kind;
    return object;
}

template <class Reference> Reference as(const Object* object) { return reinterpret_cast<Reference>(object); }

bool isUtf8(std::string_view bytes) {
    const auto size = static_cast<int32_t>(bytes.size());
    for (int32_t at = 0; at < size;) {
        UChar32 point = 0;
        U8_NEXT(bytes.data(), at, size, point);
        if (point < 0) return false;
    }
    return true;
}

Boolean copied(const std::string& bytes, char* buffer, CFIndex size) {
    if (static_cast<CFIndex>(bytes.size()) >= size) return 0;
    std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
    return 1;
}

} // namespace

std::size_t liveObjects() { return live; }

CFStringRef makeText(std::string_view bytes) {
    Object* object = make(aText);
    object->bytes = bytes;
    return as<CFStringRef>(object);
}

CFNumberRef makeNumber(std::int64_t value) {
    Object* object = make(aNumber);
    object->number = value;
    return as<CFNumberRef>(object);
}

CFArrayRef makeList(const std::vector<std::string>& texts) {
    Object* object = make(aList);
    for (const std::string& text : texts)
        object->members.push_back(static_cast<const Object*>(static_cast<CFTypeRef>(makeText(text))));
    return as<CFArrayRef>(object);
}

std::string bytesOf(CFStringRef text) { return objectOf(text, aText).bytes; }

std::vector<std::string> textsOf(CFArrayRef list) {
    std::vector<std::string> texts;
    for (const Object* member : objectOf(list, aList).members) texts.push_back(objectOf(member, aText).bytes);
    return texts;
}

FakeVolume& fakeVolume() {
    static FakeVolume fake;
    return fake;
}

} // namespace vesko::testing

using namespace vesko::testing;

extern "C" {

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFStringRef kCFURLVolumeTotalCapacityKey = makeText("total");
const CFStringRef kCFURLVolumeAvailableCapacityKey = makeText("available");
const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey = makeText("important");
const CFStringRef kCFURLVolumeAvailableCapacityForOpportunisticUsageKey = makeText("opportunistic");
const CFStringRef kCFURLVolumeLocalizedNameKey = makeText("name");

CFTypeRef CFRetain(CFTypeRef reference) {
    ++const_cast<Object*>(static_cast<const Object*>(reference))->holders;
    return reference;
}

void CFRelease(CFTypeRef reference) {
    auto* object = const_cast<Object*>(static_cast<const Object*>(reference));
    if (--object->holders > 0) return;
    for (const Object* member : object->members) CFRelease(member);
    --live;
    delete object;
}

CFTypeID CFGetTypeID(CFTypeRef reference) { return static_cast<const Object*>(reference)->kind; }
CFTypeID CFStringGetTypeID(void) { return aText; }
CFTypeID CFArrayGetTypeID(void) { return aList; }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex size,
                                    CFStringEncoding encoding, Boolean) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    return encoding == kCFStringEncodingUTF8 && isUtf8(text) ? makeText(text) : nullptr;
}

CFIndex CFStringGetLength(CFStringRef text) {
    return static_cast<CFIndex>(objectOf(text, aText).bytes.size());
}
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding) { return length * 3; }
CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef text) {
    return CFStringGetLength(text) * 3 + 1;
}

Boolean CFStringGetCString(CFStringRef text, char* buffer, CFIndex size, CFStringEncoding) {
    return copied(objectOf(text, aText).bytes, buffer, size);
}

Boolean CFStringGetFileSystemRepresentation(CFStringRef text, char* buffer, CFIndex size) {
    return copied(objectOf(text, aText).bytes, buffer, size);
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callbacks) {
    Object* object = make(aList);
    if (callbacks != &kCFTypeArrayCallBacks) std::abort(); // members would not be held
    for (CFIndex i = 0; i < count; ++i)
        object->members.push_back(static_cast<const Object*>(CFRetain(values[i])));
    return as<CFArrayRef>(object);
}

CFIndex CFArrayGetCount(CFArrayRef list) {
    return static_cast<CFIndex>(objectOf(list, aList).members.size());
}
const void* CFArrayGetValueAtIndex(CFArrayRef list, CFIndex index) {
    return objectOf(list, aList).members.at(static_cast<std::size_t>(index));
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* bytes, CFIndex size, Boolean) {
    if (size == 0) return nullptr;
    Object* object = make(aLocation);
    object->bytes.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    return as<CFURLRef>(object);
}

Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* into, CFErrorRef*) {
    FakeVolume& fake = fakeVolume();
    fake.askedPath = objectOf(url, aLocation).bytes;
    CFTypeRef value = nullptr;
    if (const auto number = fake.numbers.find(key); number != fake.numbers.end())
        value = makeNumber(number->second);
    else if (const auto text = fake.texts.find(key); text != fake.texts.end())
        value = makeText(text->second);
    else if (!fake.absent.contains(key))
        return 0;
    std::memcpy(into, &value, sizeof value);
    return 1;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* into) {
    if (type != kCFNumberSInt64Type) std::abort();
    std::memcpy(into, &objectOf(number, aNumber).number, sizeof(std::int64_t));
    return 1;
}
}
