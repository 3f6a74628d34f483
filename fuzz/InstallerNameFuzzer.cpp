#include "Fuzzing.h"
#include "enrichment/DisplayName.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::string name = cleanInstallerName(text);
    require(name.size() <= text.size(), "nothing is added");
    require(name.find_first_of("_-") == std::string::npos, "dashes part words");
    require(!name.contains("  ") && !name.starts_with(' ') && !name.ends_with(' '), "one blank parts words");
    require(cleanInstallerName(name) == name, "a clean name stays as it is");
    require(name.empty() == (text.find_first_not_of("_- ") == std::string_view::npos), "any word leaves one");
    return 0;
}
