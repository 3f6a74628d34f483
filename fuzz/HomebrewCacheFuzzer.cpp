#include "Fuzzing.h"
#include "probes/HomebrewCacheAnswer.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::optional<FileURL> folder = parseHomebrewCache(text);
    if (!folder) return 0;
    require(folder->path().starts_with('/'), "a folder is told from the root");
    require(folder->path() == "/" || !folder->path().ends_with('/'), "a folder has one way to be written");
    require(text.contains(folder->path()), "a folder is what was printed");
    require(parseHomebrewCache("\n " + folder->path() + "/\n").has_value(), "a folder can be named again");
    return 0;
}
