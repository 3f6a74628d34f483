#include "probes/InstallerProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/DiskSizeCalculator.h"
#include "support/ProbeHome.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::ScriptedSizes;
using ::testing::UnorderedElementsAre;

class InstallerProbeTest : public ::testing::Test {
protected:
    ProbeResult run() const { return InstallerProbe(about).run(home.context); }
    std::vector<std::string> found() const {
        const ProbeResult result = run();
        EXPECT_THAT(result.errors, IsEmpty());
        return home.paths(result);
    }

    testing::ProbeHome home;
    GroupMetadata about = testing::metadata("installers.forgotten", "installer");
};

TEST_F(InstallerProbeTest, ThreePlacesAreSearchedOneLevelDeep) {
    for (const char* path : {"a.dmg", "Downloads/b.pkg", "Desktop/c.xip"}) home.tree.file(path);
    for (const char* path : {"Documents/d.dmg", "Downloads/folder/e.dmg", "Desktop/folder/f.pkg",
                             "folder/g.xip", "Downloads/Downloads/h.dmg"})
        home.tree.file(path);
    EXPECT_THAT(found(), UnorderedElementsAre("a.dmg", "Downloads/b.pkg", "Desktop/c.xip"));
}

TEST_F(InstallerProbeTest, AnInstallerInTheHomeFolderAndAFolderNamedLikeOneAreFound) {
    home.tree.file("Tool.dmg");
    home.tree.file("Downloads/Suite.pkg/Contents/inner.pkg");
    const ProbeResult result = run();
    EXPECT_THAT(home.paths(result), ElementsAre("Downloads/Suite.pkg", "Tool.dmg"));
    for (const ScannableItem& item : result.group->items)
        EXPECT_EQ(item.isDirectory, item.url.path().ends_with(".pkg"));
}

TEST_F(InstallerProbeTest, ExtensionsCountInEveryCaseAndNothingElseDoes) {
    for (const char* name : {"a.DMG", "b.Pkg", "c.xIP", "tool-1.0.dmg"})
        home.tree.file(std::string("Downloads/") + name);
    for (const char* name : {"dmg", ".dmg", "d.dmg.zip", "e.dmgx", "f.iso", "g.mpkg", "h.", "i.dmg ",
                             ".hidden.pkg", "j.d\xC4\xB1mg"})
        home.tree.file(std::string("Downloads/") + name);
    EXPECT_THAT(found(), UnorderedElementsAre("Downloads/a.DMG", "Downloads/b.Pkg", "Downloads/c.xIP",
                                              "Downloads/tool-1.0.dmg"));
}

TEST_F(InstallerProbeTest, ALetterWhoseSmallFormIsThePlainOneCounts) {
    home.tree.file("Downloads/tool.p\xE2\x84\xAAg"); // the sign of the kelvin
    EXPECT_EQ(found().size(), 1U);
}

TEST_F(InstallerProbeTest, AnItemHasTheKeyOfItsProduct) {
    home.tree.file("Downloads/Tool_Setup-1.4.2-arm64.DMG");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    ScannableItem expected =
        testing::item(home.tree.path("Downloads/Tool_Setup-1.4.2-arm64.DMG"), 1000, false);
    expected.enrichmentKey = {"installer:tool setup"};
    EXPECT_EQ(result.group->items, ItemList{expected});
    EXPECT_EQ(result.group->id, "installers.forgotten");
}

TEST_F(InstallerProbeTest, AllVersionsOfAProductShareOneKey) {
    home.tree.file("Downloads/Tool-1.0.dmg");
    home.tree.file("Desktop/Tool-2.0.dmg");
    home.tree.file("Tool v3.dmg");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    ASSERT_EQ(result.group->items.size(), 3U);
    for (const ScannableItem& item : result.group->items)
        EXPECT_EQ(item.enrichmentKey.rawValue, "installer:tool");
}

TEST_F(InstallerProbeTest, ItemsAreMeasuredAsTheyLie) {
    home.tree.file("Downloads/Tool.dmg");
    run();
    EXPECT_THAT(home.sizes->calls(),
                ElementsAre(ScriptedSizes::Call{home.tree.path("Downloads/Tool.dmg"), false, false}));
}

TEST_F(InstallerProbeTest, AnEmptyFileIsLeftOutAndOneOfASingleByteStays) {
    home.tree.file("Downloads/empty.dmg", "");
    home.tree.file("Downloads/tiny.dmg", "x");
    home.context.size = std::make_shared<DiskSizeCalculator>();
    EXPECT_THAT(found(), ElementsAre("Downloads/tiny.dmg"));
    home.answerSizes([](const FileURL& url) { return url.path().ends_with("empty.dmg") ? 0 : 1; });
    home.context.size = home.sizes;
    EXPECT_THAT(found(), ElementsAre("Downloads/tiny.dmg"));
}

TEST_F(InstallerProbeTest, ALinkCountsAsItselfAndNotAsAFolder) {
    home.tree.folder("elsewhere");
    home.tree.link("Downloads/Linked.pkg", home.tree.path("elsewhere"));
    home.tree.link("Downloads/Dangling.dmg", "nowhere");
    const ProbeResult result = run();
    EXPECT_THAT(home.paths(result), ElementsAre("Downloads/Dangling.dmg", "Downloads/Linked.pkg"));
    for (const ScannableItem& item : result.group->items) EXPECT_FALSE(item.isDirectory);
}

TEST_F(InstallerProbeTest, NamesThatAreNoUtf8AreFound) {
    home.tree.file("Downloads/Instala\xE7\xE3o-2.1.DMG");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->items[0].enrichmentKey.rawValue, "installer:instala\xE7\xE3o");
}

TEST_F(InstallerProbeTest, APlaceThatCannotBeListedDoesNotStopTheOthers) {
    home.tree.file("a.dmg");
    home.tree.file("Downloads"); // a file, which can't be listed
    home.tree.file("Desktop/b.dmg");
    EXPECT_THAT(found(), ElementsAre("Desktop/b.dmg", "a.dmg"));
}

TEST_F(InstallerProbeTest, WithoutAnyPlaceThereIsNoGroup) {
    home.context.home = home.tree.url("missing");
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(InstallerProbeTest, ACancelledRunYieldsNothing) {
    home.tree.file("a.dmg");
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(run(), ProbeResult());
}

} // namespace
} // namespace vesko
