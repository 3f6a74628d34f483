#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <memory>
#include <string_view>
#include <type_traits>

namespace vesko {

struct ReleaseObject {
    void operator()(const void* object) const noexcept { CFRelease(object); }
};
/// An object of Core Foundation that is released with this: what a call with "Create" or "Copy" in its name
/// gave (Memory Management Programming Guide for Core Foundation).
template <class Reference> using Owned = std::unique_ptr<std::remove_pointer_t<Reference>, ReleaseObject>;

/// Nothing for bytes that are no UTF-8.
inline Owned<CFStringRef> stringOf(std::string_view text) {
    return Owned<CFStringRef>(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

} // namespace vesko
