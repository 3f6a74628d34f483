#include "Fuzzing.h"
#include "enrichment/DisplayName.h"
#include <string>

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    const bool isOpaque = looksOpaque(text);
    require(!isOpaque || text.size() >= 20, "a short name says something");
    std::string swapped(text);
    for (char& character : swapped)
        if ((character >= 'A' && character <= 'F') || (character >= 'a' && character <= 'f'))
            character ^= 0x20;
    require(looksOpaque(swapped) == isOpaque, "the case of digits plays no part");
    return 0;
}
