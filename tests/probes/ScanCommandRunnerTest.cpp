#include "probes/ScanCommandRunner.h"

#include "concurrency/CurrentTask.h"
#include "support/FakeRunner.h"
#include "support/TempTree.h"
#include <filesystem>
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::FakeRunner;
using ::testing::IsEmpty;
using testing::TempTree;

const std::string search = "/usr/bin/mdfind";

std::string folderQuery(const std::string& name) {
    return "kMDItemFSName == '" + name + "' && kMDItemContentType == 'public.folder'";
}

class ScanCommandRunnerTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (std::filesystem::exists(search)) GTEST_SKIP() << "this system has a search index of its own";
    }
    TempTree tree;
    std::shared_ptr<FakeRunner> tools = std::make_shared<FakeRunner>(
        [](const FakeRunner::Command&) { return CommandResult{7, "from the tools"}; });
    const std::vector<ToolStandIn> table{{search, {}}};
    ScanCommandRunner runner{tools, table};
};

TEST_F(ScanCommandRunnerTest, SearchesAreAnsweredInTheProcess) {
    tree.folder("a/build");
    EXPECT_EQ(runner.run(search, {"-onlyin", tree.root().path(), folderQuery("build")}),
              (CommandResult{0, tree.path("a/build") + "\n"}));
    EXPECT_EQ(runner.run(search, {"-onlyin", tree.root().path(), folderQuery("dist")}),
              (CommandResult{0, ""}));
    EXPECT_THAT(tools->commands(), IsEmpty());
}

TEST_F(ScanCommandRunnerTest, EveryOtherCommandGoesToTheTools) {
    EXPECT_EQ(runner.run("/usr/local/bin/docker", {"info", "-x"}), (CommandResult{7, "from the tools"}));
    EXPECT_THAT(tools->commands(), ElementsAre(ElementsAre("/usr/local/bin/docker", "info", "-x")));
}

TEST_F(ScanCommandRunnerTest, WithoutARowForItTheSearchGoesToTheToolsToo) {
    const ScanCommandRunner plain(tools, {});
    EXPECT_EQ(plain.run(search, {"-onlyin", "/", "x"}).exitCode, 7);
}

TEST_F(ScanCommandRunnerTest, AFailedSearchIsAFailedCommand) {
    EXPECT_EQ(runner.run(search, {"-onlyin", tree.path("missing"), folderQuery("build")}),
              (CommandResult{1, ""}));
    EXPECT_EQ(runner.run(search, {"-onlyin", tree.root().path(), "anything"}), (CommandResult{2, ""}));
    EXPECT_EQ(runner.run(search, {}), (CommandResult{2, ""}));
}

TEST_F(ScanCommandRunnerTest, ACancelledScanHearsOfNoFailure) {
    tree.folder("a/build");
    StopSource source;
    source.requestStop();
    const CurrentTaskScope scope(source.token());
    EXPECT_EQ(runner.run(search, {"-onlyin", tree.root().path(), folderQuery("build")}),
              (CommandResult{0, ""}));
}

TEST_F(ScanCommandRunnerTest, ARunnerOfItsOwnKnowsTheTablesOfTheSystem) {
    tree.folder("a/build");
    EXPECT_EQ(ScanCommandRunner().run(search, {"-onlyin", tree.root().path(), folderQuery("build")}),
              (CommandResult{0, tree.path("a/build") + "\n"}));
    EXPECT_EQ(ScanCommandRunner().run("/bin/sh", {"-c", "echo real; exit 3"}), (CommandResult{3, "real\n"}));
}

} // namespace
} // namespace vesko
