#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vesko::testing {

/// Core Foundation's objects, as far as the adapters ask for them. Whoever hands on an object that is gone,
/// none, or one of another kind ends the process, as on a Mac.
std::size_t liveObjects(); ///< made and not released: what a test leaves behind is a leak
/// Those that were retained and not released, too, constants included: a leak even of what stays.
std::size_t heldReferences();
CFStringRef makeText(std::string_view bytes);
CFStringRef makeTextOf(std::u16string_view units); ///< which may be halves of pairs
CFDictionaryRef makeTable();
CFNumberRef makeNumber(std::int64_t value);
CFArrayRef makeList(const std::vector<std::string>& texts);
std::string bytesOf(CFStringRef text);
std::vector<std::string> textsOf(CFArrayRef list);

/// What the system says of a volume, by resource key; each answer is made anew. A key that is not here fails,
/// and so does any of a place that is not there.
struct FakeVolume {
    std::map<CFStringRef, std::int64_t> numbers;
    std::map<CFStringRef, std::string> texts;
    std::map<CFStringRef, bool> absent; ///< answered with success and nothing
    std::string askedPath;
};
FakeVolume& fakeVolume();

} // namespace vesko::testing
