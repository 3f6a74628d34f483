#include "Fuzzing.h"
#include "probes/DockerSize.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const std::optional<std::int64_t> amount = parseDockerSize(text);
    const std::string padded = " \t" + std::string(text) + "\r\n";
    require(parseDockerSize(padded) == amount, "white space around an amount does not count");
    if (!amount) return 0;
    const std::size_t unit = text.find_last_of("Bb");
    require(unit != std::string_view::npos, "an amount has a unit");
    require(*amount >= 0 || text.contains('-'), "an amount below nothing has a minus sign");
    return 0;
}
