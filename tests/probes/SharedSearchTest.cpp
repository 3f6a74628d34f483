// The rows about projects ask one index that is made by one reading of the home.
#include "core/CatalogRows.h"
#include "platform/posix/WalkCounts.h"
#include "probes/ProjectArtifactProbe.h"
#include "probes/ScanCommandRunner.h"

#include "concurrency/CurrentTask.h"
#include "support/FakeRunner.h"
#include "support/ScriptedSizes.h"
#include "support/TempTree.h"
#include <algorithm>
#include <filesystem>
#include <future>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using testing::TempTree;

class SharedSearch : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::filesystem::exists("/usr/bin/mdfind")) GTEST_SKIP() << "this system has an index of its own";
        for (const ProjectArtifactRow& row : projectArtifactRows()) {
            const std::string project = "projects/" + row.metadata.id;
            tree.folder(project + "/" + row.folderName + "/inside/deep");
            tree.folder(project + "/src/lib");
            if (row.requireSiblingFile) tree.file(project + "/" + *row.requireSiblingFile);
        }
        context.home = tree.root();
        context.size = std::make_shared<testing::ScriptedSizes>();
        context.runner = runner();
    }
    static std::shared_ptr<const CommandRunning> runner() {
        return std::make_shared<ScanCommandRunner>(std::make_shared<testing::FakeRunner>(),
                                                   std::vector<ToolStandIn>{{"/usr/bin/mdfind", {}}});
    }
    /// What the row of each probe found, by its id.
    std::vector<std::string> runAll() const {
        std::vector<std::future<ProbeResult>> runs;
        for (ProjectArtifactRow& row : projectArtifactRows())
            runs.push_back(std::async(std::launch::async, [this, probe = ProjectArtifactProbe(std::move(
                                                                     row))] { return probe.run(context); }));
        std::vector<std::string> found;
        for (auto& run : runs) {
            const ProbeResult result = run.get();
            EXPECT_TRUE(result.errors.empty());
            if (!result.group) continue;
            for (const ScannableItem& item : result.group->items)
                found.push_back(result.group->id + " " +
                                item.url.path().substr(tree.root().path().size() + 1));
        }
        std::sort(found.begin(), found.end());
        return found;
    }
    static std::int64_t foldersRead() { return walkCounts(WalkPurpose::searching).foldersRead; }

    /// The folders that a search enters: none that are hidden or below one that is, none in dependency
    /// folders.
    std::int64_t searchedFolders() const {
        std::int64_t count = 1;
        // A range-based loop steps a copy, on which a call on the original may have no effect.
        for (std::filesystem::recursive_directory_iterator walk(tree.root().path()), end; walk != end;
             ++walk) {
            if (!walk->is_directory()) continue;
            const std::string name = walk->path().filename();
            const bool enters = !name.starts_with('.') && name != "node_modules" && name != "Pods";
            if (!enters) walk.disable_recursion_pending();
            count += enters;
        }
        return count;
    }

    TempTree tree;
    ProbeContext context;
};

TEST_F(SharedSearch, EightRowsReadTheHomeOnce) {
    const std::int64_t before = foldersRead();
    const std::vector<std::string> found = runAll();
    EXPECT_EQ(foldersRead() - before, searchedFolders());
    EXPECT_GT(searchedFolders(), 30);
    EXPECT_THAT(found, ::testing::ElementsAre("project.cargoTarget projects/project.cargoTarget/target",
                                              "project.gradleBuild projects/project.gradleBuild/build",
                                              "project.next projects/project.next/.next",
                                              "project.nodeBuild projects/project.nodeBuild/build",
                                              "project.nodeDist projects/project.nodeDist/dist",
                                              "project.nodeModules projects/project.nodeModules/node_modules",
                                              "project.nodeOut projects/project.nodeOut/out",
                                              "project.pods projects/project.pods/Pods"));
}

TEST_F(SharedSearch, TheNextScanReadsTheHomeAnew) {
    runAll();
    tree.folder("projects/new/node_modules");
    context.runner = runner();
    const std::int64_t before = foldersRead();
    EXPECT_THAT(runAll(), ::testing::Contains("project.nodeModules projects/new/node_modules"));
    EXPECT_EQ(foldersRead() - before, searchedFolders());
}

TEST_F(SharedSearch, ACancelledScanReadsNothing) {
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    const std::int64_t before = foldersRead();
    EXPECT_EQ(ProjectArtifactProbe(projectArtifactRows().front()).run(context), ProbeResult());
    EXPECT_EQ(foldersRead(), before);
}

} // namespace
} // namespace vesko
