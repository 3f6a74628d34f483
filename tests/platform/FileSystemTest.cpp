#include "base/FileSystem.h"
#include "support/TempTree.h"
#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace vesko {
namespace {

using testing::bytesOf;
using testing::TempTree;
constexpr std::uint64_t noLimit = 1 << 20;

void setDates(const FileURL& url, std::int64_t accessed, std::int64_t modified) {
    const timespec times[2] = {{accessed, 0}, {modified, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
}

std::vector<std::string> namesIn(const FileURL& folder, Hidden hidden = Hidden::include) {
    std::vector<std::string> names;
    const auto children = directChildren(folder, hidden);
    EXPECT_TRUE(children);
    if (!children) return names;
    for (const FileURL& child : *children) {
        EXPECT_EQ(child.parent(), folder);
        names.emplace_back(child.lastPathComponent());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// The number of a process that has ended and been waited for.
pid_t deadProcess() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

TEST(FileSystem, ALinkExistsWhenItsTargetDoes) {
    const TempTree tree;
    const FileURL file = tree.file("a");
    EXPECT_TRUE(fileExists(file));
    EXPECT_TRUE(fileExists(tree.root()));
    EXPECT_TRUE(fileExists(tree.link("to-a", "a")));
    EXPECT_FALSE(fileExists(tree.link("dangling", "nowhere")));
    EXPECT_FALSE(fileExists(tree.url("missing")));
    EXPECT_FALSE(fileExists(FileURL()));
}

TEST(FileSystem, APathWithANulNamesNoFile) {
    const TempTree tree;
    tree.file("a", "kept");
    const FileURL cut(tree.path("a") + std::string("\0tail", 5));
    EXPECT_FALSE(fileExists(cut));
    EXPECT_FALSE(isReadable(cut));
    EXPECT_FALSE(isDirectory(cut));
    EXPECT_FALSE(contentModificationDate(cut));
    EXPECT_FALSE(contentAccessDate(cut));
    EXPECT_FALSE(readFile(cut, noLimit));
    EXPECT_FALSE(directChildren(cut, Hidden::include));
    EXPECT_TRUE(createFolders(cut));
    EXPECT_TRUE(replaceFile(cut, "new"));
    EXPECT_TRUE(removeFile(cut));
    EXPECT_EQ(bytesOf(tree.url("a")), "kept");
    EXPECT_EQ(namesIn(tree.root()), std::vector<std::string>{"a"});
}

TEST(FileSystem, ReadabilityIsThatOfThisProcess) {
    const TempTree tree;
    EXPECT_TRUE(isReadable(tree.file("a")));
    EXPECT_FALSE(isReadable(tree.url("missing")));
    if (::geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
    ::chmod(tree.path("a").c_str(), 0);
    EXPECT_FALSE(isReadable(tree.url("a")));
}

TEST(FileSystem, ALinkToAFolderIsNoFolder) {
    const TempTree tree;
    EXPECT_EQ(isDirectory(tree.folder("folder")), true);
    EXPECT_EQ(isDirectory(tree.file("file")), false);
    EXPECT_EQ(isDirectory(tree.link("link", "folder")), false);
    EXPECT_EQ(isDirectory(tree.url("missing")), std::nullopt);
}

TEST(FileSystem, TheModificationDateOfALinkIsItsOwn) {
    const TempTree tree;
    setDates(tree.file("file"), 1'000, 2'000);
    setDates(tree.link("link", "file"), 3'000, 4'000);
    EXPECT_EQ(contentModificationDate(tree.url("file")), dateFromUnixSeconds(2'000));
    EXPECT_EQ(contentModificationDate(tree.url("link")), dateFromUnixSeconds(4'000));
    EXPECT_EQ(contentModificationDate(tree.url("missing")), std::nullopt);
}

TEST(FileSystem, TheAccessDateIsTheLastReading) {
    const TempTree tree;
    setDates(tree.file("file"), 1'000, 2'000);
    EXPECT_EQ(contentAccessDate(tree.url("file")), dateFromUnixSeconds(1'000));
    EXPECT_EQ(contentAccessDate(tree.url("missing")), std::nullopt);
}

TEST(FileSystem, ListingLeavesTheAccessDateAlone) {
    const TempTree tree;
    const FileURL folder = tree.folder("folder");
    tree.file("folder/a");
    setDates(folder, 1'000, 2'000);
    EXPECT_EQ(namesIn(folder), std::vector<std::string>{"a"});
    EXPECT_EQ(contentAccessDate(folder), dateFromUnixSeconds(1'000));
}

TEST(FileSystem, HiddenChildrenBeginWithADot) {
    const TempTree tree;
    tree.file(".hidden");
    tree.file("seen");
    tree.folder(".folder");
    EXPECT_EQ(namesIn(tree.root()), (std::vector<std::string>{".folder", ".hidden", "seen"}));
    EXPECT_EQ(namesIn(tree.root(), Hidden::skip), std::vector<std::string>{"seen"});
}

TEST(FileSystem, ChildrenKeepTheBytesOfTheirNames) {
    const TempTree tree;
    tree.file("caf\xE9");
    tree.file("line\nbreak");
    EXPECT_EQ(namesIn(tree.root()), (std::vector<std::string>{"caf\xE9", "line\nbreak"}));
}

TEST(FileSystem, WhatIsNoFolderCannotBeListed) {
    const TempTree tree;
    EXPECT_FALSE(directChildren(tree.file("file"), Hidden::include));
    EXPECT_FALSE(directChildren(tree.pipe("pipe"), Hidden::include));
    EXPECT_FALSE(directChildren(tree.url("missing"), Hidden::include));
    EXPECT_TRUE(directChildren(tree.folder("empty"), Hidden::include)->empty());
}

TEST(FileSystem, AFileIsReadUpToTheLimit) {
    const TempTree tree;
    const std::string bytes("a\0\xFF\n", 4);
    const FileURL file = tree.file("file", bytes);
    EXPECT_EQ(readFile(file, noLimit), bytes);
    EXPECT_EQ(readFile(file, 4), bytes);
    EXPECT_FALSE(readFile(file, 3));
    EXPECT_EQ(readFile(tree.file("empty", ""), 0), "");
    EXPECT_EQ(readFile(tree.link("link", "file"), noLimit), bytes);
    EXPECT_FALSE(readFile(tree.url("missing"), noLimit));
}

TEST(FileSystem, AFileWhoseLengthIsNotKnownIsReadToItsEnd) {
    if (!fileExists(FileURL("/proc/self/status"))) GTEST_SKIP() << "no /proc here";
    const auto text = readFile(FileURL("/proc/self/status"), noLimit);
    ASSERT_TRUE(text);
    EXPECT_NE(text->find("Pid:"), std::string::npos);
    EXPECT_FALSE(readFile(FileURL("/proc/self/status"), 10));
}

TEST(FileSystem, WhatIsNoRegularFileIsNeitherReadNorWaitedFor) {
    const TempTree tree;
    EXPECT_FALSE(readFile(tree.pipe("pipe"), noLimit));
    EXPECT_FALSE(readFile(tree.folder("folder"), noLimit));
    EXPECT_FALSE(readFile(FileURL("/dev/zero"), noLimit));
    EXPECT_FALSE(readFile(tree.link("zero", "/dev/zero"), noLimit));
}

TEST(FileSystem, FoldersAreMadeWithAllAboveThem) {
    const TempTree tree;
    EXPECT_FALSE(createFolders(tree.url("a/b/c")));
    EXPECT_EQ(isDirectory(tree.url("a/b/c")), true);
    EXPECT_FALSE(createFolders(tree.url("a/b/c")));
    tree.link("link", "a");
    EXPECT_FALSE(createFolders(tree.url("link")));
    tree.file("file");
    EXPECT_TRUE(createFolders(tree.url("file")));
    EXPECT_TRUE(createFolders(tree.url("file/below")));
    EXPECT_TRUE(createFolders(FileURL()));
}

TEST(FileSystem, ReplacingPutsTheNewBytesInPlaceAndLeavesNothingElse) {
    const TempTree tree;
    const FileURL file = tree.url("state.json");
    EXPECT_FALSE(replaceFile(file, "first"));
    EXPECT_EQ(bytesOf(file), "first");
    EXPECT_FALSE(replaceFile(file, "second, longer"));
    EXPECT_EQ(bytesOf(file), "second, longer");
    EXPECT_FALSE(replaceFile(file, ""));
    EXPECT_EQ(bytesOf(file), "");
    EXPECT_EQ(namesIn(tree.root()), std::vector<std::string>{"state.json"});
}

TEST(FileSystem, AnOpenReaderKeepsTheOldFile) {
    const TempTree tree;
    const FileURL file = tree.file("state.json", "old");
    std::ifstream reader(file.path());
    EXPECT_FALSE(replaceFile(file, "new"));
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST(FileSystem, AFailedReplacementLeavesEverythingAsItWas) {
    const TempTree tree;
    tree.file("folder/kept", "kept");
    EXPECT_TRUE(replaceFile(tree.url("folder"), "bytes"));
    EXPECT_EQ(namesIn(tree.root()), std::vector<std::string>{"folder"});
    EXPECT_EQ(bytesOf(tree.url("folder/kept")), "kept");
    EXPECT_TRUE(replaceFile(tree.url("missing/state.json"), "bytes"));
    EXPECT_TRUE(replaceFile(FileURL(), "bytes"));
}

TEST(FileSystem, AReplacedLinkBecomesAFileAndItsTargetStays) {
    const TempTree tree;
    const FileURL target = tree.file("target", "target");
    const FileURL link = tree.link("link", "target");
    EXPECT_FALSE(replaceFile(link, "new"));
    EXPECT_EQ(bytesOf(link), "new");
    EXPECT_EQ(bytesOf(target), "target");
}

TEST(FileSystem, ManyWritersAtOnceLeaveOneWholeFile) {
    const TempTree tree;
    const FileURL file = tree.url("state.json");
    std::vector<std::thread> writers;
    for (char letter = 'a'; letter < 'e'; ++letter)
        writers.emplace_back([&, letter] {
            for (int count = 0; count < 20; ++count)
                EXPECT_FALSE(replaceFile(file, std::string(10'000, letter)));
        });
    for (std::thread& writer : writers) writer.join();
    const std::string bytes = bytesOf(file);
    ASSERT_EQ(bytes.size(), 10'000u);
    EXPECT_EQ(bytes, std::string(10'000, bytes[0]));
    EXPECT_EQ(namesIn(tree.root()), std::vector<std::string>{"state.json"});
}

TEST(FileSystem, OnlyTheLitterOfDeadProcessesGoes) {
    const TempTree tree;
    const FileURL file = tree.file("state.json", "kept");
    const std::string dead = std::to_string(deadProcess());
    const std::string self = std::to_string(::getpid());
    tree.file(".state.json." + dead + ".0123456789ab.1.vesko-new");
    tree.file(".state.json." + self + ".0123456789ab.7.vesko-new"); // of an earlier process with our number
    const std::vector<std::string> kept{
        ".other.json." + dead + ".0123456789ab.1.vesko-new", // another file's
        ".state.json.1.0123456789ab.1.vesko-new",            // its writer lives
        ".state.json." + dead + ".vesko-new",
        ".state.json.old." + dead + ".0123456789ab.1.vesko-new",
        ".state.json.vesko-new",
        ".state.json.x.0123456789ab.1.vesko-new",
        "state.json",
        "state.json." + dead + ".0123456789ab.1.vesko-new",
    };
    for (const std::string& name : kept) tree.file(name, "kept");
    removeReplacementLitter(file);
    std::vector<std::string> expected = kept;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(namesIn(tree.root()), expected);
    removeReplacementLitter(tree.url("missing/state.json"));
}

TEST(FileSystem, AWriterKilledBeforeTheRenameLeavesLitterThatIsFound) {
    const TempTree tree;
    const FileURL file = tree.file("state.json", "old");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Bytes enough for the parent to see the temporary file before the rename.
        const std::string bytes(64 << 20, 'x');
        for (;;) (void)replaceFile(file, bytes);
    }
    while (namesIn(tree.root()).size() < 2) ::usleep(200);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    const bool littered = namesIn(tree.root()).size() > 1;
    removeReplacementLitter(file);
    EXPECT_EQ(namesIn(tree.root()), std::vector<std::string>{"state.json"});
    if (!littered) GTEST_SKIP() << "the writer had renamed before it was killed";
}

TEST(FileSystem, RemovingTakesOneFileAndTellsWhatWentWrong) {
    const TempTree tree;
    const FileURL file = tree.file("file");
    const FileURL link = tree.link("link", "file");
    EXPECT_FALSE(removeFile(link));
    EXPECT_TRUE(fileExists(file));
    EXPECT_FALSE(removeFile(file));
    EXPECT_FALSE(fileExists(file));
    EXPECT_EQ(removeFile(file), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(removeFile(tree.folder("folder")));
    EXPECT_EQ(isDirectory(tree.url("folder")), true);
}

} // namespace
} // namespace vesko
