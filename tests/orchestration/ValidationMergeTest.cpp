#include "orchestration/ValidationMerge.h"

#include "orchestration/CleanupFixture.h"

namespace vesko::testing {
namespace {

TEST(ValidationMerge, AProbeThatRanDecidesAloneAboutItsGroup) {
    const auto merged =
        mergeValidationGroups({group("a", {item("/a", 5)}), group("b", {item("/b", 4)})}, {}, {"a"});
    EXPECT_EQ(idsOf(merged), std::vector<std::string>{"b"});
}

TEST(ValidationMerge, WithoutAnyProbeThatRanOneIdCanStandTwice) {
    const auto merged =
        mergeValidationGroups({group("a", {item("/a", 5)})}, {group("a", {item("/b", 9)})}, {});
    ASSERT_EQ(idsOf(merged), (std::vector<std::string>{"a", "a"}));
    EXPECT_EQ(pathsOf(merged[0]), std::vector<std::string>{"/b"});
}

TEST(ValidationMerge, ProjectArtifactsOfBothFoldIntoOneGroup) {
    const auto merged = mergeValidationGroups(
        {group("project.artifacts", {item("/p/a", 5), item("/p/b", 3)}), group("x", {item("/x", 100)})},
        {group("project.pods", {item("/p/b", 9), item("/p/c", 1)})}, {"project.pods"});
    ASSERT_EQ(idsOf(merged), (std::vector<std::string>{"x", "project.artifacts"}));
    EXPECT_EQ(pathsOf(merged[1]), (std::vector<std::string>{"/p/b", "/p/a", "/p/c"}));
    EXPECT_EQ(merged[1].items[0].size, 9);
}

TEST(ValidationMerge, DiscoveriesThatAreCoveredStay) {
    const auto merged = mergeValidationGroups({group("discover.caches", {item("/c/Yarn", 5)})},
                                              {group("cache.yarn", {item("/c/Yarn", 5)})}, {});
    EXPECT_EQ(idsOf(merged), (std::vector<std::string>{"discover.caches", "cache.yarn"}));
}

TEST(ValidationMerge, NothingAndNothingIsNothing) { EXPECT_TRUE(mergeValidationGroups({}, {}, {}).empty()); }

TEST(ValidationMerge, GroupsWithoutItemsGo) {
    EXPECT_EQ(idsOf(mergeValidationGroups({group("a", {})}, {group("b", {item("/b", 1)})}, {})),
              std::vector<std::string>{"b"});
}

TEST(ValidationMerge, EqualTotalsKeepTheirOrder) {
    const auto merged = mergeValidationGroups(
        {group("c", {item("/c", 5)}), group("a", {item("/a", 5)})},
        {group("b", {item("/b1", 2), item("/b2", 3)}), group("z", {item("/z", 9)})}, {});
    EXPECT_EQ(idsOf(merged), (std::vector<std::string>{"z", "c", "a", "b"}));
}

TEST(ValidationMerge, TheTotalIsThatOfAllItems) {
    EXPECT_EQ(validationTotalBytes({group("a", {item("/a", 5), item("/b", 6)}), group("b", {item("/a", 5)})}),
              16);
    EXPECT_EQ(validationTotalBytes({}), 0);
}

} // namespace
} // namespace vesko::testing
