#include "probes/ShallowScanProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskSizeCalculator.h"
#include "support/ProbeHome.h"
#include "support/builders.h"
#include <gmock/gmock.h>
#include <ostream>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedSizes;
using ::testing::UnorderedElementsAre;

class ShallowScanProbeTest : public ::testing::Test {
protected:
    ShallowScanProbeTest() {
        row.metadata = testing::metadata("discover.x", "discover");
        row.relativeRoot = "Library/Places";
    }

    ProbeResult run() const { return ShallowScanProbe(row).run(home.context); }
    std::vector<std::string> found() const {
        const ProbeResult result = run();
        EXPECT_THAT(result.errors, IsEmpty());
        return home.paths(result);
    }
    /// A folder with a file for each name.
    void folders(const std::vector<std::string>& names) const {
        for (const std::string& name : names) home.tree.file("Library/Places/" + name + "/content");
    }

    testing::ProbeHome home;
    ShallowScanRow row;
};

TEST_F(ShallowScanProbeTest, EveryVisibleEntryIsAnItemOneLevelDeep) {
    folders({"com.example.notes", "plain", "two words"});
    home.tree.file("Library/Places/deep/er/file");
    home.tree.file("Library/Places/loose");
    home.tree.file("Library/Places/.hidden/file");
    home.tree.file("Library/beside/file");
    EXPECT_THAT(found(), UnorderedElementsAre("Library/Places/com.example.notes", "Library/Places/plain",
                                              "Library/Places/two words", "Library/Places/deep",
                                              "Library/Places/loose"));
}

TEST_F(ShallowScanProbeTest, AnItemIsAFolderWithTheKeyOfItsName) {
    folders({"com.example.notes"});
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "discover.x");
    EXPECT_EQ(result.group->providerID.rawValue, "discover");
    ScannableItem expected = testing::item(home.tree.path("Library/Places/com.example.notes"), 1000, true);
    expected.enrichmentKey = {"bundle:com.example.notes"};
    EXPECT_EQ(result.group->items, ItemList{expected});
}

TEST_F(ShallowScanProbeTest, ItemsAreMeasuredAsDiskUsageThatFollowsLinks) {
    folders({"com.example.notes"});
    run();
    EXPECT_THAT(home.sizes->calls(), ElementsAre(ScriptedSizes::Call{
                                         home.tree.path("Library/Places/com.example.notes"), true, false}));
}

TEST_F(ShallowScanProbeTest, TheSmallestSizeIsHandedToTheMeasuring) {
    folders({"smaller", "equal", "larger"});
    row.minBytes = 500;
    home.answerSizes([](const FileURL& url) {
        return url.lastPathComponent() == "smaller" ? 499 : url.lastPathComponent() == "equal" ? 500 : 501;
    });
    EXPECT_THAT(found(), ElementsAre("Library/Places/equal", "Library/Places/larger"));
}

TEST_F(ShallowScanProbeTest, AnInstalledApplicationIsLeftOutOnlyWhenLookingForLeftovers) {
    folders({"com.example.notes", "com.example.gone"});
    home.context.installedBundleIDs = {"com.example.notes"};
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.gone", "Library/Places/com.example.notes"));
    row.onlyUninstalled = true;
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.gone"));
}

TEST_F(ShallowScanProbeTest, AnIdentifierThatDiffersInCaseIsNotInstalled) {
    folders({"com.example.Notes"});
    home.context.installedBundleIDs = {"com.example.notes", "COM.EXAMPLE.NOTES"};
    row.onlyUninstalled = true;
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.Notes"));
}

TEST_F(ShallowScanProbeTest, AClaimedPathIsLeftOutEitherWay) {
    folders({"com.example.claimed", "com.example.free"});
    home.context.claimedPaths = {home.tree.path("Library/Places/com.example.claimed")};
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.free"));
    row.onlyUninstalled = true;
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.free"));
}

TEST_F(ShallowScanProbeTest, OnlyTheVeryPathIsClaimed) {
    folders({"com.example.one", "com.example.two", "com.example.three"});
    home.context.claimedPaths = {home.tree.path("Library/Places/com.example.one") + "/",
                                 home.tree.path("Library/Places/com.example.one/content"),
                                 home.tree.path("Library/Places"),
                                 home.tree.path("Library/Places/COM.example.two"),
                                 "com.example.three",
                                 "Library/Places/com.example.three"};
    EXPECT_EQ(found().size(), 3U);
}

TEST_F(ShallowScanProbeTest, APathIsClaimedByItsBytesAndNotByItsPercentForm) {
    folders({"with blank", "caf\xC3\xA9"});
    home.context.claimedPaths = {home.tree.path("Library/Places/with%20blank"),
                                 home.tree.path("Library/Places/caf\xC3\xA9")};
    EXPECT_THAT(found(), ElementsAre("Library/Places/with blank"));
}

TEST_F(ShallowScanProbeTest, AnEmptyFolderGivesNoGroup) {
    home.tree.folder("Library/Places");
    EXPECT_EQ(run(), ProbeResult());
    row.onlyUninstalled = true;
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(ShallowScanProbeTest, AFileInTheFormOfAnIdentifierIsOfferedAsAFolder) {
    home.tree.file("Library/Places/com.example.state");
    home.answerSizes([](const FileURL&) { return 10 << 20; });
    row.minBytes = 10 << 20;
    row.onlyUninstalled = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    ASSERT_EQ(result.group->items.size(), 1U);
    EXPECT_TRUE(result.group->items[0].isDirectory);
    EXPECT_EQ(home.relative(result.group->items[0].url), "Library/Places/com.example.state");
}

TEST_F(ShallowScanProbeTest, ATrailingDotIsNoIdentifier) {
    folders({"com.example.", "com.example.tool.", "com.example.tool"});
    row.onlyUninstalled = true;
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.tool"));
}

TEST_F(ShallowScanProbeTest, OnlyThreePartsOrMoreWithoutABlankAreAnIdentifier) {
    const std::vector<std::string> identifiers{"a.b.c",
                                               "COM.Example.Tool",
                                               "1.2.3",
                                               "com.example.tool.helper",
                                               "com.example.t-o_o~l",
                                               "br.com.a\xC3\xA7\xC3\xA3o"};
    folders(identifiers);
    folders({"tool", "com.example", "com..example", "com.example..tool", "com.example.my tool", " .  . ",
             "Adobe Reader 9.1.2"});
    row.onlyUninstalled = true;
    std::vector<std::string> expected;
    for (const std::string& each : identifiers) expected.push_back("Library/Places/" + each);
    EXPECT_THAT(found(), ::testing::UnorderedElementsAreArray(expected));
}

TEST_F(ShallowScanProbeTest, NoCaseIsFoldedUnderAnyLocale) {
    // Where "I" and "i" are two letters, folding would make one application of two.
    folders({"com.example.INFO", "com.example.info", "com.example.\xC4\xB0nfo"});
    home.context.installedBundleIDs = {"com.example.info"};
    row.onlyUninstalled = true;
    EXPECT_THAT(found(), UnorderedElementsAre("Library/Places/com.example.INFO",
                                              "Library/Places/com.example.\xC4\xB0nfo"));
}

TEST_F(ShallowScanProbeTest, NamesThatAreNoUtf8KeepTheirBytes) {
    folders({"com.example.caf\xE9", "com.example.new\nline"});
    home.context.installedBundleIDs = {"com.example.cafe", "com.example.caf\xC3\xA9"};
    row.onlyUninstalled = true;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    std::vector<std::string> keys;
    for (const ScannableItem& item : result.group->items) keys.push_back(item.enrichmentKey.rawValue);
    EXPECT_THAT(keys, UnorderedElementsAre("bundle:com.example.caf\xE9", "bundle:com.example.new\nline"));
    home.context.installedBundleIDs = {"com.example.caf\xE9"};
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.new\nline"));
}

struct Failure {
    const char* name;
    void (*arrange)(const testing::TempTree&);
};
void PrintTo(const Failure& failure, std::ostream* stream) { *stream << failure.name; }
class ShallowScanFailure : public ShallowScanProbeTest, public ::testing::WithParamInterface<Failure> {};

TEST_P(ShallowScanFailure, IsNoGroupAndNoError) {
    GetParam().arrange(home.tree);
    EXPECT_EQ(run(), ProbeResult());
    EXPECT_THAT(home.sizes->calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Root, ShallowScanFailure,
    ::testing::Values(Failure{"Missing", [](const testing::TempTree& tree) { tree.folder("Library"); }},
                      Failure{"HomeWithoutLibrary", [](const testing::TempTree&) {}},
                      Failure{"File", [](const testing::TempTree& tree) { tree.file("Library/Places"); }},
                      Failure{"DanglingLink",
                              [](const testing::TempTree& tree) { tree.link("Library/Places", "nowhere"); }},
                      Failure{"LinkLoop",
                              [](const testing::TempTree& tree) { tree.link("Library/Places", "Places"); }},
                      Failure{"Pipe",
                              [](const testing::TempTree& tree) {
                                  tree.folder("Library");
                                  tree.pipe("Library/Places");
                              }}),
    [](const auto& each) { return each.param.name; });

TEST_F(ShallowScanProbeTest, AnEntryThatCannotBeMeasuredIsLeftOut) {
    folders({"com.example.gone", "com.example.vanished"});
    home.answerSizes([](const FileURL& url) { return url.path().ends_with("vanished") ? 0 : 7; });
    EXPECT_THAT(found(), ElementsAre("Library/Places/com.example.gone"));
}

TEST_F(ShallowScanProbeTest, ALinkIsFollowedByTheMeasuringAlone) {
    home.tree.file("elsewhere/large", std::string(400'000, 'x'));
    home.tree.link("Library/Places/com.example.moved", home.tree.path("elsewhere"));
    home.context.size = std::make_shared<DiskSizeCalculator>();
    row.minBytes = 300'000;
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(home.relative(result.group->items[0].url), "Library/Places/com.example.moved");
    EXPECT_GE(result.group->items[0].size, 400'000);
}

TEST_F(ShallowScanProbeTest, ACancelledRunMeasuresNothing) {
    folders({"a.b.c", "d.e.f"});
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(run(), ProbeResult());
    EXPECT_THAT(home.sizes->calls(), IsEmpty());
}

TEST_F(ShallowScanProbeTest, IsAValueOverItsRow) {
    row.minBytes = 12;
    row.onlyUninstalled = true;
    EXPECT_EQ(ShallowScanProbe(row).row(), row);
    EXPECT_EQ(ShallowScanProbe(row).metadata(), row.metadata);
}

} // namespace
} // namespace vesko
