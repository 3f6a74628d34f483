#include "probes/SystemCommandRunner.h"

#include "support/TempTree.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using testing::TempTree;

CommandResult shell(const std::string& script) {
    return SystemCommandRunner().run("/bin/sh", {"-c", script});
}

TEST(SystemCommandRunner, APathThatDoesNotExistIsAFailedLaunch) {
    EXPECT_EQ(SystemCommandRunner().run("/no/such/tool", {}), (CommandResult{-1, ""}));
}

TEST(SystemCommandRunner, AFileThatCannotBeRunIsAFailedLaunch) {
    const TempTree tree;
    EXPECT_EQ(SystemCommandRunner().run(tree.file("text", "no program").path(), {}), (CommandResult{-1, ""}));
    EXPECT_EQ(SystemCommandRunner().run(tree.root().path(), {}), (CommandResult{-1, ""}));
}

TEST(SystemCommandRunner, NoPathIsSearched) {
    EXPECT_EQ(SystemCommandRunner().run("sh", {"-c", "echo found"}), (CommandResult{-1, ""}));
}

TEST(SystemCommandRunner, AChildThatPrintsNothingAndSucceeds) {
    EXPECT_EQ(shell(""), (CommandResult{0, ""}));
}

TEST(SystemCommandRunner, AMegabyteAndAFailureBothArrive) {
    const CommandResult result = shell("head -c 1048576 /dev/zero | tr '\\0' 'x'; exit 3");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(result.output, std::string(1048576, 'x'));
}

TEST(SystemCommandRunner, OutputThatIsNoUtf8IsDroppedAndTheStatusStays) {
    EXPECT_EQ(shell("printf 'caf\\351'"), (CommandResult{0, ""}));
    EXPECT_EQ(shell("printf 'good\\n\\377\\n'; exit 4"), (CommandResult{4, ""}));
    EXPECT_EQ(shell("printf 'caf\\303\\251'"), (CommandResult{0, "caf\xc3\xa9"}));
}

TEST(SystemCommandRunner, ArgumentsReachTheChildAsTheyAre) {
    const std::vector<std::string> words{
        "-c", R"(for w in "$@"; do printf '<%s>' "$w"; done)", "sh", "*", "two words", "", "$HOME", "a\nb",
        "'\""};
    EXPECT_EQ(SystemCommandRunner().run("/bin/sh", words),
              (CommandResult{0, "<*><two words><><$HOME><a\nb><'\">"}));
}

TEST(SystemCommandRunner, TheEndByASignalIsAFailure) { EXPECT_EQ(shell("kill -TERM $$").exitCode, 15); }

TEST(SystemCommandRunner, AnArgumentThatHoldsANulIsNotCutShort) {
    EXPECT_EQ(SystemCommandRunner().run("/bin/echo", {std::string("a\0b", 3)}), (CommandResult{-1, ""}));
}

} // namespace
} // namespace vesko
