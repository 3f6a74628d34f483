#include "probes/InstallerKey.h"

#include "base/Text.h"
#include "enrichment/DisplayName.h"

namespace vesko {

std::string installerKey(std::string_view name) {
    constexpr std::string_view image = ".dmg";
    std::string_view stem = name;
    // Only the ending is asked in lower case: the lower case of a whole name may be longer than the name.
    if (lowercased(name).ends_with(image)) stem.remove_suffix(image.size());
    const std::string product = lowercased(cleanInstallerName(stem));
    return "installer:" + (product.empty() ? lowercased(stem) : product);
}

} // namespace vesko
