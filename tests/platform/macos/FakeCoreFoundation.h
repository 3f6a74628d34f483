#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vesko::testing {

/// Core Foundation's texts, numbers, lists and locations, as far as the adapters ask for them.
std::size_t liveObjects(); ///< made and not released: what a test leaves behind is a leak
CFStringRef makeText(std::string_view bytes);
CFNumberRef makeNumber(std::int64_t value);
CFArrayRef makeList(const std::vector<std::string>& texts);
std::string bytesOf(CFStringRef text);
std::vector<std::string> textsOf(CFArrayRef list);

/// What the system says of a volume, by resource key; each answer is made anew. A key that is not here fails.
struct FakeVolume {
    std::map<CFStringRef, std::int64_t> numbers;
    std::map<CFStringRef, std::string> texts;
    std::map<CFStringRef, bool> absent; ///< answered with success and nothing
    std::string askedPath;
};
FakeVolume& fakeVolume();

} // namespace vesko::testing
