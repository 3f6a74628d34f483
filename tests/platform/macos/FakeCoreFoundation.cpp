#include "platform/macos/FakeCoreFoundation.h"

#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <optional>
#include <set>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <variant>

namespace vesko::testing {
namespace {

enum Kind : CFTypeID {
    aText = 7,
    aTable = 18,
    aList = 19,
    someData = 20,
    aBoolean = 21,
    aNumber = 22,
    aLocation = 29
};

struct Object {
    Kind kind = aText;
    std::atomic<int> holders{1};
    std::string bytes;
    std::u16string units; ///< of a text; each byte is one where they are no UTF-8
    std::variant<std::int64_t, double> number;
    std::vector<const Object*> members;
};

std::atomic<std::size_t> live{0};
std::atomic<std::size_t> held{0};

struct Living {
    std::mutex mutex;
    std::set<const void*> objects;
};
/// Made with the first constant, hence before all that is made.
Living& living() {
    static Living all;
    return all;
}

/// The real library crashes on such a mistake.
[[noreturn]] void fail(const char* mistake) {
    std::fprintf(stderr, "%s was given to Core Foundation\n", mistake);
    std::abort();
}

Object& objectOf(CFTypeRef reference) {
    {
        const std::lock_guard lock(living().mutex);
        if (!living().objects.contains(reference)) fail(reference ? "an object that is gone" : "no object");
    }
    return *const_cast<Object*>(static_cast<const Object*>(reference));
}

const Object& objectOf(CFTypeRef reference, Kind kind) {
    const Object& object = objectOf(reference);
    if (object.kind != kind) fail("an object of another kind");
    return object;
}

Object* make(Kind kind) {
    ++live;
    ++held;
    auto* object = new Object;
    object->kind = kind;
    const std::lock_guard lock(living().mutex);
    living().objects.insert(object);
    return object;
}

template <class Reference> Reference as(const Object* object) { return reinterpret_cast<Reference>(object); }

/// Nothing for bytes that are no UTF-8.
std::optional<std::u16string> unitsOf(std::string_view bytes) {
    std::u16string units;
    const auto size = static_cast<int32_t>(bytes.size());
    for (int32_t at = 0; at < size;) {
        UChar32 point = 0;
        U8_NEXT(bytes.data(), at, size, point);
        if (point < 0) return std::nullopt;
        if (U_IS_BMP(point)) {
            units += static_cast<char16_t>(point);
        } else {
            units += U16_LEAD(point);
            units += U16_TRAIL(point);
        }
    }
    return units;
}

/// The UTF-8 of as many units as have one.
std::string bytesOf(std::u16string_view units, CFIndex& converted) {
    std::string bytes;
    converted = 0;
    const auto size = static_cast<int32_t>(units.size());
    for (int32_t at = 0; at < size; converted = at) {
        UChar32 point = 0;
        U16_NEXT(units.data(), at, size, point);
        if (U_IS_SURROGATE(point)) break;
        char buffer[U8_MAX_LENGTH];
        int32_t length = 0;
        U8_APPEND_UNSAFE(buffer, length, point);
        bytes.append(buffer, static_cast<std::size_t>(length));
    }
    return bytes;
}

Boolean copied(const std::string& bytes, char* buffer, CFIndex size) {
    if (static_cast<CFIndex>(bytes.size()) >= size) return 0;
    std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
    return 1;
}

} // namespace

std::size_t liveObjects() { return live; }
std::size_t heldReferences() { return held; }

CFStringRef makeText(std::string_view bytes) {
    Object* object = make(aText);
    object->bytes = bytes;
    object->units = unitsOf(bytes).value_or(std::u16string(bytes.begin(), bytes.end()));
    return as<CFStringRef>(object);
}

CFStringRef makeTextOf(std::u16string_view units) {
    Object* object = make(aText);
    object->units = units;
    return as<CFStringRef>(object);
}

CFDictionaryRef makeTable() { return as<CFDictionaryRef>(make(aTable)); }

CFNumberRef makeNumber(std::int64_t value) {
    Object* object = make(aNumber);
    object->number = value;
    return as<CFNumberRef>(object);
}

CFBooleanRef makeBoolean(bool value) {
    Object* object = make(aBoolean);
    object->number = std::int64_t{value};
    return as<CFBooleanRef>(object);
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
const CFBooleanRef kCFBooleanTrue = makeBoolean(true);
const CFBooleanRef kCFBooleanFalse = makeBoolean(false);
const CFStringRef kCFURLVolumeTotalCapacityKey = makeText("total");
const CFStringRef kCFURLVolumeAvailableCapacityKey = makeText("available");
const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey = makeText("important");
const CFStringRef kCFURLVolumeAvailableCapacityForOpportunisticUsageKey = makeText("opportunistic");
const CFStringRef kCFURLVolumeLocalizedNameKey = makeText("name");

CFTypeRef CFRetain(CFTypeRef reference) {
    ++objectOf(reference).holders;
    ++held;
    return reference;
}

void CFRelease(CFTypeRef reference) {
    Object& object = objectOf(reference);
    --held;
    if (--object.holders > 0) return;
    if (reference == kCFBooleanTrue || reference == kCFBooleanFalse) fail("a constant for the last time");
    for (const Object* member : object.members) CFRelease(member);
    {
        const std::lock_guard lock(living().mutex);
        living().objects.erase(reference);
    }
    --live;
    delete &object;
}

CFTypeID CFGetTypeID(CFTypeRef reference) { return objectOf(reference).kind; }
CFTypeID CFStringGetTypeID(void) { return aText; }
CFTypeID CFArrayGetTypeID(void) { return aList; }
CFTypeID CFNumberGetTypeID(void) { return aNumber; }
CFTypeID CFBooleanGetTypeID(void) { return aBoolean; }
CFTypeID CFDataGetTypeID(void) { return someData; }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex size,
                                    CFStringEncoding encoding, Boolean) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    return encoding == kCFStringEncodingUTF8 && unitsOf(text) ? makeText(text) : nullptr;
}

CFIndex CFStringGetLength(CFStringRef text) {
    return static_cast<CFIndex>(objectOf(text, aText).units.size());
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

/// The number of units that went through; without a buffer only their length is told.
CFIndex CFStringGetBytes(CFStringRef text, CFRange range, CFStringEncoding encoding, UInt8 lossByte, Boolean,
                         UInt8* buffer, CFIndex size, CFIndex* used) {
    const std::u16string& units = objectOf(text, aText).units;
    const auto begin = static_cast<std::size_t>(range.location);
    const auto length = static_cast<std::size_t>(range.length);
    if (encoding != kCFStringEncodingUTF8 || lossByte != 0) std::abort();
    if (begin > units.size() || length > units.size() - begin) fail("a range beyond the text");
    CFIndex converted = 0;
    const std::string bytes = bytesOf(std::u16string_view(units).substr(begin, length), converted);
    if (used) *used = static_cast<CFIndex>(bytes.size());
    if (!buffer) return converted;
    if (static_cast<CFIndex>(bytes.size()) > size) std::abort(); // nobody asks for a part
    std::memcpy(buffer, bytes.data(), bytes.size());
    return converted;
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
    std::error_code ignored;
    if (!std::filesystem::exists(std::filesystem::symlink_status(fake.askedPath, ignored))) return 0;
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

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    Object* object = make(aNumber);
    if (type == kCFNumberSInt64Type)
        object->number = *static_cast<const std::int64_t*>(value);
    else
        object->number = *static_cast<const double*>(value);
    return as<CFNumberRef>(object);
}

/// What does not go through without loss comes near, and the answer is no.
Boolean CFNumberGetValue(CFNumberRef reference, CFNumberType type, void* into) {
    const auto number = objectOf(reference, aNumber).number;
    const auto* whole = std::get_if<std::int64_t>(&number);
    const double near = whole ? static_cast<double>(*whole) : std::get<double>(number);
    const bool isInReach = near >= -0x1p63 && near < 0x1p63;
    const std::int64_t cut = isInReach ? static_cast<std::int64_t>(near) : 0;
    if (type == kCFNumberFloat64Type) {
        std::memcpy(into, &near, sizeof near);
        return !whole || (isInReach && cut == *whole);
    }
    if (type != kCFNumberSInt64Type) std::abort();
    std::memcpy(into, whole ? whole : &cut, sizeof cut);
    return whole || (isInReach && std::trunc(near) == near);
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return std::get<std::int64_t>(objectOf(boolean, aBoolean).number) != 0;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex size) {
    Object* object = make(someData);
    object->bytes.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    return as<CFDataRef>(object);
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(objectOf(data, someData).bytes.size());
}
const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return reinterpret_cast<const UInt8*>(objectOf(data, someData).bytes.data());
}
}
