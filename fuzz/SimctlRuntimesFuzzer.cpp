#include "Fuzzing.h"
#include "base/Paths.h"
#include "probes/SimulatorListings.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::optional<std::unordered_set<std::string>> paths = parseSimctlRuntimes(text);
    if (!paths) return 0;
    require(isUtf8(text), "a listing is UTF-8");
    for (const std::string& path : *paths) require(isUtf8(path), "texts of a listing are UTF-8");
    require(!parseSimctlRuntimes(text.substr(0, text.rfind('}'))), "half a document is none");
    require(!parseSimctlRuntimes(std::string(text) + "]"), "what follows a document spoils it");
    return 0;
}
