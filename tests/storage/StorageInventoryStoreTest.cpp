#include "storage/StorageInventoryStore.h"
#include "base/FileSystem.h"
#include "storage/StorageInventoryFile.h"
#include "support/StateFileContract.h"
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace vesko {
namespace {

using testing::bytesOf;
using testing::TempTree;

StorageInventorySnapshot sample() {
    StorageInventorySnapshot snapshot;
    snapshot.capturedAt = *dateFromIso8601("2026-01-31T08:15:00Z");
    snapshot.volumeUsedBytes = 400;
    snapshot.buckets = {{"documents",
                         "home.storage.bucket.documents",
                         "doc.text",
                         123,
                         {"/home/u/Documents"},
                         {{"downloads"}}},
                        {"media", "home.storage.bucket.media", "photo.on.rectangle", 0, {}, std::nullopt}};
    return snapshot;
}

constexpr std::string_view sampleBytes =
    R"({"schemaVersion":1,"capturedAt":"2026-01-31T08:15:00Z","volumeUsedBytes":400,"buckets":[)"
    R"({"id":"documents","titleKey":"home.storage.bucket.documents","icon":"doc.text","bytes":123,)"
    R"("paths":["/home/u/Documents"],"cleanupCategoryIDs":["downloads"]},)"
    R"({"id":"media","titleKey":"home.storage.bucket.media","icon":"photo.on.rectangle","bytes":0,"paths":[]}]})";

class StorageInventoryStoreTest : public ::testing::Test {
protected:
    TempTree tree;
    StorageInventoryStore store{tree.url("state/storage-inventory.json")};
};

TEST_F(StorageInventoryStoreTest, WritesItsKeysInOrderAndCompact) {
    store.save(sample());
    EXPECT_EQ(bytesOf(store.fileURL()), sampleBytes);
}

TEST_F(StorageInventoryStoreTest, AFileOfSchemaTwoGivesNothingAndStaysUntilTheNextSave) {
    std::string bytes(sampleBytes);
    bytes.replace(bytes.find(":1,"), 3, ":2,");
    tree.file("state/storage-inventory.json", bytes);
    EXPECT_FALSE(store.load());
    EXPECT_EQ(bytesOf(store.fileURL()), bytes);
    store.save(sample());
    EXPECT_EQ(store.load(), sample());
}

TEST_F(StorageInventoryStoreTest, ABucketWithoutCategoriesIsWrittenAndReadWithoutTheKey) {
    store.save(sample());
    const auto loaded = store.load();
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->buckets[1].cleanupCategoryIDs, std::nullopt);
    EXPECT_EQ(loaded->buckets[0].cleanupCategoryIDs, std::vector<std::string>{"downloads"});
    const std::string bytes = bytesOf(store.fileURL());
    EXPECT_EQ(bytes.find("cleanupCategoryIDs"), bytes.rfind("cleanupCategoryIDs"));
}

TEST_F(StorageInventoryStoreTest, ABucketWithoutPathsComesBackAsItWas) {
    store.save(sample());
    EXPECT_EQ(store.load(), sample());
}

TEST_F(StorageInventoryStoreTest, WithoutAFileThereIsNothing) { EXPECT_FALSE(store.load()); }

TEST_F(StorageInventoryStoreTest, KeysThatItDoesNotKnowAreIgnored) {
    std::string bytes(sampleBytes);
    bytes.insert(1, R"("later":{"a":[1]},)");
    tree.file("state/storage-inventory.json", bytes);
    EXPECT_EQ(store.load(), sample());
}

TEST_F(StorageInventoryStoreTest, FiguresWhoseSumDoesNotFitAreNoFile) {
    StorageInventorySnapshot snapshot = sample();
    snapshot.buckets[0].bytes = INT64_MAX;
    snapshot.buckets[1].bytes = 1;
    store.save(snapshot);
    EXPECT_FALSE(store.load());
}

TEST_F(StorageInventoryStoreTest, APathThatIsNoUtf8IsLeftOutAndItsBucketStays) {
    StorageInventorySnapshot snapshot = sample();
    snapshot.buckets[0].paths = {"/home/u/\xFF", "/home/u/Documents"};
    store.save(snapshot);
    EXPECT_EQ(store.load(), sample());
}

TEST_F(StorageInventoryStoreTest, ASaveThatFailsLeavesTheFileAsItWas) {
    store.save(sample());
    const StorageInventoryStore nowhere(tree.url("state/storage-inventory.json/below/file"));
    nowhere.save(sample());
    EXPECT_FALSE(nowhere.load());
    EXPECT_EQ(bytesOf(store.fileURL()), sampleBytes);
}

TEST_F(StorageInventoryStoreTest, OfSavesThatMeetOneWinsWhole) {
    StorageInventorySnapshot other = sample();
    other.volumeUsedBytes = 401;
    other.buckets.resize(1);
    store.save(sample());
    std::vector<std::thread> writers;
    for (const StorageInventorySnapshot& snapshot : {sample(), other})
        writers.emplace_back([this, snapshot] {
            for (int i = 0; i < 30; ++i) store.save(snapshot);
        });
    for (int i = 0; i < 200; ++i) {
        const auto loaded = store.load();
        ASSERT_TRUE(loaded);
        EXPECT_TRUE(*loaded == sample() || *loaded == other);
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(std::ranges::distance(std::filesystem::directory_iterator(tree.path("state"))), 1);
}

} // namespace
} // namespace vesko

namespace vesko::testing {
namespace {

StateFileSubject storageInventory() {
    StateFileSubject subject;
    subject.name = "StorageInventory";
    subject.valid = std::string(sampleBytes);
    subject.schemaVersion = "1";
    subject.hasLanguage = false;
    subject.load = [](const FileURL& url) {
        const auto snapshot = StorageInventoryStore(url).load();
        return snapshot ? StorageInventoryFile::encode(*snapshot) : "none";
    };
    subject.empty = "none";
    return subject;
}

INSTANTIATE_TEST_SUITE_P(Inventory, StateFileContract, ::testing::Values(storageInventory()), subjectName);

} // namespace
} // namespace vesko::testing
