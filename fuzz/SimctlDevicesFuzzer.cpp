#include "Fuzzing.h"
#include "base/Paths.h"
#include "probes/SimulatorListings.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::optional<std::vector<SimctlDevice>> devices = parseSimctlDevices(text);
    if (!devices) return 0;
    require(isUtf8(text), "a listing is UTF-8");
    for (const SimctlDevice& device : *devices)
        require(isUtf8(device.udid) && isUtf8(device.dataPath.value_or("")), "texts of a listing are UTF-8");
    require(!parseSimctlDevices(text.substr(0, text.rfind('}'))), "half a document is none");
    require(!parseSimctlDevices(std::string(text) + "]"), "what follows a document spoils it");
    return 0;
}
