#include "Fuzzing.h"
#include "base/Paths.h"
#include "core/DiskUsage.h"
#include <algorithm>
#include <string>

namespace {

std::size_t digitsInARow(std::string_view text) {
    std::size_t most = 0;
    std::size_t row = 0;
    for (const char character : text) {
        row = character >= '0' && character <= '9' ? row + 1 : 0;
        most = std::max(most, row);
    }
    return most;
}

} // namespace

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    // A figure beyond 63 bits stops the process on purpose.
    if (digitsInARow(text) > 15) return 0;
    const std::int64_t figure = bytesFromDuOutput(text);
    require(figure % 1024 == 0, "a figure is whole KiB");
    require(figure == 0 || isUtf8(text), "a figure comes from UTF-8");
    require(figure == 0 || text.find_first_of("123456789") != std::string_view::npos, "a figure has digits");
    require(bytesFromDuOutput("\n" + std::string(text)) == figure, "empty lines in front do not count");
    if (isUtf8(text)) require(bytesFromDuOutput("7\t" + std::string(text)) == 7168, "the first word counts");
    return 0;
}
