#include "base/Paths.h"
#include "enrichment/DisplayName.h"
#include "support/Utf8.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

RC_GTEST_PROP(DisplayNameProperty, NoBytesUpsetARule, (const std::string& bytes)) {
    (void)looksOpaque(bytes);
    const std::string cleaned = cleanInstallerName(bytes);
    RC_ASSERT(cleaned.size() <= bytes.size());
    (void)cleanName(bytes);
    ScannableItem item;
    item.url = FileURL("/" + bytes);
    RC_ASSERT(isUtf8(displayName(item, std::nullopt)));
}

RC_GTEST_PROP(DisplayNameProperty, AnInstallersNameIsCleanAfterOneCleaning,
              (const std::vector<std::uint32_t>& points)) {
    const std::string once = cleanInstallerName(testing::utf8From(points));
    RC_ASSERT(cleanInstallerName(once) == once);
    RC_ASSERT(!once.contains('_') && !once.contains("  "));
}

RC_GTEST_PROP(DisplayNameProperty, LongHexadecimalNamesAreOpaque, (const std::vector<std::uint8_t>& values)) {
    std::string name = "0123456789abcdefABCDEF00";
    for (const std::uint8_t value : values) name += "0123456789abcdefABCDEF"[value % 22];
    RC_ASSERT(looksOpaque(name));
}

} // namespace
} // namespace vesko
