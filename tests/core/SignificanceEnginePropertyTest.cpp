#include "core/PathOverlapIndex.h"
#include "core/SignificanceEngine.h"

#include "base/Paths.h"
#include "support/builders.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

/// The comparison with every member, as one would write it down.
bool lies(const std::string& path, const std::string& in) { return path.starts_with(in + "/"); }
bool isCovered(const std::string& path, const std::vector<std::string>& covered) {
    for (const std::string& member : covered)
        if (path == member || lies(path, member) || lies(member, path)) return true;
    return false;
}

/// Refers to the members.
PathOverlapIndex indexOf(const std::vector<std::string>& members) {
    PathOverlapIndex index;
    for (const std::string& member : members) index.insert(member);
    return index;
}

std::vector<CleanupGroup> plainRemoval(const std::vector<CleanupGroup>& groups) {
    std::vector<std::string> covered;
    for (const CleanupGroup& group : groups)
        if (!group.id.starts_with("discover."))
            for (const ScannableItem& item : group.items)
                covered.push_back(standardizedPath(item.url.path()));
    if (covered.empty()) return groups;
    std::vector<CleanupGroup> result;
    for (const CleanupGroup& group : groups) {
        if (!group.id.starts_with("discover.")) {
            result.push_back(group);
            continue;
        }
        std::vector<ScannableItem> kept;
        for (const ScannableItem& item : group.items)
            if (!isCovered(standardizedPath(item.url.path()), covered)) kept.push_back(item);
        if (kept.empty()) continue;
        CleanupGroup changed = group;
        changed.items = ItemList(kept);
        result.push_back(changed);
    }
    return result;
}

/// Short names out of few letters, so that paths often equal, contain or almost contain each other.
rc::Gen<std::string> anyPath() {
    const auto name =
        rc::gen::element<std::string>("a", "b", "ab", "a.b", "a b", ".", "..", "", "A", "\xff", "~");
    return rc::gen::map(rc::gen::resize(6, rc::gen::container<std::vector<std::string>>(name)),
                        [](const std::vector<std::string>& names) {
                            std::string path;
                            for (const std::string& each : names) path += "/" + each;
                            return path.empty() ? std::string("/") : path;
                        });
}

rc::Gen<std::vector<CleanupGroup>> anyGroups() {
    const auto id =
        rc::gen::element<std::string>("discover.caches", "discover.b", "cache.a", "trash", "project.pods");
    const auto item = rc::gen::map(rc::gen::pair(anyPath(), rc::gen::inRange<std::int64_t>(1, 5)),
                                   [](const auto& made) { return testing::item(made.first, made.second); });
    const auto group = rc::gen::map(rc::gen::pair(id, rc::gen::container<std::vector<ScannableItem>>(item)),
                                    [](const auto& made) { return testing::group(made.first, made.second); });
    return rc::gen::resize(8, rc::gen::container<std::vector<CleanupGroup>>(group));
}

RC_GTEST_PROP(PathOverlapIndexProperties, AnswersAsTheComparisonWithEveryMemberDoes, ()) {
    const auto members = *rc::gen::container<std::vector<std::string>>(anyPath());
    const auto path = *anyPath();
    const PathOverlapIndex index = indexOf(members);
    RC_ASSERT(index.empty() == members.empty());
    RC_ASSERT(index.overlaps(path) == isCovered(path, members));
    const bool held = std::any_of(members.begin(), members.end(),
                                  [&](const auto& m) { return m == path || lies(path, m); });
    RC_ASSERT(index.holds(path) == held);
}

RC_GTEST_PROP(SignificanceEngineProperties, RemovesWhatThePlainComparisonRemoves, ()) {
    const auto groups = *anyGroups();
    RC_ASSERT(removeCoveredDiscoveries(groups) == plainRemoval(groups));
}

RC_GTEST_PROP(SignificanceEngineProperties, AReportHoldsNoEmptyGroupAndIsSorted, ()) {
    const auto groups = *anyGroups();
    const ScanReport report = SignificanceEngine().evaluate(groups, {});
    std::int64_t total = 0;
    for (std::size_t i = 0; i < report.groups.size(); ++i) {
        RC_ASSERT(!report.groups[i].items.empty());
        if (i > 0) RC_ASSERT(groupBytes(report.groups[i - 1]) >= groupBytes(report.groups[i]));
        total += groupBytes(report.groups[i]);
    }
    RC_ASSERT(report.foundTotalBytes == total);
}

TEST(PathOverlapIndex, GrowsWithItsMembers) {
    std::vector<std::string> members;
    for (int i = 0; i < 20'000; ++i)
        members.push_back("/root/" + std::to_string(i % 150) + "/" + std::to_string(i));
    const PathOverlapIndex index = indexOf(members);
    for (const std::string& member : members) {
        ASSERT_TRUE(index.holds(member));
        ASSERT_TRUE(index.holds(member + "/inside"));
        ASSERT_FALSE(index.overlaps(member + "x"));
    }
    for (int i = 0; i < 150; ++i) {
        EXPECT_TRUE(index.overlaps("/root/" + std::to_string(i)));
        EXPECT_FALSE(index.holds("/root/" + std::to_string(i)));
    }
}

/// More than are looked at together, and more than there was room for at first.
TEST(PathOverlapIndex, ManyAtOnceAreAnsweredAsOneByOne) {
    constexpr int count = 5'000;
    std::vector<std::string> members;
    std::vector<std::string> asked;
    for (int i = 0; i < count; ++i) {
        members.push_back("/root/" + std::to_string(i % 150) + "/" + std::to_string(i));
        asked.push_back("/root/" + std::to_string(i % 400) + "/" + std::to_string(i + count / 2));
        if (i % 3 == 0) asked.back() += "/inside";
        if (i % 7 == 0) asked.back() = "/root/" + std::to_string(i % 400);
    }
    PathOverlapIndex index;
    index.insert(std::vector<std::string_view>(members.begin(), members.end()));
    const std::vector<bool> answers =
        index.overlaps(std::vector<std::string_view>(asked.begin(), asked.end()));
    ASSERT_EQ(answers.size(), asked.size());
    for (int i = 0; i < count; ++i) EXPECT_EQ(answers[i], isCovered(asked[i], members)) << asked[i];
    EXPECT_EQ(index.overlaps(std::vector<std::string_view>()), std::vector<bool>());
}

TEST(SignificanceEngine, LongListsLoseWhatIsCoveredAsShortOnesDo) {
    std::vector<ScannableItem> found;
    std::vector<ScannableItem> covering;
    for (int i = 0; i < 1'500; ++i) {
        // Some are written in another way.
        const std::string folder = (i % 5 == 0 ? "/h//c" : "/h/c") + std::to_string(i);
        found.push_back(testing::item(folder, i + 1));
        if (i % 4 != 1) continue;
        covering.push_back(testing::item(i % 8 == 1 ? folder + "/in" : folder + "/.", i + 1));
    }
    const std::vector groups{testing::group("discover.caches", found), testing::group("cache.npm", covering)};
    EXPECT_EQ(removeCoveredDiscoveries(groups), plainRemoval(groups));
}

TEST(PathOverlapIndex, TheEmptyPathCoversEveryAbsoluteOne) {
    const std::vector<std::string> members{""};
    const PathOverlapIndex index = indexOf(members);
    EXPECT_TRUE(index.overlaps("/a"));
    EXPECT_FALSE(index.overlaps("a"));
}

TEST(PathOverlapIndex, TheRootCoversOnlyItself) {
    const std::vector<std::string> members{"/"};
    const PathOverlapIndex index = indexOf(members);
    EXPECT_TRUE(index.overlaps("/"));
    EXPECT_FALSE(index.overlaps("/a"));
}

} // namespace
} // namespace vesko
