#include "enrichment/DemotedPathsStore.h"
#include "base/FileSystem.h"
#include "support/ScopedEnvironment.h"
#include "support/TempTree.h"
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace vesko {
namespace {

using testing::ScopedEnvironment;
using testing::TempTree;
using Paths = std::unordered_set<std::string>;

class DemotedPathsStoreTest : public ::testing::Test {
protected:
    const TempTree tree;
    const DemotedPathsStore store{tree.url("demoted-paths.json")};

    Paths loaded(std::string_view bytes) {
        tree.file("demoted-paths.json", bytes);
        return store.load();
    }
};

TEST_F(DemotedPathsStoreTest, TheFileLiesInTheApplicationSupportFolder) {
    EXPECT_EQ(DemotedPathsStore::defaultFileURL().lastPathComponent(), "demoted-paths.json");
    EXPECT_EQ(DemotedPathsStore::defaultFileURL().parent().lastPathComponent(), "Vesko");
}

TEST_F(DemotedPathsStoreTest, TheSetIsThatOfTheFile) {
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":["/a","/b c/é","/a"]})"), (Paths{"/a", "/b c/é"}));
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":[]})"), Paths());
}

TEST_F(DemotedPathsStoreTest, AnotherSchemaGivesTheEmptySet) {
    EXPECT_EQ(loaded(R"({"schemaVersion":2,"paths":["/a"]})"), Paths());
}

TEST_F(DemotedPathsStoreTest, PathsAreCleanedUp) {
    const ScopedEnvironment home("HOME", "/home/ana");
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":["/a/../b/./c/","/x//y","~/z"]})"),
              (Paths{"/b/c", "/x/y", "/home/ana/z"}));
}

TEST_F(DemotedPathsStoreTest, BothKeysMustBeThereWithTheirTypes) {
    EXPECT_EQ(loaded(R"({"paths":["/a"]})"), Paths());
    EXPECT_EQ(loaded(R"({"schemaVersion":1})"), Paths());
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":"/a"})"), Paths());
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":["/a",5]})"), Paths());
    EXPECT_EQ(loaded(R"({"schemaVersion":"1","paths":["/a"]})"), Paths());
}

TEST_F(DemotedPathsStoreTest, ClearingRemovesTheFile) {
    EXPECT_EQ(loaded(R"({"schemaVersion":1,"paths":["/a"]})"), Paths{"/a"});
    store.clear();
    EXPECT_FALSE(fileExists(store.fileURL()));
    EXPECT_EQ(store.load(), Paths());
}

TEST_F(DemotedPathsStoreTest, ClearingWithoutAFileDoesNothing) {
    store.clear();
    EXPECT_TRUE(directChildren(tree.root(), Hidden::include)->empty());
    DemotedPathsStore(tree.url("missing/demoted-paths.json")).clear();
    EXPECT_FALSE(fileExists(tree.url("missing")));
}

TEST_F(DemotedPathsStoreTest, LoadingAndClearingAtOnceIsSafe) {
    tree.file("demoted-paths.json", R"({"schemaVersion":1,"paths":["/a"]})");
    std::vector<std::thread> threads;
    for (int reader = 0; reader < 4; ++reader)
        threads.emplace_back([this, reader] {
            for (int count = 0; count < 50; ++count) {
                if (reader == 0) store.clear();
                const Paths paths = store.load();
                EXPECT_TRUE(paths.empty() || paths == Paths{"/a"});
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_FALSE(fileExists(store.fileURL()));
}

} // namespace
} // namespace vesko
