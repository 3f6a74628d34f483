#include "orchestration/ConsultantBreakdown.h"

#include "base/Paths.h"
#include "orchestration/CleanupFixture.h"
#include <algorithm>
#include <rapidcheck/gtest.h>

namespace vesko::testing {
namespace {

/// Category by category with a comparison of every path with every other: slow and plain.
std::vector<std::tuple<std::string, std::int64_t, std::int64_t, Safety>>
plainSummaries(const std::vector<CleanupGroup>& groups) {
    std::vector<std::string> seen;
    std::vector<std::tuple<std::string, std::int64_t, std::int64_t, Safety>> summaries;
    for (const ConsultantCategory& category : consultantCategories()) {
        std::int64_t bytes = 0;
        std::int64_t count = 0;
        Safety safety = Safety::seguro;
        for (const std::string& id : category.probeIDs) {
            for (const CleanupGroup& each : groups) {
                if (each.id != id) continue;
                for (const ScannableItem& one : each.items) {
                    const std::string path = standardizedPath(one.url.path());
                    const bool overlaps = std::any_of(seen.begin(), seen.end(), [&](const std::string& s) {
                        return path == s || path.starts_with(s + "/") || s.starts_with(path + "/");
                    });
                    if (overlaps) continue;
                    seen.push_back(path);
                    bytes += one.size;
                    count += 1;
                    safety = std::max(safety, each.baselineSafety);
                }
            }
        }
        if (bytes >= 1) summaries.emplace_back(category.id, bytes, count, safety);
    }
    std::stable_sort(summaries.begin(), summaries.end(),
                     [](const auto& a, const auto& b) { return std::get<1>(a) > std::get<1>(b); });
    return summaries;
}

RC_GTEST_PROP(ConsultantBreakdownProperty, CountsAsThePlainComparisonDoes, ()) {
    const std::vector<std::string> ids{"trash",      "logs.stale",        "cache.npm",   "discover.caches",
                                       "backup.ios", "project.artifacts", "apps.unused", "unknown"};
    std::vector<CleanupGroup> groups;
    for (const std::string& id : ids) {
        if (*rc::gen::arbitrary<bool>()) continue;
        std::vector<ScannableItem> items;
        for (int left = *rc::gen::inRange(0, 6); left > 0; --left) {
            std::string path;
            for (int depth = *rc::gen::inRange(1, 4); depth > 0; --depth)
                path += *rc::gen::element<std::string>("/a", "/b", "/ab", "/./c", "/d/..");
            items.push_back(item(path, *rc::gen::inRange(0, 40)));
        }
        groups.push_back(group(id, items, *rc::gen::element(Safety::seguro, Safety::revisar, Safety::risco)));
    }
    const std::int64_t used = *rc::gen::inRange(0, 500);
    const ConsultantBreakdown breakdown = makeConsultantBreakdown(groups, used);
    std::vector<std::tuple<std::string, std::int64_t, std::int64_t, Safety>> summaries;
    std::int64_t explained = 0;
    for (const ConsultantCategorySummary& summary : breakdown.categories) {
        summaries.emplace_back(summary.category.id, summary.totalBytes, summary.itemCount,
                               summary.aggregatedSafety);
        explained += summary.totalBytes;
    }
    RC_ASSERT(summaries == plainSummaries(groups));
    RC_ASSERT(breakdown.explainedBytes == explained);
    RC_ASSERT(breakdown.unexplainedBytes == std::max<std::int64_t>(0, used - explained));
}

} // namespace
} // namespace vesko::testing
