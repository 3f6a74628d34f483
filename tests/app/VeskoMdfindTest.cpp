// Runs the real program, and compares it with what a scan is told in the process.
#include "base/ChildProcess.h"
#include "base/FileSystem.h"
#include "probes/ScanCommandRunner.h"
#include "support/FakeRunner.h"
#include "support/FileTimes.h"
#include "support/PortugueseLocale.h"
#include "support/TempTree.h"
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using testing::TempTree;

struct Ended {
    std::int32_t status = -1;
    std::string output;
    std::string errors;
};

const std::string buildFolders = "kMDItemFSName == 'build' && kMDItemContentType == 'public.folder'";

class VeskoMdfind : public ::testing::Test {
protected:
    Ended run(const std::vector<std::string>& arguments,
              const std::vector<std::string>& before = {VESKO_MDFIND}) {
        const FileURL errors = messages.url("errors");
        std::vector<std::string> words{"-c", R"(e="$1"; shift; exec "$@" 2>"$e")", "sh", errors.path()};
        words.insert(words.end(), before.begin(), before.end());
        words.insert(words.end(), arguments.begin(), arguments.end());
        const auto child = runChild("/bin/sh", words);
        if (!child) return {};
        return {child->status, child->standardOutput, testing::bytesOf(errors)};
    }

    TempTree tree;
    TempTree messages;
};

TEST_F(VeskoMdfind, PrintsOneAbsolutePathALine) {
    tree.folder("b/build");
    tree.folder("a/build");
    tree.file("c/build");
    const Ended ended = run({"-onlyin", tree.root().path(), buildFolders});
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, tree.path("a/build") + "\n" + tree.path("b/build") + "\n");
    EXPECT_THAT(ended.errors, IsEmpty());
}

TEST_F(VeskoMdfind, AnEmptyAnswerIsASuccess) {
    const Ended ended = run({"-onlyin", tree.root().path(), "kMDItemFSName == 'package.json'"});
    EXPECT_EQ(ended.status, 0);
    EXPECT_THAT(ended.output, IsEmpty());
    EXPECT_THAT(ended.errors, IsEmpty());
}

TEST_F(VeskoMdfind, ARootThatIsMissingOrNoFolderIsAFailure) {
    for (const FileURL& root : {tree.url("missing"), tree.file("file")}) {
        const Ended ended = run({"-onlyin", root.path(), buildFolders});
        EXPECT_EQ(ended.status, 1);
        EXPECT_THAT(ended.output, IsEmpty());
        EXPECT_THAT(ended.errors, StartsWith("vesko-mdfind: can't search " + root.path()));
    }
}

/// Root reads everything, so the program runs as nobody then, from where nobody may enter.
TEST_F(VeskoMdfind, ARootThatCannotBeReadIsAFailure) {
    tree.folder("closed/build");
    std::filesystem::permissions(tree.root().path(), std::filesystem::perms(0755));
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms::none);
    std::vector<std::string> program{VESKO_MDFIND};
    if (::geteuid() == 0) {
        if (!fileExists(FileURL("/usr/bin/setpriv"))) GTEST_SKIP() << "no way to run as another user here";
        std::filesystem::copy_file(VESKO_MDFIND, tree.path("program"));
        program = {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups",
                   tree.path("program")};
    }
    const Ended open = run({"-onlyin", tree.root().path(), buildFolders}, program);
    const Ended closed = run({"-onlyin", tree.path("closed"), buildFolders}, program);
    std::filesystem::permissions(tree.path("closed"), std::filesystem::perms::owner_all);
    EXPECT_EQ(open.status, 0) << open.errors;
    EXPECT_THAT(open.output, IsEmpty()) << "what can't be read hides itself alone";
    EXPECT_EQ(closed.status, 1);
    EXPECT_THAT(closed.output, IsEmpty());
    EXPECT_THAT(closed.errors, HasSubstr("can't search"));
}

TEST_F(VeskoMdfind, AnythingElseIsToldOnStandardErrorWithStatusTwo) {
    const std::string root = tree.root().path();
    for (const std::vector<std::string>& wrong : {std::vector<std::string>{},
                                                  {"--help"},
                                                  {buildFolders},
                                                  {"-onlyin", root},
                                                  {"-onlyin", ".", buildFolders},
                                                  {"-onlyin", root, "build"},
                                                  {"-onlyin", root, buildFolders, "more"},
                                                  {"-name", root, buildFolders},
                                                  {"-onlyin", root, "kMDItemFSName == 'it's'"},
                                                  {"-onlyin", root, "kMDItemFSName == '*'"}}) {
        const Ended ended = run(wrong);
        EXPECT_EQ(ended.status, 2);
        EXPECT_THAT(ended.output, IsEmpty());
        EXPECT_THAT(ended.errors, StartsWith("vesko-mdfind: "));
    }
}

TEST_F(VeskoMdfind, AFullDiskIsToldAndNoSuccess) {
    if (!std::ofstream("/dev/full")) GTEST_SKIP() << "this system has no /dev/full";
    tree.folder("a/build");
    const auto child =
        runChild("/bin/sh", {"-c", R"("$1" -onlyin "$2" "$3" >/dev/full 2>"$4")", "sh", VESKO_MDFIND,
                             tree.root().path(), buildFolders, messages.path("errors")});
    ASSERT_TRUE(child);
    EXPECT_EQ(child->status, 1);
    EXPECT_THAT(testing::bytesOf(messages.url("errors")), HasSubstr("vesko-mdfind: "));
}

/// Whoever starts the program and whoever asks in the process hear the same, byte for byte.
TEST_F(VeskoMdfind, TheProgramAndTheScansOwnRunnerAnswerAlike) {
    const std::string search = "/usr/bin/mdfind";
    if (fileExists(FileURL(search))) GTEST_SKIP() << "this system has a search index of its own";
    for (const char* name : {"plain", "two words", "it's", "quo\"te", "$HOME", "maçã", "-dash", "a\rb",
                             "bad\nline", "caf\xe9", ".hidden", "node_modules/x", "Library/Caches/x"}) {
        tree.folder(std::string(name) + "/build");
        tree.file(std::string(name) + "/package.json");
        const FileURL run = tree.file(std::string(name) + "/Old Tool.app/run");
        std::filesystem::permissions(run.path(), std::filesystem::perms(0755));
        testing::setFileTimes(run, dateFromUnixSeconds(1'000'000'000), dateFromUnixSeconds(1'000'000'000));
    }
    const std::string root = tree.root().path();
    const std::string unused =
        "kMDItemContentTypeTree == 'public.application' && kMDItemLastUsedDate < $time.iso(";
    const ScanCommandRunner inProcess(std::make_shared<testing::FakeRunner>(), {{search, {VESKO_MDFIND}}});
    std::size_t answers = 0;
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"-onlyin", root, buildFolders},
                                                      {"-onlyin", root + "/", buildFolders},
                                                      {"-onlyin", root, "kMDItemFSName == 'package.json'"},
                                                      {"-onlyin", root, "kMDItemFSName == 'it's'"},
                                                      {"-onlyin", root, "kMDItemFSName == 'it\"s'"},
                                                      {"-onlyin", root, "kMDItemFSName == '$HOME'"},
                                                      {"-onlyin", root, unused + "700000000)"},
                                                      {"-onlyin", root, unused + "5)"},
                                                      {"-onlyin", root, unused + "5,0)"},
                                                      {"-onlyin", tree.path("missing"), buildFolders},
                                                      {"-onlyin", tree.path("two words"), buildFolders},
                                                      {"-onlyin", root},
                                                      {}}) {
        const Ended child = run(arguments);
        EXPECT_EQ(inProcess.run(search, arguments), (CommandResult{child.status, child.output}));
        answers += !child.output.empty();
    }
    EXPECT_GE(answers, 5U);
}

TEST_F(VeskoMdfind, AnswersTheSameInEveryLocale) {
    const testing::PortugueseLocale locale;
    if (!locale.isThere()) GTEST_SKIP() << "no Brazilian locale to be had";
    tree.folder("maçã 1.234,5/build");
    const Ended ended = run({"-onlyin", tree.root().path(), buildFolders},
                            {"/usr/bin/env", "LC_ALL=pt_BR.UTF-8", VESKO_MDFIND});
    EXPECT_EQ(ended.output, tree.path("maçã 1.234,5/build") + "\n");
}

} // namespace
} // namespace vesko
