#include "execution/SystemCleanupExecutor.h"

#include "concurrency/CurrentTask.h"
#include "platform/OddTree.h"
#include "support/FakeRunner.h"
#include <gmock/gmock.h>

namespace vesko {
namespace {

using ::testing::ElementsAre;
using testing::FakeRunner;
using ::testing::IsEmpty;
using Command = FakeRunner::Command;

ScannableItem item(const FileURL& url, std::string key) {
    ScannableItem made;
    made.url = url;
    made.enrichmentKey = {std::move(key)};
    return made;
}

std::expected<void, CleanupError> deleteItem(const ScannableItem& victim, const FakeRunner& runner) {
    return SystemCleanupExecutor().deleteItem(victim, runner);
}

/// Answers "info" at the given executable with 0, and everything else with `status`.
FakeRunner::Answer dockerAt(const std::string& executable, std::int32_t status = 0) {
    return [executable, status](const Command& command) -> CommandResult {
        if (command.size() == 2 && command[1] == "info") return {command[0] == executable ? 0 : 1, ""};
        return {status, ""};
    };
}

constexpr const char* usual = "/usr/local/bin/docker";
constexpr const char* homebrew = "/opt/homebrew/bin/docker";

TEST(SystemCleanupExecutor, RefusesAnUnsupportedContainerObjectAndLeavesItsFolder) {
    const OddTree tree;
    tree.file("folder/inside");
    const FakeRunner runner;
    const auto outcome = deleteItem(item(tree.url("folder"), "docker:unsupported"), runner);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), CleanupError(DockerDeletionError::unsupportedOfflineTarget()));
    EXPECT_TRUE(tree.has("folder/inside"));
    EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST(SystemCleanupExecutor, TakesAnImageKeyWithoutAnIdForAPath) {
    const FakeRunner runner(dockerAt(usual));
    const auto outcome = deleteItem(item(FileURL("/docker/images/none"), "docker:image:"), runner);
    ASSERT_FALSE(outcome);
    const auto* failure = outcome.error().as<RemovalFailure>();
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->kind, RemovalFailureKind::notFound);
    EXPECT_EQ(failure->path, FileURL("/docker/images/none"));
    EXPECT_THAT(runner.commands(), IsEmpty());
}

TEST(SystemCleanupExecutor, RemovesThePathOfEveryMalformedToolKey) {
    for (const char* key :
         {"docker:image:", "docker:volume:", "docker:prune:", "docker:prune:everything",
          "simulator:", "docker:", "", "url:/elsewhere", "bundle:com.example.tool", "Simulator:ABC"}) {
        const OddTree tree;
        tree.file("victim/inside");
        const FakeRunner runner(dockerAt(usual));
        EXPECT_TRUE(deleteItem(item(tree.url("victim"), key), runner)) << key;
        EXPECT_FALSE(tree.has("victim")) << key;
        EXPECT_THAT(runner.commands(), IsEmpty()) << key;
    }
}

TEST(SystemCleanupExecutor, DeletesADeviceThroughItsToolAndNeverTouchesThePath) {
    for (const std::int32_t status : {0, 1, 164, -1}) {
        const OddTree tree;
        tree.file("device/inside");
        const FakeRunner runner([&](const Command&) { return CommandResult{status, ""}; });
        const auto outcome = deleteItem(item(tree.url("device"), "simulator:AB-12"), runner);
        EXPECT_EQ(outcome.has_value(), status == 0);
        if (!outcome) {
            EXPECT_EQ(outcome.error(), CleanupError(SimulatorDeletionError::deleteFailed("AB-12", status)));
        }
        EXPECT_TRUE(tree.has("device/inside"));
        EXPECT_THAT(runner.commands(), ElementsAre(Command{"/usr/bin/xcrun", "simctl", "delete", "AB-12"}));
    }
}

TEST(SystemCleanupExecutor, TakesTheWholeRestBehindTheFirstColonForTheDevice) {
    const FakeRunner runner([](const Command&) { return CommandResult{0, ""}; });
    EXPECT_TRUE(deleteItem(item(FileURL("/none"), "simulator:docker:unsupported"), runner));
    EXPECT_THAT(runner.commands(),
                ElementsAre(Command{"/usr/bin/xcrun", "simctl", "delete", "docker:unsupported"}));
}

TEST(SystemCleanupExecutor, UsesTheUsualDockerWhereItWorks) {
    const FakeRunner runner(dockerAt(usual));
    EXPECT_TRUE(deleteItem(item(FileURL("/none"), "docker:image:abc"), runner));
    EXPECT_THAT(runner.commands(), ElementsAre(Command{usual, "info"}, Command{usual, "rmi", "-f", "abc"}));
}

TEST(SystemCleanupExecutor, UsesTheOtherDockerWhereTheUsualOneDoesNotWork) {
    const FakeRunner runner(dockerAt(homebrew));
    EXPECT_TRUE(deleteItem(item(FileURL("/none"), "docker:volume:data"), runner));
    EXPECT_THAT(runner.commands(), ElementsAre(Command{usual, "info"}, Command{homebrew, "info"},
                                               Command{homebrew, "volume", "rm", "-f", "data"}));
}

TEST(SystemCleanupExecutor, SaysThatDockerIsNotThereAnyMore) {
    const OddTree tree;
    tree.file("folder/inside");
    const FakeRunner runner(dockerAt("nowhere"));
    const auto outcome = deleteItem(item(tree.url("folder"), "docker:prune:buildcache"), runner);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), CleanupError(DockerDeletionError::dockerNotAvailable()));
    EXPECT_THAT(runner.commands(), ElementsAre(Command{usual, "info"}, Command{homebrew, "info"}));
    EXPECT_TRUE(tree.has("folder/inside"));
}

TEST(SystemCleanupExecutor, GivesTheFullCommandWhenTheToolRefuses) {
    const FakeRunner runner(dockerAt(homebrew, 125));
    const auto outcome = deleteItem(item(FileURL("/none"), "docker:image:sha256:abc"), runner);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(),
              CleanupError(DockerDeletionError::deleteFailed({homebrew, "rmi", "-f", "sha256:abc"}, 125)));
}

TEST(SystemCleanupExecutor, LooksDockerUpAnewForEachItem) {
    const FakeRunner runner(dockerAt(usual));
    EXPECT_TRUE(deleteItem(item(FileURL("/none"), "docker:prune:images"), runner));
    EXPECT_TRUE(deleteItem(item(FileURL("/none"), "docker:prune:volumes"), runner));
    EXPECT_THAT(runner.commands(),
                ElementsAre(Command{usual, "info"}, Command{usual, "image", "prune", "-a", "-f"},
                            Command{usual, "info"}, Command{usual, "volume", "prune", "-f"}));
}

TEST(SystemCleanupExecutor, GivesThePlatformsErrorForAPathThatIsGone) {
    const OddTree tree;
    const FakeRunner runner;
    const auto outcome = deleteItem(item(tree.url("gone"), "url:" + tree.path("gone")), runner);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error(), CleanupError(RemovalFailure{tree.url("gone"), RemovalFailureKind::notFound,
                                                           std::error_code(ENOENT, std::system_category())}));
}

TEST(SystemCleanupExecutor, TellsTheProgressOfARemoval) {
    const OddTree tree;
    tree.file("victim/inside", 10'000);
    std::int64_t freed = 0;
    std::int64_t entries = 0;
    const auto outcome = SystemCleanupExecutor().deleteItem(item(tree.url("victim"), ""), FakeRunner(),
                                                            [&](std::int64_t bytes, std::int64_t count) {
                                                                freed = bytes;
                                                                entries = count;
                                                            });
    EXPECT_TRUE(outcome);
    EXPECT_GE(freed, 12'288);
    EXPECT_EQ(entries, 2);
}

TEST(SystemCleanupExecutor, LeavesTheRestWhenTheTaskIsCancelled) {
    const OddTree tree;
    tree.file("victim/inside");
    StopSource stop;
    stop.requestStop();
    const CurrentTaskScope scope(stop.token());
    EXPECT_FALSE(deleteItem(item(tree.url("victim"), ""), FakeRunner()));
    EXPECT_TRUE(tree.has("victim/inside"));
}

} // namespace
} // namespace vesko
