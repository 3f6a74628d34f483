#include "Fuzzing.h"
#include "probes/DockerListings.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::vector<std::string> names = parseDockerVolumes(text);
    for (const std::string& name : names) {
        require(!name.empty() && !name.contains('\n'), "a name is a part of one line");
        require(name.find_first_of(" \t") != 0 && name.find_last_of(" \t") != name.size() - 1,
                "a name has no blanks around it");
        require(text.contains(name), "a name stands in the listing");
    }
    require(parseDockerVolumes("a\n" + std::string(text)).size() == names.size() + 1,
            "every line is read by itself");
    return 0;
}
