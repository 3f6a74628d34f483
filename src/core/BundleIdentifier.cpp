#include "core/BundleIdentifier.h"

#include "base/FileSystem.h"
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <plist/plist.h>

namespace vesko {
namespace {

/// No description of an application comes near this; a file beyond it is not one.
constexpr std::uint64_t longestPropertyList = 16U << 20;

struct FreePropertyList {
    void operator()(void* list) const noexcept { plist_free(list); }
};
using PropertyList = std::unique_ptr<void, FreePropertyList>;

PropertyList parsed(std::string_view bytes) {
    plist_t list = nullptr;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (bytes.starts_with("bplist")) {
        plist_from_bin(bytes.data(), length, &list);
    } else {
        plist_from_xml(bytes.data(), length, &list);
    }
    return PropertyList(list);
}

} // namespace

std::optional<std::string> bundleIdentifier(const FileURL& bundle) {
    const std::optional<std::string> bytes =
        readFile(bundle.appending("Contents/Info.plist"), longestPropertyList);
    if (!bytes) return std::nullopt;
    return bundleIdentifierFromPropertyList(*bytes);
}

std::optional<std::string> bundleIdentifierFromPropertyList(std::string_view bytes) {
    const PropertyList list = parsed(bytes);
    if (!list || plist_get_node_type(list.get()) != PLIST_DICT) return std::nullopt;
    const plist_t value = plist_dict_get_item(list.get(), "CFBundleIdentifier");
    if (!value || plist_get_node_type(value) != PLIST_STRING) return std::nullopt;
    char* text = nullptr;
    plist_get_string_val(value, &text);
    if (!text) return std::nullopt;
    std::string identifier(text);
    std::free(text);
    return identifier;
}

} // namespace vesko
