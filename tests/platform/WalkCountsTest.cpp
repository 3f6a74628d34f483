#include "platform/posix/WalkCounts.h"

#include "core/FastDirectorySize.h"
#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include "platform/posix/TreeWalker.h"
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <sstream>

namespace vesko {
namespace {

class Everything final : public TreeVisitor {
public:
    Next visit(const TreeEntry&, unsigned) override { return Next::enter; }
};

WalkCounts countedBy(WalkPurpose purpose, const std::function<void()>& walk) {
    const WalkCounts before = walkCounts(purpose);
    walk();
    return walkCounts(purpose) - before;
}

TEST(WalkCounts, EveryFolderAndEntryOfAWalkIsCountedOnce) {
    const OddTree tree;
    tree.file("t/a/one");
    tree.file("t/a/b/two");
    tree.file("t/three");
    tree.link("t/link", "a");
    const WalkCounts counted =
        countedBy(WalkPurpose::measuring, [&] { fastDirectorySize(tree.url("t"), false); });
    EXPECT_EQ(counted.foldersRead, 3);
    EXPECT_EQ(counted.entriesRead, 6);
    EXPECT_EQ(counted.foldersOpened, 4); // the root is held open beside its reading
    EXPECT_EQ(counted.statusCalls, 7);   // the root's and one for each entry
    EXPECT_EQ(counted.readingCalls, 6);  // once for the entries, once for their end
}

TEST(WalkCounts, AWalkThatAsksNoSizesIsASearch) {
    const OddTree tree;
    tree.file("t/a/one");
    TreeWalkOptions options;
    options.details = TreeWalkOptions::Details::namesOnly;
    Everything everything;
    const WalkCounts measuring = walkCounts(WalkPurpose::measuring);
    const WalkCounts counted =
        countedBy(WalkPurpose::searching, [&] { walkTree(tree.url("t"), everything, options); });
    EXPECT_EQ(counted.foldersRead, 2);
    EXPECT_EQ(counted.entriesRead, 2);
    EXPECT_EQ(walkCounts(WalkPurpose::measuring), measuring);
}

TEST(WalkCounts, TheThreadsOfALargeWalkAreAddedTogether) {
    const OddTree tree;
    for (int folder = 0; folder < 50; ++folder)
        for (int file = 0; file < 20; ++file)
            tree.file("t/" + std::to_string(folder) + "/" + std::to_string(file));
    for (const unsigned threads : {1U, 2U, 8U}) {
        TreeWalkOptions options;
        options.threads = threads;
        options.largeTree = 0;
        Everything everything;
        const WalkCounts counted =
            countedBy(WalkPurpose::measuring, [&] { walkTree(tree.url("t"), everything, options); });
        EXPECT_EQ(counted.foldersRead, 51) << threads;
        EXPECT_EQ(counted.entriesRead, 1'050) << threads;
    }
}

TEST(WalkCounts, RefusedOpeningsAreNotCounted) {
    const WalkCounts counted =
        countedBy(WalkPurpose::measuring, [] { fastDirectorySize(FileURL("/no/such/folder"), false); });
    EXPECT_EQ(counted, WalkCounts{});
}

/// What strace saw, thread by thread so that no call's line is cut in two by another's.
struct Traced {
    std::int64_t opened = 0;
    std::int64_t readings = 0;
    std::int64_t statuses = 0;
};

Traced tracedIn(const std::string& folder) {
    Traced found;
    for (const auto& log : std::filesystem::directory_iterator(folder)) {
        std::ifstream lines(log.path());
        for (std::string line; std::getline(lines, line);) {
            if (line.find(" = -1 ") != std::string::npos) continue;
            found.opened += line.starts_with("open") && line.find("O_DIRECTORY") != std::string::npos;
            found.readings += line.starts_with("getdents64(");
            found.statuses += line.starts_with("statx(");
        }
    }
    return found;
}

TEST(WalkCounts, WhatIsCountedIsWhatATraceOfTheCallsShows) {
    if (const std::string why = whyNoInjection(); !why.empty()) GTEST_SKIP() << why;
    const OddTree tree;
    for (int folder = 0; folder < 40; ++folder)
        for (int file = 0; file < 10; ++file)
            tree.file("t/" + std::to_string(folder) + "/" + std::to_string(file));
    tree.chain("t", "deep", 30, 10);
    const std::string listed = runProgram({"find", tree.path("t"), "-type", "d"}).output;
    const std::int64_t folders = std::ranges::count(listed, '\n');
    for (const bool namesOnly : {false, true}) {
        const std::string logs = tree.folder(namesOnly ? "names" : "sizes");
        std::vector<std::string> words = {"strace",      "-ff", "-o",
                                          logs + "/log", "-e",  "trace=open,openat,openat2,getdents64,statx"};
        std::vector<std::string> task = {"counts", tree.path("t")};
        if (namesOnly) task.emplace_back("names");
        for (std::string& word : treeToolWords(Rights::asStarted, task)) words.push_back(std::move(word));
        std::istringstream printed(runProgram(words).output);
        std::vector<std::int64_t> figures;
        for (std::int64_t figure = 0; printed >> figure;) figures.push_back(figure);
        ASSERT_EQ(figures.size(), 10U);
        const std::size_t first = namesOnly ? 5 : 0;
        const Traced traced = tracedIn(logs);
        EXPECT_EQ(figures[first], folders);
        EXPECT_EQ(figures[first + 1], traced.opened);
        EXPECT_EQ(figures[first + 3], traced.readings);
        EXPECT_EQ(figures[first + 4], traced.statuses);
        EXPECT_GT(traced.opened, 70);
        EXPECT_GT(traced.readings, 140);
    }
}

} // namespace
} // namespace vesko
