#include "probes/FixedPathProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskSizeCalculator.h"
#include "support/FileTimes.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using std::chrono::seconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedSizes;
using testing::TempTree;
using ::testing::UnorderedElementsAre;

constexpr seconds day{86400};
const Date today = dateFromUnixSeconds(1'700'000'000);

class FixedPathProbeTest : public ::testing::Test {
protected:
    FixedPathProbeTest() { row.metadata = testing::metadata("x.y", "fixed"); }

    ProbeResult run(const FileDates& dates = platformFileDates()) {
        ProbeContext context;
        context.home = tree.root();
        context.now = today;
        context.size = sizes;
        return FixedPathProbe(row, dates).run(context);
    }
    /// The paths found, relative to the home folder.
    std::vector<std::string> found(const FileDates& dates = platformFileDates()) {
        const ProbeResult result = run(dates);
        EXPECT_THAT(result.errors, IsEmpty());
        std::vector<std::string> list;
        if (result.group)
            for (const ScannableItem& item : result.group->items)
                list.push_back(item.url.path().substr(tree.root().path().size() + 1));
        return list;
    }

    TempTree tree;
    FixedPathRow row;
    std::shared_ptr<ScriptedSizes> sizes = std::make_shared<ScriptedSizes>();
};

TEST_F(FixedPathProbeTest, ThePathItselfIsTheCandidateWithoutExpansion) {
    tree.file("cache/a");
    row.relativePaths = {"cache", "missing"};
    row.preferDiskUsage = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "x.y");
    EXPECT_EQ(result.group->items, ItemList{testing::item(tree.path("cache"), 1000, true)});
    EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{tree.path("cache"), true, false}));
}

TEST_F(FixedPathProbeTest, EveryVisibleChildIsACandidateWithExpansion) {
    tree.file("cache/a");
    tree.file("cache/folder/deep");
    row.relativePaths = {"cache"};
    row.expandChildren = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_THAT(result.group->items,
                UnorderedElementsAre(testing::item(tree.path("cache/a"), 1000, false),
                                     testing::item(tree.path("cache/folder"), 1000, true)));
    for (const auto& call : sizes->calls()) EXPECT_FALSE(call.preferDiskUsage || call.linkAware);
}

TEST_F(FixedPathProbeTest, NothingThereIsNoGroupAndNoError) {
    tree.file("file");
    row.relativePaths = {"missing", "file"};
    row.expandChildren = true; // a file can't be listed
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(FixedPathProbeTest, TheExtensionOfALoneFileIsNotLookedAt) {
    tree.file("lone.dmg");
    row.relativePaths = {"lone.dmg"};
    row.excludedExtensions = {"dmg"};
    EXPECT_THAT(found(), ElementsAre("lone.dmg"));
}

TEST_F(FixedPathProbeTest, ExcludedExtensionsAreSkippedInEveryCase) {
    for (const char* name :
         {"a.dmg", "b.DMG", "c.Dmg", "dmg", "d.dmgx", "no extension", "e.tar.dmg", "f.dmg.txt"})
        tree.file(std::string("Downloads/") + name);
    row.relativePaths = {"Downloads"};
    row.expandChildren = true;
    row.excludedExtensions = {"dmg"};
    EXPECT_THAT(found(), UnorderedElementsAre("Downloads/dmg", "Downloads/d.dmgx", "Downloads/no extension",
                                              "Downloads/f.dmg.txt"));
}

TEST_F(FixedPathProbeTest, AChildWithoutAnExtensionIsNeverSkippedByIt) {
    tree.file("Downloads/plain");
    row.relativePaths = {"Downloads"};
    row.expandChildren = true;
    row.excludedExtensions = {"", "dmg"};
    EXPECT_THAT(found(), ElementsAre("Downloads/plain"));
}

TEST_F(FixedPathProbeTest, AnAgeOfExactlyTheLimitIsKept) {
    const auto stamp = [&](const char* name, Date modified) {
        testing::setFileTimes(tree.file(std::string("Downloads/") + name), today, modified);
    };
    stamp("exact", today - 90 * day);
    stamp("older", today - 91 * day);
    stamp("younger", today - 90 * day + seconds(1));
    stamp("future", today + 400 * day);
    row.relativePaths = {"Downloads"};
    row.expandChildren = true;
    row.olderThanDays = 90;
    EXPECT_THAT(found(), UnorderedElementsAre("Downloads/exact", "Downloads/older"));
}

TEST_F(FixedPathProbeTest, TheAgeRuleHoldsWithoutExpansionToo) {
    testing::setFileTimes(tree.file("young"), today, today);
    testing::setFileTimes(tree.file("old"), today, today - 100 * day);
    row.relativePaths = {"young", "old"};
    row.olderThanDays = 30;
    EXPECT_THAT(found(), ElementsAre("old"));
}

TEST_F(FixedPathProbeTest, TheMetricDecidesWhichDateCounts) {
    testing::setFileTimes(tree.file("d/read-lately"), today, today - 100 * day);
    testing::setFileTimes(tree.file("d/written-lately"), today - 100 * day, today);
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 90;
    EXPECT_THAT(found(), ElementsAre("d/read-lately"));
    row.ageMetric = AgeMetric::lastAccess;
    if (!contentAccessDate(tree.url("d/read-lately"))) GTEST_SKIP() << "this volume keeps no access dates";
    EXPECT_THAT(found(), ElementsAre("d/written-lately"));
}

std::optional<Date> none(const FileURL&) noexcept { return std::nullopt; }
std::optional<Date> longAgo(const FileURL&) noexcept { return today - 100 * day; }
std::optional<Date> lately(const FileURL&) noexcept { return today; }
int datesRead = 0;
std::optional<Date> counted(const FileURL&) noexcept { return ++datesRead, today; }

TEST_F(FixedPathProbeTest, WithoutAnAgeRuleNoDateIsRead) {
    tree.file("d/a");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    for (const AgeMetric metric : {AgeMetric::modification, AgeMetric::lastAccess}) {
        row.ageMetric = metric;
        row.olderThanDays.reset();
        datesRead = 0;
        EXPECT_THAT(found({counted, counted}), ElementsAre("d/a"));
        EXPECT_EQ(datesRead, 0);
        row.olderThanDays = 1;
        EXPECT_THAT(found({counted, counted}), IsEmpty());
        EXPECT_EQ(datesRead, 1);
    }
}

TEST_F(FixedPathProbeTest, WithoutAnAccessDateTheModificationDateDecides) {
    tree.file("d/a");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 90;
    row.ageMetric = AgeMetric::lastAccess;
    EXPECT_THAT(found({longAgo, none}), ElementsAre("d/a"));
    EXPECT_THAT(found({lately, none}), IsEmpty());
    EXPECT_THAT(found({lately, longAgo}), ElementsAre("d/a"));
    EXPECT_THAT(found({longAgo, lately}), IsEmpty());
}

TEST_F(FixedPathProbeTest, AChildWithoutAnyDateIsKept) {
    tree.file("d/a");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 100'000;
    for (const AgeMetric metric : {AgeMetric::modification, AgeMetric::lastAccess}) {
        row.ageMetric = metric;
        EXPECT_THAT(found({none, none}), ElementsAre("d/a"));
    }
    row.ageMetric = AgeMetric::modification;
    EXPECT_THAT(found({none, longAgo}), ElementsAre("d/a"));
}

TEST_F(FixedPathProbeTest, AnEnormousAgeLimitDoesNotOverflow) {
    testing::setFileTimes(tree.file("d/a"), today, dateFromUnixSeconds(0));
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = INT64_MAX;
    EXPECT_THAT(found(), IsEmpty());
    row.olderThanDays = INT64_MIN;
    EXPECT_THAT(found(), ElementsAre("d/a"));
}

TEST_F(FixedPathProbeTest, DatesOfTheFarPastAndFutureNeverOverflowAnAge) {
    const FileDates earliest{[](const FileURL&) noexcept { return std::optional(Date::min()); }, none};
    const FileDates latest{[](const FileURL&) noexcept { return std::optional(Date::max()); }, none};
    tree.file("d/a");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    const auto isKept = [&](const FileDates& dates, Date now, std::int64_t days) {
        row.olderThanDays = days;
        ProbeContext context;
        context.home = tree.root();
        context.now = now;
        context.size = sizes;
        return FixedPathProbe(row, dates).run(context).group.has_value();
    };
    // The earliest date lies some 106,751,991 days before 1970, the latest as many behind.
    EXPECT_TRUE(isKept(earliest, today, 106'700'000));
    EXPECT_FALSE(isKept(earliest, today, 106'800'000));
    EXPECT_FALSE(isKept(latest, today, 0));
    EXPECT_FALSE(isKept(latest, today, -106'700'000));
    EXPECT_TRUE(isKept(latest, today, -106'800'000));
    EXPECT_TRUE(isKept(earliest, Date::max(), 213'500'000));
    EXPECT_FALSE(isKept(earliest, Date::max(), 213'510'000));
    EXPECT_FALSE(isKept(latest, Date::min(), -213'500'000));
    EXPECT_TRUE(isKept(latest, Date::min(), -213'510'000));
}

TEST_F(FixedPathProbeTest, FilesOfTheFarPastAndFutureAreOldAndYoung) {
    testing::setFileTimes(tree.file("d/past"), today, dateFromUnixSeconds(-2'000'000'000));
    testing::setFileTimes(tree.file("d/future"), today, dateFromUnixSeconds(12'000'000'000));
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 30'000;
    EXPECT_THAT(found(), ElementsAre("d/past"));
    row.olderThanDays = 0;
    EXPECT_THAT(found(), ElementsAre("d/past"));
    row.olderThanDays = -120'000;
    EXPECT_THAT(found(), UnorderedElementsAre("d/past", "d/future"));
}

TEST_F(FixedPathProbeTest, PathsInsideEachOtherBothYieldTheirCandidates) {
    tree.file("d/inner/a");
    row.relativePaths = {"d", "d/inner", "d"};
    EXPECT_THAT(found(), UnorderedElementsAre("d", "d/inner", "d"));
}

TEST_F(FixedPathProbeTest, HiddenChildrenAreNotSeenButAHiddenPathIs) {
    tree.file(".hidden/.inside");
    tree.file(".hidden/visible");
    row.relativePaths = {".hidden"};
    EXPECT_THAT(found(), ElementsAre(".hidden"));
    row.expandChildren = true;
    EXPECT_THAT(found(), ElementsAre(".hidden/visible"));
}

TEST_F(FixedPathProbeTest, CachesOfTheSameNameShareOneKey) {
    tree.file("one/tool/a");
    tree.file("two/tool/b");
    row.metadata = testing::metadata("cache.y", "cache");
    row.relativePaths = {"one", "two"};
    row.expandChildren = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    ASSERT_EQ(result.group->items.size(), 2U);
    for (const ScannableItem& item : result.group->items)
        EXPECT_EQ(item.enrichmentKey.rawValue, "bundle:tool");
}

TEST_F(FixedPathProbeTest, TheProviderAloneDecidesTheKey) {
    tree.file("tool");
    row.metadata = testing::metadata("cache.y", "fixed");
    row.relativePaths = {"tool"};
    EXPECT_EQ(run().group->items.front().enrichmentKey.rawValue, "url:" + tree.path("tool"));
    row.metadata = testing::metadata("logs.y", "cache");
    EXPECT_EQ(run().group->items.front().enrichmentKey.rawValue, "bundle:tool");
}

TEST_F(FixedPathProbeTest, ASizeBelowTheSmallestGoes) {
    tree.file("d/small");
    tree.file("d/large");
    sizes = std::make_shared<ScriptedSizes>(
        [](const FileURL& url) { return url.lastPathComponent() == "large" ? 500 : 499; });
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.minBytes = 500;
    EXPECT_THAT(found(), ElementsAre("d/large"));
}

TEST_F(FixedPathProbeTest, ACandidateThatCannotBeAskedCountsAsAFolder) {
    // Between the listing and the question the entry can go; a link into nowhere shows the other side: it is
    // there and is no folder.
    tree.link("d/dangling", "nowhere");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_FALSE(result.group->items.front().isDirectory);
}

TEST_F(FixedPathProbeTest, ACancelledTaskLooksAtNoCandidate) {
    tree.file("d/a");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 1;
    datesRead = 0;
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_THAT(found({counted, counted}), IsEmpty());
    EXPECT_EQ(datesRead, 0);
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(FixedPathProbeTest, LookingLeavesAccessDatesAlone) {
    tree.file("d/folder/a", std::string(10'000, 'x'));
    const Date before = dateFromUnixSeconds(1'000'000'000);
    // Older than the modification, so that a volume which updates access dates sparingly would update these.
    for (const char* each : {"d/folder/a", "d/folder", "d"})
        testing::setFileTimes(tree.url(each), before, before + day);
    row.relativePaths = {"d"};
    row.expandChildren = true;
    row.olderThanDays = 90;
    row.ageMetric = AgeMetric::lastAccess;
    ProbeContext context;
    context.home = tree.root();
    context.now = today;
    context.size = std::make_shared<DiskSizeCalculator>();
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(FixedPathProbe(row).run(context).group);
    if (!contentAccessDate(tree.url("d"))) GTEST_SKIP() << "this volume keeps no access dates";
    for (const char* each : {"d/folder/a", "d/folder", "d"})
        EXPECT_EQ(contentAccessDate(tree.url(each)), before) << each;
}

TEST_F(FixedPathProbeTest, ANameThatIsNoUtf8IsFoundAsItIs) {
    tree.file("d/caf\xe9");
    row.relativePaths = {"d"};
    row.expandChildren = true;
    EXPECT_THAT(found(), ElementsAre("d/caf\xe9"));
}

} // namespace
} // namespace vesko
