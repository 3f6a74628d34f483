#include "probes/ProjectArtifactProbe.h"

#include "base/FileSystem.h"
#include "concurrency/CurrentTask.h"
#include "core/CatalogRows.h"
#include "core/DiskSizeCalculator.h"
#include "probes/SystemCommandRunner.h"
#include "support/FakeRunner.h"
#include "support/IndexedRunner.h"
#include "support/LanguageScope.h"
#include "support/PortugueseLocale.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include "support/builders.h"
#include <algorithm>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::FakeRunner;
using ::testing::IsEmpty;
using testing::LanguageScope;
using testing::PortugueseLocale;
using testing::ScriptedSizes;
using testing::TempTree;
using ::testing::UnorderedElementsAre;

const std::string english =
    "The search for “node_modules” folders could not be made, because the search index did not answer.";
const std::string portuguese =
    "Não foi possível procurar pastas “node_modules”, porque o índice de busca não respondeu.";

class ProjectArtifactProbeTest : public ::testing::Test {
protected:
    ProjectArtifactProbeTest() {
        row.metadata = testing::metadata("project.x", "project");
        row.folderName = "node_modules";
    }
    ProbeResult run() {
        ProbeContext context;
        context.home = tree.root();
        context.size = sizes;
        context.runner = runner;
        return ProjectArtifactProbe(row).run(context);
    }
    /// The paths found, below the home folder.
    std::vector<std::string> found() {
        const ProbeResult result = run();
        EXPECT_THAT(result.errors, IsEmpty());
        std::vector<std::string> list;
        if (result.group)
            for (const ScannableItem& item : result.group->items)
                list.push_back(item.url.path().substr(tree.root().path().size() + 1));
        return list;
    }
    /// What the index answers, whatever is on the disk.
    void answer(CommandResult result) {
        runner = std::make_shared<FakeRunner>([result](const FakeRunner::Command&) { return result; });
    }
    /// The index answers these folders, which are made.
    void answerFolders(const std::vector<std::string>& relative) {
        std::string output;
        for (const std::string& each : relative) output += tree.folder(each).path() + "\n";
        answer({0, output});
    }
    /// What a program that is run in the place of the search prints.
    void answerScript(const std::string& script) {
        runner = std::make_shared<FakeRunner>([script](const FakeRunner::Command&) {
            return SystemCommandRunner().run("/bin/sh", {"-c", script});
        });
    }

    TempTree tree;
    ProjectArtifactRow row;
    LanguageScope language{Language::english};
    std::shared_ptr<ScriptedSizes> sizes = std::make_shared<ScriptedSizes>();
    std::shared_ptr<FakeRunner> runner = testing::indexedRunner();
};

TEST_F(ProjectArtifactProbeTest, AsksTheIndexForAFolderOfExactlyThatName) {
    answer({0, ""});
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_THAT(runner->commands(),
                ElementsAre(ElementsAre("/usr/bin/mdfind", "-onlyin", tree.root().path(),
                                        "kMDItemFSName == 'node_modules' && kMDItemContentType == "
                                        "'public.folder'")));
}

TEST_F(ProjectArtifactProbeTest, EachFolderIsMeasuredWithItsLinksAndKeyedByItsPath) {
    tree.folder("web/node_modules");
    const ProbeResult result = run();
    ASSERT_TRUE(result.group);
    ASSERT_EQ(result.group->items.size(), 1U);
    const ScannableItem item = *result.group->items.begin();
    EXPECT_EQ(item.url, tree.url("web/node_modules"));
    EXPECT_EQ(item.size, 1000);
    EXPECT_TRUE(item.isDirectory);
    EXPECT_EQ(item.enrichmentKey.rawValue, "url:" + tree.path("web/node_modules"));
    EXPECT_EQ(item.displayLabel, std::nullopt);
    EXPECT_THAT(sizes->calls(), ElementsAre(ScriptedSizes::Call{tree.path("web/node_modules"), false, true}));
}

TEST_F(ProjectArtifactProbeTest, OfFoldersInsideOneAnotherOnlyTheOutermostCounts) {
    answerFolders({"web/node_modules/a/b/node_modules", "web/node_modules",
                   "web/node_modules-old/x/node_modules", "web/node_modules2"});
    EXPECT_THAT(found(), UnorderedElementsAre("web/node_modules", "web/node_modules-old/x/node_modules",
                                              "web/node_modules2"));
}

TEST_F(ProjectArtifactProbeTest, PathsAreTakenShortestFirstByTheirCharacters) {
    // Six bytes, four characters: shorter than "sixth" although its bytes are not.
    answerFolders({"sixth/node_modules", "maçã/node_modules", "ab/node_modules", "cd/node_modules"});
    found();
    std::vector<std::string> order;
    for (const auto& call : sizes->calls()) order.push_back(call.path.substr(tree.root().path().size() + 1));
    EXPECT_THAT(order,
                ElementsAre("ab/node_modules", "cd/node_modules", "maçã/node_modules", "sixth/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, PackageStoresAreLeftOut) {
    answerFolders({"web/.pnpm/a/node_modules", "Library/pnpm/store/v3/node_modules",
                   ".pnpm-store/v3/node_modules", "pnpm/node_modules"});
    EXPECT_THAT(found(), ElementsAre("pnpm/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, AFolderThatAMachineNamedIsNoProject) {
    const std::string twentyOne = std::string(21, 'a') + "xyz";
    const std::string twenty = std::string(20, 'a') + "wxyz";
    answerFolders({twentyOne + "/node_modules", twenty + "/node_modules"});
    EXPECT_THAT(found(), ElementsAre(twenty + "/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, AnAtSignAmongHexadecimalDigitsIsAMachinesName) {
    const std::string machine = "pkg@" + std::string(20, 'f') + "-with-a-long-tail-of-other-letters-zzzzzzz";
    const std::string person = "pkg@" + std::string(19, 'f') + "-";
    answerFolders({machine + "/node_modules", person + "/node_modules"});
    EXPECT_THAT(found(), ElementsAre(person + "/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, OnlyDependencyFoldersAskForTheNameOfTheirProject) {
    row.folderName = "Pods";
    answerFolders({std::string(24, 'a') + "/Pods"});
    EXPECT_THAT(found(), ElementsAre(std::string(24, 'a') + "/Pods"));
}

TEST_F(ProjectArtifactProbeTest, AFolderCountsOnlyBesideTheFileThatItNeeds) {
    row.folderName = "target";
    row.requireSiblingFile = "Cargo.toml";
    tree.folder("rust/target");
    tree.file("rust/Cargo.toml");
    tree.folder("java/target");
    tree.folder("dangling/target");
    tree.link("dangling/Cargo.toml", "nowhere");
    EXPECT_THAT(found(), ElementsAre("rust/target"));
}

TEST_F(ProjectArtifactProbeTest, AFolderBesideAFileThatItMustNotHaveIsLeftOut) {
    row.folderName = "build";
    row.requireSiblingFile = "package.json";
    row.excludeSiblingFiles = {"build.gradle", "build.gradle.kts"};
    for (const char* project : {"web", "groovy", "kotlin"}) {
        tree.folder(std::string(project) + "/build");
        tree.file(std::string(project) + "/package.json");
    }
    tree.file("groovy/build.gradle");
    tree.file("kotlin/build.gradle.kts");
    EXPECT_THAT(found(), ElementsAre("web/build"));
}

TEST_F(ProjectArtifactProbeTest, AHiddenFolderIsFoundBesideTheFileThatMarksTheProject) {
    row.folderName = ".next";
    row.requireSiblingFile = "marker.json";
    tree.folder("web/.next");
    tree.file("web/marker.json");
    tree.file("none/marker.json");
    tree.file("file/marker.json");
    tree.file("file/.next");
    tree.folder("other/.next");
    tree.file("other/package.json");
    EXPECT_THAT(found(), ElementsAre("web/.next"));
    EXPECT_EQ(runner->commands()[0][3], "kMDItemFSName == 'marker.json'");
}

TEST_F(ProjectArtifactProbeTest, TheMarkerIsAlsoTheFileThatMustBeThere) {
    row.folderName = ".next";
    row.requireSiblingFile = "package.json";
    tree.folder("web/.next");
    // The index still knows a marker that is gone.
    answer({0, tree.path("web/package.json") + "\n"});
    EXPECT_THAT(found(), IsEmpty());
    tree.file("web/package.json");
    EXPECT_THAT(found(), ElementsAre("web/.next"));
}

TEST_F(ProjectArtifactProbeTest, WithoutAFileOfItsOwnAHiddenFolderIsSearchedByThePackageFileAlone) {
    row.folderName = ".next";
    tree.folder("web/.next");
    answer({0, tree.path("web/package.json") + "\n"});
    EXPECT_THAT(found(), ElementsAre("web/.next")) << "no file beside it is asked for";
    EXPECT_EQ(runner->commands()[0][3], "kMDItemFSName == 'package.json'");
}

TEST_F(ProjectArtifactProbeTest, ALinkIsNoHiddenFolder) {
    row.folderName = ".next";
    tree.file("web/package.json");
    tree.folder("real");
    tree.link("web/.next", "../real");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(ProjectArtifactProbeTest, AQuoteInTheNameGoesIntoTheQueryAsItStandsAndTheSearchRefusesIt) {
    row.folderName = "it's";
    tree.folder("a/it's");
    EXPECT_EQ(run().errors.size(), 1U);
    EXPECT_EQ(runner->commands()[0][3], "kMDItemFSName == 'it's' && kMDItemContentType == 'public.folder'");
    for (const ProjectArtifactRow& each : projectArtifactRows())
        EXPECT_EQ(each.folderName.find('\''), std::string::npos);
}

TEST_F(ProjectArtifactProbeTest, AMissingToolIsTheOneErrorOfTheProbe) {
    answer({-1, ""});
    EXPECT_EQ(run(), (ProbeResult{std::nullopt, {english}}));
    const LanguageScope other(Language::portuguese);
    EXPECT_EQ(run(), (ProbeResult{std::nullopt, {portuguese}}));
}

TEST_F(ProjectArtifactProbeTest, AFailureIsAnErrorWhateverWasPrinted) {
    tree.folder("web/node_modules");
    answer({1, tree.path("web/node_modules") + "\n"});
    EXPECT_EQ(run(), (ProbeResult{std::nullopt, {english}}));
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST_F(ProjectArtifactProbeTest, AnEmptyAnswerIsNoError) {
    answer({0, ""});
    EXPECT_EQ(run(), ProbeResult());
    answer({0, "\n\n\n"});
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(ProjectArtifactProbeTest, AFolderThatIsGoneIsDroppedWhereItIsMeasured) {
    answer({0, tree.path("gone/node_modules") + "\n" + tree.folder("web/node_modules").path() + "\n"});
    ProbeContext context;
    context.home = tree.root();
    context.size = std::make_shared<const DiskSizeCalculator>();
    context.runner = runner;
    tree.file("web/node_modules/a", std::string(9000, 'x'));
    const ProbeResult result = ProjectArtifactProbe(row).run(context);
    ASSERT_TRUE(result.group);
    EXPECT_THAT(testing::paths(result.group->items), ElementsAre(tree.path("web/node_modules")));
    EXPECT_THAT(result.errors, IsEmpty());
}

TEST_F(ProjectArtifactProbeTest, GarbageInTheAnswerHarmsNoOther) {
    const std::string good = tree.folder("web/node_modules").path();
    sizes = std::make_shared<ScriptedSizes>([&](const FileURL& url) { return fileExists(url) ? 1000 : 0; });
    answer({0, "\x01\x02 not a path\n/no/such\n//\r\n" + std::string(9000, 'y') + "\n" + good +
                   "\nnode_modules"});
    EXPECT_THAT(found(), ElementsAre("web/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, HalfALineNamesNothing) {
    const std::string whole = tree.folder("web/node_modules").path();
    sizes = std::make_shared<ScriptedSizes>([&](const FileURL& url) { return fileExists(url) ? 1000 : 0; });
    answer({0, whole + "\n" + tree.path("oth")});
    EXPECT_THAT(found(), ElementsAre("web/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, AnAnswerThatIsNoUtf8IsAnEmptyOne) {
    tree.folder("web/node_modules");
    answerScript("printf '" + tree.path("web/node_modules") + "\\n\\351\\n'");
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(ProjectArtifactProbeTest, AToolThatFailsOrCannotBeStartedIsAnError) {
    answerScript("echo /x; exit 4");
    EXPECT_EQ(run().errors, std::vector<std::string>{english});
    answerScript("kill -9 $$");
    EXPECT_EQ(run().errors, std::vector<std::string>{english});
    runner = std::make_shared<FakeRunner>(
        [](const FakeRunner::Command&) { return SystemCommandRunner().run("/no/such/mdfind", {}); });
    EXPECT_EQ(run().errors, std::vector<std::string>{english});
}

TEST_F(ProjectArtifactProbeTest, AHundredMegabytesOfAnswerAreReadToTheEnd) {
    const std::string folder = tree.folder("web/node_modules").path();
    // One and the same path, so that the answer is long and not the list.
    std::string output;
    const std::string inner = folder + "/" + std::string(1000, 'z') + "/node_modules\n";
    output.reserve(100'000'000 + inner.size() + folder.size());
    while (output.size() < 100'000'000) output += inner;
    output += folder;
    answer({0, std::move(output)});
    EXPECT_THAT(found(), ElementsAre("web/node_modules"));
}

TEST_F(ProjectArtifactProbeTest, AnswersReadTheSameInEveryLocale) {
    const PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no Brazilian locale to be had";
    tree.folder("maçã/node_modules");
    tree.folder("1.234,5/node_modules");
    EXPECT_THAT(found(), UnorderedElementsAre("maçã/node_modules", "1.234,5/node_modules"));
    answerScript("exit 1");
    const LanguageScope other(Language::portuguese);
    EXPECT_EQ(run().errors, std::vector<std::string>{portuguese});
    answerScript("printf '\\351'");
    EXPECT_EQ(run(), ProbeResult());
}

TEST_F(ProjectArtifactProbeTest, ACancelledRunLooksAtNothingFurther) {
    answerFolders({"web/node_modules"});
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(run(), ProbeResult());
    EXPECT_THAT(sizes->calls(), IsEmpty());
}

TEST(ProjectArtifactRows, AreTheEightOfTheCatalog) {
    std::string drawn;
    for (const ProjectArtifactRow& row : projectArtifactRows()) {
        drawn += row.metadata.id + " " + row.folderName + " " + row.requireSiblingFile.value_or("-");
        for (const std::string& name : row.excludeSiblingFiles) drawn += " !" + name;
        drawn += "\n";
    }
    EXPECT_EQ(drawn, "project.nodeModules node_modules -\n"
                     "project.pods Pods -\n"
                     "project.cargoTarget target Cargo.toml\n"
                     "project.gradleBuild build build.gradle\n"
                     "project.next .next package.json\n"
                     "project.nodeDist dist package.json\n"
                     "project.nodeOut out package.json\n"
                     "project.nodeBuild build package.json !build.gradle !build.gradle.kts\n");
}

} // namespace
} // namespace vesko
