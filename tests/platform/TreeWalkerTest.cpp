#include "platform/posix/TreeWalker.h"

#include "platform/OddTree.h"
#include "platform/TreeToolRun.h"
#include "platform/UsageSum.h"
#include <algorithm>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <mutex>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace vesko {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

/// Writes everything down that a walk shows.
class Record final : public TreeVisitor {
public:
    explicit Record(std::string root) : root_(std::move(root)) {}

    Next visit(const TreeEntry& entry, unsigned) override {
        const std::lock_guard lock(mutex_);
        const std::string path = entry.path();
        paths.push_back(path == root_ ? "." : path.substr(root_.size() + 1));
        kinds.push_back(entry.status.kind);
        if (!entry.isFirstSighting) repeated.push_back(paths.back());
        if (onVisit) onVisit(entry);
        return passOver.contains(std::string(entry.name)) ? Next::pass : Next::enter;
    }
    void problem(const TreeProblem& problem, unsigned) override {
        const std::lock_guard lock(mutex_);
        problems.push_back(problem);
    }

    std::set<std::string> passOver;
    std::vector<std::string> paths;
    std::vector<std::string> repeated;
    std::vector<EntryKind> kinds;
    std::vector<TreeProblem> problems;
    std::function<void(const TreeEntry&)> onVisit;

private:
    std::string root_;
    std::mutex mutex_;
};

TEST(TreeWalker, ShowsEveryEntryOnceWithItsPath) {
    const OddTree tree;
    tree.file("a/one");
    tree.file("a/b/two");
    tree.file(".hidden/three");
    tree.link("dangling", "nowhere");
    for (const auto details : {TreeWalkOptions::Details::sizes, TreeWalkOptions::Details::namesOnly}) {
        Record record(tree.path());
        TreeWalkOptions options;
        options.details = details;
        EXPECT_EQ(walkTree(tree.url(), record, options), WalkOutcome::finished);
        EXPECT_THAT(record.paths, UnorderedElementsAre(".", "a", "a/one", "a/b", "a/b/two", ".hidden",
                                                       ".hidden/three", "dangling"));
        EXPECT_THAT(record.problems, IsEmpty());
    }
}

TEST(TreeWalker, LeavesOutWhatTheVisitorPassesOver) {
    const OddTree tree;
    tree.file("node_modules/inside/one");
    tree.file("kept/two");
    Record record(tree.path());
    record.passOver = {"node_modules"};
    walkTree(tree.url(), record);
    EXPECT_THAT(record.paths, UnorderedElementsAre(".", "node_modules", "kept", "kept/two"));
}

TEST(TreeWalker, WalksTheRootFolderWithPathsThatBeginWithOneSlash) {
    Record record("/");
    record.onVisit = [&](const TreeEntry& entry) {
        if (entry.depth == 1) record.passOver.insert(std::string(entry.name));
    };
    TreeWalkOptions options;
    options.threads = 1;
    std::vector<std::string> full;
    struct Visitor final : TreeVisitor {
        Next visit(const TreeEntry& entry, unsigned) override {
            paths.push_back(entry.path());
            return entry.depth == 0 ? Next::enter : Next::pass;
        }
        std::vector<std::string> paths;
    } visitor;
    EXPECT_EQ(walkTree(FileURL("/"), visitor, options), WalkOutcome::finished);
    EXPECT_THAT(visitor.paths, Contains("/"));
    EXPECT_THAT(visitor.paths, Contains("/usr"));
    EXPECT_THAT(visitor.paths, Not(Contains("//usr")));
}

TEST(TreeWalker, TellsAFolderThatCannotBeReadAndGoesOn) {
    const OddTree tree;
    tree.file("closed/one");
    tree.file("open/two");
    tree.mode("closed", 0);
    tree.giveAway();
    if (::geteuid() == 0)
        GTEST_SKIP() << "root reads every folder; measuring as a user is tested with the helper";
    Record record(tree.path());
    EXPECT_EQ(walkTree(tree.url(), record), WalkOutcome::finished);
    EXPECT_THAT(record.paths, UnorderedElementsAre(".", "closed", "open", "open/two"));
    ASSERT_EQ(record.problems.size(), 1U);
    EXPECT_EQ(record.problems[0].path, tree.path("closed"));
    tree.mode("closed", 0755);
}

TEST(TreeWalker, SaysThatThereIsNoFolder) {
    const OddTree tree;
    tree.file("file");
    tree.folder("folder");
    tree.link("link", "folder");
    for (const char* path : {"missing", "file", "link"}) {
        Record record(tree.path());
        EXPECT_EQ(walkTree(tree.url(path), record), WalkOutcome::noFolder) << path;
        EXPECT_THAT(record.paths, IsEmpty());
        EXPECT_EQ(record.problems.size(), 1U);
    }
}

TEST(TreeWalker, StopsSoonAfterTheTokenAsksForIt) {
    const OddTree tree;
    for (int folder = 0; folder < 20; ++folder)
        for (int file = 0; file < 100; ++file)
            tree.file(std::to_string(folder) + "/" + std::to_string(file), 0);
    for (const unsigned threads : {1U, 4U}) {
        StopSource stop;
        Record record(tree.path());
        record.onVisit = [&](const TreeEntry&) {
            if (record.paths.size() == 50) stop.requestStop();
        };
        TreeWalkOptions options;
        options.stop = stop.token();
        options.threads = threads;
        options.largeTree = 0;
        EXPECT_EQ(walkTree(tree.url(), record, options), WalkOutcome::stopped);
        EXPECT_GE(record.paths.size(), 50U);
        EXPECT_LT(record.paths.size(), 50U + threads * 400U);
    }
}

TEST(TreeWalker, EndsOnLoopsOfFollowedLinks) {
    const OddTree tree;
    tree.file("a/file", 10'000);
    tree.link("a/up", "..");
    tree.link("a/self", ".");
    tree.link("b", "a");
    tree.link("loop", "loop");
    for (const unsigned threads : {1U, 2U, 8U})
        EXPECT_EQ(usageByThreads(tree.path(), true, threads), duBytes(tree.path(), true)) << threads;
}

TEST(TreeWalker, CountsAFolderOnceThatMovesUpDuringTheWalk) {
    const OddTree tree;
    tree.file("a/b/c/large", 500'000);
    tree.folder("z");
    for (const unsigned threads : {1U, 4U}) {
        std::int64_t counted = 0;
        Record record(tree.path());
        // The moment that "c" was seen it goes to where it will perhaps be seen again.
        record.onVisit = [&](const TreeEntry& entry) {
            if (entry.isFirstSighting && entry.status.kind == EntryKind::file)
                counted += entry.status.allocatedBytes;
            if (entry.name == "c" && tree.has("a/b/c"))
                ASSERT_EQ(::rename(tree.path("a/b/c").c_str(), tree.path("z/c").c_str()), 0);
        };
        TreeWalkOptions options;
        options.threads = threads;
        options.largeTree = 0;
        EXPECT_EQ(walkTree(tree.url(), record, options), WalkOutcome::finished);
        EXPECT_LE(counted, 512 * 1024);
        if (tree.has("z/c")) ASSERT_EQ(::rename(tree.path("z/c").c_str(), tree.path("a/b/c").c_str()), 0);
    }
}

TEST(TreeWalker, PassesOverEntriesThatVanish) {
    const OddTree tree;
    for (int i = 0; i < 200; ++i) tree.file("many/" + std::to_string(i) + "/inside");
    Record record(tree.path());
    bool removed = false;
    record.onVisit = [&](const TreeEntry& entry) {
        if (entry.depth < 2 || std::exchange(removed, true)) return;
        for (int i = 0; i < 200; ++i) {
            ::unlink(tree.path("many/" + std::to_string(i) + "/inside").c_str());
            ::rmdir(tree.path("many/" + std::to_string(i)).c_str());
        }
    };
    EXPECT_EQ(walkTree(tree.url(), record), WalkOutcome::finished);
    EXPECT_TRUE(removed);
    EXPECT_THAT(record.problems, IsEmpty());
}

TEST(TreeWalker, LeavesNoAccessDateOnOwnFolders) {
    const OddTree tree;
    tree.file("a/one");
    const timespec longAgo[2] = {{1'000'000'000, 0}, {1'500'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, tree.path("a").c_str(), longAgo, 0), 0);
    Record record(tree.path());
    walkTree(tree.url(), record);
    EXPECT_THAT(record.paths, Contains("a/one"));
    struct stat status;
    ASSERT_EQ(::stat(tree.path("a").c_str(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, 1'000'000'000);
}

TEST(TreeWalker, FindsTheSameInAWideTreeWithEveryNumberOfThreads) {
    const OddTree tree;
    for (int i = 0; i < 3'000; ++i)
        tree.file(std::to_string(i % 7) + "/" + std::to_string(i % 61) + "/" + std::to_string(i), 0);
    std::vector<std::string> expected;
    for (const unsigned threads : {1U, 2U, 8U, 16U}) {
        Record record(tree.path());
        TreeWalkOptions options;
        options.threads = threads;
        options.largeTree = 0;
        EXPECT_EQ(walkTree(tree.url(), record, options), WalkOutcome::finished);
        std::ranges::sort(record.paths);
        if (threads == 1)
            expected = record.paths;
        else
            EXPECT_EQ(record.paths, expected) << threads;
    }
    EXPECT_GT(expected.size(), 3'000U);
}

} // namespace
} // namespace vesko
