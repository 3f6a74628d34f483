#include "enrichment/ReviewPromotionHeuristics.h"

#include "base/Paths.h"
#include "base/Text.h"
#include "core/ProbeCatalog.h"
#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

namespace vesko::ReviewPromotionHeuristics {
namespace {

using Fragments = std::span<const std::string_view>;

struct Row {
    std::string_view groupID;
    Fragments fragments; ///< in lower case
};

template <std::size_t count> using Pieces = std::array<std::string_view, count>;

constexpr Pieces<1> logs{"/library/logs/"};
constexpr Pieces<1> trash{"/.trash/"};
/// Without a leading "/", so that they hold below every prefix that the tool is installed at.
constexpr Pieces<3> homebrew{"/library/caches/homebrew", "var/homebrew/cache", "var/homebrew/caches"};
constexpr Pieces<1> swiftpm{"/library/caches/org.swift.swiftpm"};
constexpr Pieces<1> jetbrains{"/library/caches/jetbrains"};
constexpr Pieces<1> cocoapods{"/library/caches/cocoapods"};
constexpr Pieces<1> maven{"/.m2/repository"};
constexpr Pieces<2> npm{"/.npm/_cacache", "/.npm/"};
constexpr Pieces<2> pnpm{"/library/pnpm/", ".pnpm-store"};
constexpr Pieces<1> yarn{"/library/caches/yarn"};
constexpr Pieces<1> pip{"/library/caches/pip"};
constexpr Pieces<2> poetry{"/.cache/pypoetry", "/library/caches/pypoetry"};
constexpr Pieces<1> gradle{"/.gradle/caches"};
constexpr Pieces<2> cargo{"/.cargo/registry", "/.cargo/git"};
constexpr Pieces<2> go{"/library/caches/go-build", "/go/pkg/mod"};
constexpr Pieces<2> uv{"/.cache/uv", "/.local/share/uv/cache"};
constexpr Pieces<1> bun{"/.bun/install/cache"};
constexpr Pieces<1> nuget{"/.nuget/packages"};

/// The order decides where two rows have a piece of one path.
constexpr std::array<Row, 18> rows{{
    {"logs.stale", logs},
    {"trash", trash},
    {"cache.homebrew", homebrew},
    {"cache.swiftpm", swiftpm},
    {"cache.jetbrains", jetbrains},
    {"cache.cocoapods", cocoapods},
    {"cache.maven", maven},
    {"cache.npm", npm},
    {"cache.pnpm", pnpm},
    {"cache.yarn", yarn},
    {"cache.pip", pip},
    {"cache.poetry", poetry},
    {"cache.gradle", gradle},
    {"cache.cargo", cargo},
    {"cache.go", go},
    {"cache.uv", uv},
    {"cache.bun", bun},
    {"cache.nuget", nuget},
}};

} // namespace

std::optional<std::string_view> matchGroupID(std::string_view path) {
    const std::string folded = lowercased(standardizedPath(path));
    for (const Row& row : rows)
        if (std::ranges::any_of(row.fragments,
                                [&](std::string_view piece) { return folded.contains(piece); }))
            return row.groupID;
    return std::nullopt;
}

Promotions promote(const std::vector<PendingReviewItem>& items) {
    const MetadataByID& catalog = probeMetadataByID();
    Promotions made;
    for (const PendingReviewItem& item : items) {
        const std::optional<std::string_view> groupID = matchGroupID(item.path);
        const auto target = groupID ? catalog.find(*groupID) : catalog.end();
        if (target == catalog.end())
            made.unplaced.push_back(item);
        else
            made.patches.push_back(moveTo(target->second, item));
    }
    return made;
}

ReviewPatch moveTo(const GroupMetadata& target, const PendingReviewItem& item) {
    if (item.currentGroupID && *item.currentGroupID != target.id)
        return ReviewPatch::reclassify(movedItem(item), *item.currentGroupID, target);
    return ReviewPatch::promote(movedItem(item), target);
}

ScannableItem movedItem(const PendingReviewItem& item) {
    ScannableItem moved;
    moved.url = item.url;
    moved.size = item.size;
    moved.isDirectory = item.isDirectory;
    moved.enrichmentKey = EnrichmentKey::forURL(item.url);
    return moved;
}

} // namespace vesko::ReviewPromotionHeuristics
