#include "DefaultsFile.h"
#include "Fuzzing.h"
#include "base/Json.h"

using namespace vesko;
using fuzzing::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    if (const auto data = dataFromJson(text))
        require(dataFromJson(dataJson(*data)) == data, "data comes back as it was");
    auto file = DefaultsFile::parse(text);
    const auto document = JsonDocument::parse(text);
    require(file.has_value() == (document && document->root().isObject()), "every object is a file");
    if (!file) return 0;
    for (const JsonMember member : document->root().members()) {
        const auto value = file->value(member.key);
        require(value && JsonDocument::parse(*value), "a value is one piece of JSON");
    }
    const auto again = DefaultsFile::parse(file->text());
    require(again && again->text() == file->text(), "a file that was written comes back as it was");
    file->set("vesko.fuzz", "true");
    const auto changed = DefaultsFile::parse(file->text());
    require(changed && changed->value("vesko.fuzz") == "true", "what was set is there");
    return 0;
}
