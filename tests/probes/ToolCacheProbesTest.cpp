#include "probes/ToolCacheProbes.h"

#include "core/CatalogRows.h"
#include "probes/HomebrewCacheAnswer.h"
#include "support/Fixtures.h"
#include "support/FoundItems.h"
#include "support/PortugueseLocale.h"
#include "support/ToolProbeTest.h"
#include "support/builders.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::itemsOf;
using testing::ScriptedSizes;
using ::testing::UnorderedElementsAre;
using Command = testing::FakeRunner::Command;

const Command which{"/usr/bin/which", "brew"};
const Command firstBrew{"/opt/homebrew/bin/brew", "--cache"};
const Command secondBrew{"/usr/local/bin/brew", "--cache"};
const std::string standard = "Library/Caches/Homebrew";

class ToolCacheProbesTest : public testing::ToolProbeTest {
protected:
    template <class Probe> ProbeResult run(const char* id = "cache.homebrew") {
        const ProbeResult result = ToolProbeTest::run(Probe(rowMetadata(id)));
        EXPECT_THAT(result.errors, IsEmpty());
        return result;
    }
    ProbeResult homebrew() { return run<HomebrewCacheProbe>(); }
    /// The paths found, relative to the home folder.
    template <class Probe> std::vector<std::string> found(const char* id = "cache.homebrew") {
        const ProbeResult result = run<Probe>(id);
        std::vector<std::string> list;
        if (result.group)
            for (const std::string& path : testing::paths(itemsOf(result)))
                list.push_back(path.substr(tree.root().path().size() + 1));
        return list;
    }
    /// That the place is the group's one item once something lies in it, asks no tool, and needs to weigh
    /// something.
    template <class Probe> void expectOneItem(const char* id, const std::string& place) {
        EXPECT_EQ(run<Probe>(id), ProbeResult());
        EXPECT_THAT(sizes->calls(), IsEmpty());
        tree.file(place + "/inside/a");
        const ProbeResult result = run<Probe>(id);
        ASSERT_TRUE(result.group);
        EXPECT_EQ(result.group->id, id);
        EXPECT_EQ(itemsOf(result), ItemList{testing::item(tree.path(place), 1000)});
        EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{tree.path(place), true, false}));
        EXPECT_THAT(runner->commands(), IsEmpty());
        weighingNothing();
        EXPECT_EQ(run<Probe>(id), ProbeResult());
    }
    void weighingNothing() {
        sizes = std::make_shared<ScriptedSizes>([](const FileURL&) { return 0; });
    }
};

// brew

TEST_F(ToolCacheProbesTest, TheUsualFolderOfHomebrewIsOneItem) {
    tree.folder(standard);
    const ProbeResult result = homebrew();
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "cache.homebrew");
    EXPECT_EQ(itemsOf(result), ItemList{testing::item(tree.path(standard), 1000)});
    EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{tree.path(standard), true, false}));
}

TEST_F(ToolCacheProbesTest, BrewIsNotAskedWhereWhichDoesNotFindIt) {
    tree.folder(standard);
    tree.folder("named");
    script.failing(which, 1, "/usr/local/bin/brew\n").on(secondBrew, tree.path("named"));
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre(standard));
    EXPECT_THAT(runner->commands(), ElementsAre(which));
}

TEST_F(ToolCacheProbesTest, WhatWhichPrintsDoesNotCount) {
    tree.folder("named");
    script.on(which, "").on(secondBrew, tree.path("named") + "\n");
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre("named"));
    EXPECT_THAT(runner->commands(), ElementsAre(which, firstBrew, secondBrew));
}

TEST_F(ToolCacheProbesTest, TwoBrewsWithFoldersOfTheirOwnMakeThreeItems) {
    for (const char* folder : {"one", "two"}) tree.folder(folder);
    tree.folder(standard);
    script.on(which, "/opt/homebrew/bin/brew\n");
    script.on(firstBrew, tree.path("one") + "\n").on(secondBrew, "\n " + tree.path("two") + "\r\n");
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre(standard, "one", "two"));
}

TEST_F(ToolCacheProbesTest, AFolderThatIsNamedAgainCountsOnce) {
    tree.folder(standard);
    tree.folder("named");
    script.on(which, "")
        .on(firstBrew, tree.path(standard) + "/\n")
        .on(secondBrew, tree.path(standard) + "\n");
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre(standard));
    EXPECT_EQ(sizes->calls().size(), 1U);
    script.on(firstBrew, tree.path("named")).on(secondBrew, tree.path("named") + "//");
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre(standard, "named"));
}

TEST_F(ToolCacheProbesTest, PathsAreComparedPlainly) {
    tree.folder(standard);
    script.on(which, "").on(firstBrew, tree.path("Library/../Library/Caches/Homebrew"));
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre(standard, "Library/../Library/Caches/Homebrew"));
}

TEST_F(ToolCacheProbesTest, ABrewThatFailsSaysNothingOrNamesNoFolderLeavesTheOther) {
    tree.folder("named");
    script.on(which, "").on(secondBrew, tree.path("named"));
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre("named"));
    script.failing(firstBrew, 1, tree.path("named"));
    EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre("named"));
    for (const std::string& printed :
         {std::string(), std::string(" \n\t"), tree.path("missing"), tree.path("named") + "\nWarning: old",
          std::string("named"), std::string("."), std::string(100'000'000, '/') + "x", std::string("\xff")}) {
        script.on(firstBrew, printed);
        EXPECT_THAT(found<HomebrewCacheProbe>(), ElementsAre("named"));
    }
}

TEST_F(ToolCacheProbesTest, HomebrewFoldersThatWeighNothingDoNotShow) {
    weighingNothing();
    tree.folder(standard);
    tree.folder("named");
    script.on(which, "").on(firstBrew, tree.path("named"));
    EXPECT_EQ(homebrew(), ProbeResult());
    EXPECT_EQ(sizes->calls().size(), 2U);
}

TEST_F(ToolCacheProbesTest, WithoutBrewAndFolderThereIsNothing) {
    EXPECT_EQ(homebrew(), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST(HomebrewCacheAnswer, TheWholeTextIsThePath) {
    EXPECT_EQ(parseHomebrewCache(testing::fixture("brew/cache.txt")),
              FileURL("/Users/someone/Library/Caches/Homebrew"));
    EXPECT_EQ(parseHomebrewCache("  /a b/c\nd/ \r\n"), FileURL("/a b/c\nd"));
    EXPECT_EQ(parseHomebrewCache("/"), FileURL("/"));
}

TEST(HomebrewCacheAnswer, NothingOrARelativePathIsNone) {
    for (const char* text : {"", "\n", "  \t\r\n\u00a0", "a/b", "~/Library/Caches", "Error: x", "./", ".."})
        EXPECT_EQ(parseHomebrewCache(text), std::nullopt) << text;
}

TEST(HomebrewCacheAnswer, APersonsLocaleChangesNothing) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no pt_BR locale here";
    EXPECT_EQ(parseHomebrewCache("/Usuários/joão/Caches\n"), FileURL("/Usuários/joão/Caches"));
}

// Maven and SwiftPM

TEST_F(ToolCacheProbesTest, TheMavenRepositoryIsOneItem) {
    expectOneItem<MavenCacheProbe>("cache.maven", ".m2/repository");
}

TEST_F(ToolCacheProbesTest, TheSwiftPackageCacheIsOneItem) {
    expectOneItem<SwiftPMCacheProbe>("cache.swiftpm", "Library/Caches/org.swift.swiftpm");
}

// JetBrains

const std::string jetBrains = "Library/Caches/JetBrains";

TEST_F(ToolCacheProbesTest, EveryChildOfTheJetBrainsFolderIsAnItem) {
    tree.file(jetBrains + "/IntelliJIdea2024.1/index");
    tree.file(jetBrains + "/.hidden/index");
    const ProbeResult result = run<JetBrainsCacheProbe>("cache.jetbrains");
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "cache.jetbrains");
    EXPECT_THAT(itemsOf(result),
                UnorderedElementsAre(testing::item(tree.path(jetBrains + "/IntelliJIdea2024.1"), 1000),
                                     testing::item(tree.path(jetBrains + "/.hidden"), 1000)));
    for (const auto& call : sizes->calls()) EXPECT_TRUE(call.preferDiskUsage && !call.linkAware);
}

TEST_F(ToolCacheProbesTest, AFileAmongTheJetBrainsChildrenIsCalledAFolder) {
    tree.file(jetBrains + "/lone.log");
    EXPECT_EQ(itemsOf(run<JetBrainsCacheProbe>("cache.jetbrains")),
              ItemList{testing::item(tree.path(jetBrains + "/lone.log"), 1000, true)});
}

TEST_F(ToolCacheProbesTest, AJetBrainsFolderThatIsMissingOrNoFolderIsNothing) {
    EXPECT_EQ(run<JetBrainsCacheProbe>("cache.jetbrains"), ProbeResult());
    tree.file(jetBrains);
    EXPECT_EQ(run<JetBrainsCacheProbe>("cache.jetbrains"), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

// Previews

const std::string derived = "Library/Developer/Xcode/DerivedData";

TEST_F(ToolCacheProbesTest, ThePreviewsOfEveryProjectAreItems) {
    tree.file(derived + "/Atlas-abc/Previews/a");
    tree.file(derived + "/.Hidden-def/Previews/b");
    const ProbeResult result = run<XcodePreviewsProbe>("xcode.previews");
    ASSERT_TRUE(result.group);
    EXPECT_EQ(result.group->id, "xcode.previews");
    EXPECT_THAT(itemsOf(result),
                UnorderedElementsAre(testing::item(tree.path(derived + "/Atlas-abc/Previews"), 1000),
                                     testing::item(tree.path(derived + "/.Hidden-def/Previews"), 1000)));
    for (const auto& call : sizes->calls()) EXPECT_TRUE(call.preferDiskUsage && !call.linkAware);
}

TEST_F(ToolCacheProbesTest, AProjectWithoutPreviewsContributesNothing) {
    tree.file(derived + "/Atlas-abc/Build/a");
    tree.file(derived + "/info.plist");
    EXPECT_EQ(run<XcodePreviewsProbe>("xcode.previews"), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty()) << "asked whether it exists, never measured";
    tree.file(derived + "/Other-def/Previews");
    EXPECT_EQ(itemsOf(run<XcodePreviewsProbe>("xcode.previews")),
              ItemList{testing::item(tree.path(derived + "/Other-def/Previews"), 1000, true)});
}

TEST_F(ToolCacheProbesTest, ADerivedDataFolderThatIsMissingOrNoFolderIsNothing) {
    EXPECT_EQ(run<XcodePreviewsProbe>("xcode.previews"), ProbeResult());
    tree.file(derived);
    EXPECT_EQ(run<XcodePreviewsProbe>("xcode.previews"), ProbeResult());
}

} // namespace
} // namespace vesko
