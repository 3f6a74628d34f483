#include "Fuzzing.h"
#include "base/Text.h"
#include "probes/InstallerKey.h"
#include <algorithm>
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::string key = installerKey(text);
    require(key.starts_with("installer:"), "a key tells its form");
    require(installerKey(text) == key, "a name has one key");
    const bool isAscii = std::ranges::all_of(
        text, [](char character) { return static_cast<unsigned char>(character) < 0x80; });
    if (isAscii)
        require(lowercased(key) == key && installerKey(lowercased(text)) == key, "case plays no part");
    return 0;
}
